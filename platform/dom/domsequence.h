// DomSequence: what node lists and attribute maps have in common, nodes by index and one after the other.
#pragma once

#include "domobject.h"

namespace dom {

// Over Derived's At(index, item) and Length(). Where kItemMovesOn holds, nextNode after get_item gives the one behind
// it.
template <class Interface, const IID& iid, class Derived>
class DomSequence : public DomObject<Interface, iid> {
public:
    HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** item) override {
        return Guarded([&] {
            const HRESULT result = Self().At(index, item);
            if (Derived::kItemMovesOn && result == S_OK) next_ = index + 1;
            return result;
        });
    }
    HRESULT STDMETHODCALLTYPE get_length(LONG* length) override {
        if (!length) return E_INVALIDARG;
        *length = Self().Length();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** item) override {
        return Guarded([&] {
            const HRESULT result = Self().At(next_, item);
            if (result == S_OK) ++next_;
            return result;
        });
    }
    HRESULT STDMETHODCALLTYPE reset() override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get__newEnum(IUnknown**) override { return E_NOTIMPL; }

private:
    Derived& Self() { return static_cast<Derived&>(*this); }

    LONG next_ = 0;
};

}  // namespace dom
