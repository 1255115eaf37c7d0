// Text between COM (UTF-16, BSTR, VARIANT) and libxml2 (UTF-8).
#pragma once

#include <bstr.h>
#include <widetext.h>

#include <libxml/xmlstring.h>

#include <string>
#include <string_view>

namespace dom {

inline WideStringView ViewOf(BSTR text) { return text ? WideStringView(text, SysStringLen(text)) : WideStringView(); }
inline const char* Chars(const xmlChar* text) { return reinterpret_cast<const char*>(text); }
inline const xmlChar* XmlChars(const char* text) { return reinterpret_cast<const xmlChar*>(text); }
inline std::string_view ViewOf(const xmlChar* text) {
    return text ? std::string_view(Chars(text)) : std::string_view();
}

// Text that goes into a document. Characters that XML cannot hold (most control characters, lone surrogates, U+FFFE and
// U+FFFF) become U+FFFD as they enter: so a document can always be written, and what it answers is what it writes.
std::string ContentToUtf8(WideStringView text);
// Text that is to be judged by somebody else, a parser or a check of names: everything is kept, a lone surrogate as
// three bytes that are no UTF-8.
std::string RawToUtf8(WideStringView text);
Bstr ToBstr(std::string_view utf8);

// Gives the text to an out argument: E_INVALIDARG when that is null.
HRESULT ReturnText(std::string_view utf8, BSTR* out);
HRESULT ReturnText(std::string_view utf8, VARIANT* out);
// Answers "there is none": null or VT_NULL, and S_FALSE.
HRESULT ReturnNothing(BSTR* out);
HRESULT ReturnNothing(VARIANT* out);

// The content in a variant: a text or an integer. False for every other kind.
bool ContentOf(const VARIANT& value, std::string* utf8);

}  // namespace dom
