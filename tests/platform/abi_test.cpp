// The layouts and values that records and other programs rely on, the same on both hosts.
#include <windows.h>

#include <oleauto.h>

#include <cstddef>

static_assert(sizeof(WCHAR) == 2 && sizeof(LONG) == 4 && sizeof(ULONG) == 4 && sizeof(DWORD) == 4);
static_assert(sizeof(BOOL) == 4 && sizeof(HRESULT) == 4 && sizeof(LSTATUS) == 4 && sizeof(VARIANT_BOOL) == 2);
static_assert(sizeof(GUID) == 16 && sizeof(FILETIME) == 8);
static_assert(sizeof(OSVERSIONINFOW) == 276);

static_assert(sizeof(DEVMODEW) == 220 && alignof(DEVMODEW) == 4);
static_assert(offsetof(DEVMODEW, dmSize) == 68 && offsetof(DEVMODEW, dmFields) == 72);
static_assert(offsetof(DEVMODEW, dmOrientation) == 76 && offsetof(DEVMODEW, dmPosition) == 76);
static_assert(offsetof(DEVMODEW, dmColor) == 92 && offsetof(DEVMODEW, dmFormName) == 102);
static_assert(offsetof(DEVMODEW, dmNup) == 180 && offsetof(DEVMODEW, dmICMIntent) == 192);
static_assert(offsetof(DEVMODEW, dmPanningHeight) == 216);

static_assert(sizeof(VARIANT) == 24 && offsetof(VARIANT, vt) == 0 && offsetof(VARIANT, bstrVal) == 8);
static_assert(VARIANT_TRUE == -1 && VARIANT_FALSE == 0);

static_assert(E_INVALIDARG < 0 && HRESULT_FROM_WIN32(ERROR_MORE_DATA) == static_cast<HRESULT>(0x800700EA));
static_assert(SUCCEEDED(S_FALSE) && FAILED(E_PENDING) && HRESULT_FROM_WIN32(ERROR_SUCCESS) == S_OK);
