// Text and lookup helpers shared by the Print Schema document classes; nobody else includes them.
#pragma once

#include <mvutil/formatting.h>
#include <throwscheme.h>

#include <bstr.h>
#include <comptr.h>
#include <msxml2.h>

#include "printschemaxmldocument.h"

#include <algorithm>
#include <string>

// The text; a null one is empty.
inline WideStringView ViewOf(const WCHAR* text) noexcept { return text ? WideStringView(text) : WideStringView(); }
inline bool IsEmpty(const WCHAR* text) noexcept { return !text || !*text; }

// Integers as documents hold them.
inline CXString FormatInteger(LONG value) { return CXString(std::to_string(value).c_str()); }
inline CXString FormatUnsignedInteger(ULONG value) { return CXString(std::to_string(value).c_str()); }

// A constant text that is a BSTR without being made one, for arguments that are only read: its length in bytes stands
// before it.
template <std::size_t Units>
class ConstantBstr {
public:
    explicit constexpr ConstantBstr(const WCHAR (&text)[Units]) { std::copy_n(text, Units, text_); }
    BSTR Get() const noexcept { return const_cast<BSTR>(text_); }

private:
    DWORD bytes_ = (Units - 1) * sizeof(WCHAR);
    WCHAR text_[Units] = {};
};

inline constexpr ConstantBstr kNameAttribute(W("name"));

// New texts: of both, one after the other, and a copy. Lack of memory is the method's own failure, E_OUTOFMEMORY; so no
// Bstr is made in these classes but here.
inline Bstr Join(const ComChecks& checks, WideStringView left, WideStringView right, LONG line = __builtin_LINE()) {
    Bstr text;
    const BSTR joined = *text.Put() = SysAllocStringLen(nullptr, static_cast<UINT>(left.size() + right.size()));
    checks.Require(joined != nullptr, E_OUTOFMEMORY, line);
    std::copy(left.begin(), left.end(), joined);
    std::copy(right.begin(), right.end(), joined + left.size());
    return text;
}
inline Bstr CopyText(const ComChecks& checks, WideStringView text, LONG line = __builtin_LINE()) {
    return Join(checks, text, {}, line);
}

// The text as a document can hold it: U+FFFD stands for control characters, U+FFFE, U+FFFF and halves of characters.
// What a DOM does with these is its own affair; none can write them.
inline Bstr MakeWritable(Bstr writable) {
    constexpr WCHAR kReplacement = 0xFFFD;
    const WideStringView text = writable.View();
    const auto isHalf = [&](std::size_t at, unsigned kind) { return at < text.size() && (text[at] & 0xFC00u) == kind; };
    for (std::size_t at = 0; at < text.size(); ++at) {
        const unsigned unit = text[at];
        if (unit >= 0x20 && unit < 0xD800) continue;
        const bool isControl = unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r';
        if (isHalf(at, 0xD800) && isHalf(at + 1, 0xDC00))
            ++at;  // a whole character
        else if (isControl || (unit & 0xF800u) == 0xD800 || unit >= 0xFFFE)
            writable.Get()[at] = kReplacement;
    }
    return writable;
}

// Throws the failure of a lookup; else says whether it found anything.
template <class T>
bool Found(const ComChecks& checks, HRESULT hr, const ComPtr<T>& result, LONG line = __builtin_LINE()) {
    return checks.Succeeds(hr, line) != S_FALSE && result;
}

// The object's other interface, which it must have.
template <class U, class T>
ComPtr<U> QueryFor(const ComChecks& checks, T* object, REFIID iid, LONG line = __builtin_LINE()) {
    ComPtr<U> other;
    checks.Succeeds(object->QueryInterface(iid, other.PutVoid()), line);
    return other;
}

// The text without the white space of XML around it.
inline WideStringView Trimmed(WideStringView text) noexcept {
    constexpr WideStringView kWhiteSpace = W(" \t\r\n");
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    return text.substr(0, text.find_last_not_of(kWhiteSpace) + 1);
}

// The node's typed value as text, trimmed. MSXML gives other than text only to values of its own data types.
inline Bstr GetTypedValue(const ComChecks& checks, IXMLDOMNode* node, LONG line = __builtin_LINE()) {
    Variant value;
    checks.Succeeds(node->get_nodeTypedValue(value.Put()), line);
    if (value.IsText()) return CopyText(checks, Trimmed(value.Text()), line);
    Bstr text;
    checks.Succeeds(GetTrimmedText(node, &text), line);
    return text;
}

inline LONG CountOf(const ComChecks& checks, IXMLDOMNodeList* nodes, LONG line = __builtin_LINE()) {
    LONG count = 0;
    checks.Succeeds(nodes->get_length(&count), line);
    return count;
}

inline ComPtr<IXMLDOMNode> NodeAt(const ComChecks& checks, IXMLDOMNodeList* nodes, LONG index,
                                  LONG line = __builtin_LINE()) {
    ComPtr<IXMLDOMNode> node;
    checks.Require(Found(checks, nodes->get_item(index, node.Put()), node, line), E_FAIL, line);
    return node;
}
