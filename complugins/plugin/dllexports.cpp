// The plug-in's exports, by which COM gets its class factory and asks whether it may go.
#include <printsubsystem/printticketprovider.h>

#include "classfactory.h"
#include "liveobjects.h"

extern "C" {

__declspec(dllexport) HRESULT STDMETHODCALLTYPE DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualCLSID(classId, CLSID_OEMPTPROVIDER)) return CLASS_E_CLASSNOTAVAILABLE;
    return GetClassFactory().QueryInterface(iid, object);
}

__declspec(dllexport) HRESULT STDMETHODCALLTYPE DllCanUnloadNow() { return liveObjects == 0 ? S_OK : S_FALSE; }

}  // extern "C"
