// IUnknown and COM memory, as the SDK gives them.
#pragma once

#include <windows.h>

struct IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
};

extern "C" const IID IID_IUnknown;
