// Providers that trust what they are given.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

#include "referenceprovider.h"

namespace {

using Text = std::basic_string<WCHAR>;

// Converts a DEVMODE that is whole with a function of the bytes.
struct LooksAtTheDevmode : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG bytes, PDEVMODEW devmode, ULONG privateBytes,
                                                          PVOID privateDevmode, IXMLDOMDocument2* ticket) override {
        const HRESULT result =
            ReferenceProvider::ConvertDevModeToPrintTicket(bytes, devmode, privateBytes, privateDevmode, ticket);
        return SUCCEEDED(result) ? Look(*devmode) : result;
    }
    virtual HRESULT Look(DEVMODEW& devmode) = 0;
};

struct CountsByAField : LooksAtTheDevmode {
    HRESULT Look(DEVMODEW& devmode) override {
        volatile int table[32] = {};
        return devmode.dmCopies > 1000 ? *static_cast<volatile HRESULT*>(nullptr) : table[0];
    }
};

struct ChangesTheSizes : LooksAtTheDevmode {
    HRESULT Look(DEVMODEW& devmode) override {
        devmode.dmDriverExtra = static_cast<WORD>(devmode.dmDriverExtra / 2);
        return S_OK;
    }
};

// A number in the private part says how many bytes of it there are.
struct BelievesACount : LooksAtTheDevmode {
    HRESULT Look(DEVMODEW& devmode) override {
        const BYTE* const extra = reinterpret_cast<const BYTE*>(&devmode) + devmode.dmSize;
        for (WORD byte = 0; byte < devmode.dmDriverExtra; ++byte)
            if (extra[byte] == 0xFF) return *static_cast<volatile HRESULT*>(nullptr);
        return S_OK;
    }
};

// What one DEVMODE said is still so for the next one.
struct KeepsState : LooksAtTheDevmode {
    HRESULT Look(DEVMODEW& devmode) override {
        if (devmode.dmOrientation > 100 || devmode.dmOrientation < 0) isOdd = true;
        return isOdd ? E_FAIL : S_OK;
    }
    bool isOdd = false;
};

// Looks at a ticket's text with a function.
struct LooksAtTheTicket : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override {
        BSTR xml = nullptr;
        if (!ticket || FAILED(ticket->get_xml(&xml))) return E_INVALIDARG;
        const Text text(xml, SysStringLen(xml));
        SysFreeString(xml);
        return Look(text);
    }
    virtual HRESULT Look(const Text& text) = 0;

    static Text Wide(const char* text) { return {text, text + std::strlen(text)}; }
};

struct HangsOnDepth : LooksAtTheTicket {
    HRESULT Look(const Text& text) override {
        for (volatile bool isDeep = text.find(Wide("</x:y></x:y>")) != Text::npos; isDeep;) continue;
        return S_NO_CONFLICT;
    }
};

struct TakesNamesForShort : LooksAtTheTicket {
    HRESULT Look(const Text& text) override {
        return text.size() > 90000 ? *static_cast<volatile HRESULT*>(nullptr) : S_NO_CONFLICT;
    }
};

// What it has learnt of the first ticket it takes for granted.
struct TakesAllForTheFirst : LooksAtTheTicket {
    HRESULT Look(const Text& text) override {
        const auto elements = std::count(text.begin(), text.end(), WCHAR('<'));
        if (first == 0) first = elements;
        return elements == first ? S_NO_CONFLICT : *static_cast<volatile HRESULT*>(nullptr);
    }
    std::ptrdiff_t first = 0;
};

struct WantsTheFeature : LooksAtTheTicket {
    HRESULT Look(const Text& text) override {
        const bool isThere = text.find(Wide("psk:PageMediaSize\"")) != Text::npos;
        return isThere ? S_NO_CONFLICT : *static_cast<volatile HRESULT*>(nullptr);
    }
};

const FaultRegistration registrations[] = {
    {"trusts a field", "devmode-fields", MakeFaulty<CountsByAField>()},
    {"changes the sizes of a DEVMODE", "devmode-sizes", MakeFaulty<ChangesTheSizes>()},
    {"believes a count in the private part", "devmode-private-bytes", MakeFaulty<BelievesACount>()},
    {"believes a count at random", "devmodes-at-random", MakeFaulty<BelievesACount>()},
    {"keeps state after damage", "devmode-fields", MakeFaulty<KeepsState>()},
    {"hangs on deep nesting", "documents-deep", MakeFaulty<HangsOnDepth>()},
    {"takes documents for short", "documents-huge", MakeFaulty<TakesNamesForShort>()},
    {"takes tickets for the first one", "documents-odd", MakeFaulty<TakesAllForTheFirst>()},
    {"wants a feature", "documents-cut", MakeFaulty<WantsTheFeature>()},
    {"takes tickets for the first one, at random", "documents-at-random", MakeFaulty<TakesAllForTheFirst>()},
};

}  // namespace
