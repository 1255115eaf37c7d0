// BSTR and VARIANT.
#include <livecounts.h>
#include <oleauto.h>
#include <spreadcount.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constinit SpreadCount liveBstrs;

// Eight bytes keep the text as aligned as allocated memory; the length fills the last four of them.
constexpr std::size_t prefixBytes = 8;
constexpr std::size_t lengthBytes = sizeof(UINT);

UINT ByteLength(const WCHAR* text) {
    UINT bytes = 0;
    if (text) std::memcpy(&bytes, reinterpret_cast<const char*>(text) - lengthBytes, lengthBytes);
    return bytes;
}

// Copies the bytes, or makes zeroed text of that size when there is nothing to copy. Null for lack of memory.
BSTR Allocate(const void* source, std::size_t bytes) {
    constexpr std::size_t longest = 0x7FFFFFFF - prefixBytes - sizeof(WCHAR);
    if (bytes > longest) return nullptr;
    char* block = static_cast<char*>(std::malloc(prefixBytes + bytes + sizeof(WCHAR)));
    if (!block) return nullptr;
    const UINT length = static_cast<UINT>(bytes);
    std::memset(block, 0, prefixBytes);
    std::memcpy(block + prefixBytes - lengthBytes, &length, lengthBytes);
    char* const text = block + prefixBytes;
    if (source) {
        std::memcpy(text, source, bytes);
    } else {
        std::memset(text, 0, bytes);
    }
    std::memset(text + bytes, 0, sizeof(WCHAR));
    liveBstrs.Add(1);
    return reinterpret_cast<BSTR>(block + prefixBytes);
}

bool IsObject(VARTYPE type) { return type == VT_DISPATCH || type == VT_UNKNOWN; }

// True for the types of which a copy of the 24 bytes is a value of its own.
bool IsPlain(VARTYPE type) {
    constexpr VARTYPE variant = 12, unassigned = 15, lastNumber = 23, byReference = 0x4000;
    if (type & byReference) return true;
    return type <= lastNumber && type != VT_BSTR && !IsObject(type) && type != variant && type != unassigned;
}

}  // namespace

long LiveBstrCount() noexcept { return liveBstrs.Get(); }

extern "C" {

BSTR WINAPI SysAllocString(const OLECHAR* text) {
    return text ? Allocate(text, std::char_traits<WCHAR>::length(text) * sizeof(WCHAR)) : nullptr;
}

BSTR WINAPI SysAllocStringLen(const OLECHAR* text, UINT length) {
    return Allocate(text, std::size_t{length} * sizeof(WCHAR));
}

void WINAPI SysFreeString(BSTR text) {
    if (!text) return;
    liveBstrs.Add(-1);
    std::free(reinterpret_cast<char*>(text) - prefixBytes);
}

UINT WINAPI SysStringLen(BSTR text) { return ByteLength(text) / sizeof(WCHAR); }

void WINAPI VariantInit(VARIANT* value) { *value = {}; }

HRESULT WINAPI VariantClear(VARIANT* value) {
    if (!value) return E_INVALIDARG;
    const VARIANT held = *value;
    if (!IsPlain(held.vt) && held.vt != VT_BSTR && !IsObject(held.vt)) return DISP_E_BADVARTYPE;
    // Emptied first: what the object does when it goes may come back to this variant.
    *value = {};
    if (held.vt == VT_BSTR) SysFreeString(held.bstrVal);
    if (IsObject(held.vt) && held.punkVal) held.punkVal->Release();
    return S_OK;
}

}  // extern "C"
