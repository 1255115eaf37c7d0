// The plug-in's class factory.
#include "classfactory.h"

#include <new>

#include "keptprovider.h"
#include "liveobjects.h"

namespace {

class ClassFactory final : public IClassFactory {
public:
    virtual ~ClassFactory() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) return E_NOINTERFACE;
        *object = static_cast<IClassFactory*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override {
        ++liveObjects;
        return ++references_;
    }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        --liveObjects;
        return left;
    }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        try {
            return MakeKeptProvider()->QueryInterface(iid, object);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (...) {
            return E_FAIL;
        }
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        lock ? ++liveObjects : --liveObjects;
        return S_OK;
    }

private:
    std::atomic<ULONG> references_ = 0;
};

}  // namespace

IClassFactory& GetClassFactory() {
    static ClassFactory factory;
    return factory;
}
