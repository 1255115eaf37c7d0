// IUnknown and the class factory, as the SDK gives them.
#pragma once

#include <windows.h>

struct IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
};

extern "C" const IID IID_IUnknown;

struct IClassFactory : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) = 0;
};

extern "C" const IID IID_IClassFactory;
