// BSTR, VARIANT and IDispatch, as the SDK gives them.
#pragma once

#include <objbase.h>

using BSTR = WCHAR*;
using OLECHAR = WCHAR;
using VARTYPE = USHORT;
using VARIANT_BOOL = SHORT;
using DISPID = LONG;
#define VARIANT_TRUE (static_cast<VARIANT_BOOL>(-1))
#define VARIANT_FALSE (static_cast<VARIANT_BOOL>(0))

enum VARENUM {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_UNKNOWN = 13,
    VT_UI4 = 19
};

struct DISPPARAMS;
struct EXCEPINFO;
struct ITypeInfo;

struct IDispatch : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** information) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, WCHAR** names, UINT count, LCID locale,
                                                    DISPID* ids) = 0;
    virtual HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                                             struct tagVARIANT* result, EXCEPINFO* exception, UINT* argument) = 0;
};
extern "C" const IID IID_IDispatch;

// 24 bytes, plain: it goes by value through COM calls.
struct tagVARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        LONG lVal;
        SHORT iVal;
        ULONG ulVal;
        VARIANT_BOOL boolVal;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        struct {
            void* pvRecord;
            struct IRecordInfo* pRecInfo;
        };
    };
};
using VARIANT = tagVARIANT;

// A BSTR is preceded by its length in bytes and may hold NULs; null stands for the empty text. The allocating functions
// return null for lack of memory; the receiver frees with SysFreeString. Lengths are in characters. A null text gives
// null from SysAllocString, zeroed characters from SysAllocStringLen.
extern "C" {
BSTR WINAPI SysAllocString(const OLECHAR* text);
BSTR WINAPI SysAllocStringLen(const OLECHAR* text, UINT length);
void WINAPI SysFreeString(BSTR text);
UINT WINAPI SysStringLen(BSTR text);

// VariantClear frees a text and releases an object. A type that owns something else (an array, a record):
// DISP_E_BADVARTYPE, nothing changed.
void WINAPI VariantInit(VARIANT* value);
HRESULT WINAPI VariantClear(VARIANT* value);
}
