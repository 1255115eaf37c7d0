// DomObject: what all COM objects of the DOM share. Counting, QueryInterface, and the IDispatch slots that nobody
// calls.
#pragma once

#include <livecounts.h>
#include <msxml2.h>
#include <spreadcount.h>

#include <atomic>
#include <new>

namespace dom {

// Counts the COM objects that are alive in the process.
class LiveObject {
public:
    LiveObject() noexcept { count_.Add(1); }
    LiveObject(const LiveObject&) = delete;
    LiveObject& operator=(const LiveObject&) = delete;
    virtual ~LiveObject() { count_.Add(-1); }
    static long Count() noexcept { return count_.Get(); }

private:
    static SpreadCount count_;
};

// Runs the body of a COM method; no exception leaves it.
template <class Body>
HRESULT Guarded(Body body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

// Faces are the interfaces that the object answers for beside IUnknown and IDispatch, each one Interface or a base of
// it. Made with one reference, which the maker holds. Interfaces have no virtual destructor (it would take slots of
// their tables), and objects are only ever deleted here, through the destructor of LiveObject.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
template <class Interface, const IID&... Faces>
class DomObject : public Interface, public LiveObject {
#pragma GCC diagnostic pop
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (!(IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) || (IsEqualIID(iid, Faces) || ...))) {
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, WCHAR**, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }

private:
    std::atomic<ULONG> references_ = 1;
};

}  // namespace dom
