// For faults: documents changed as text.
#pragma once

#include <msxml2.h>
#include <oleauto.h>

#include <cstring>
#include <string>

using DocumentText = std::basic_string<WCHAR>;

inline DocumentText Widen(const char* text) { return {text, text + std::strlen(text)}; }

inline DocumentText GetText(IXMLDOMDocument2* document) {
    BSTR xml = nullptr;
    if (FAILED(document->get_xml(&xml)) || !xml) return {};
    DocumentText text(xml, SysStringLen(xml));
    SysFreeString(xml);
    return text;
}

// Replaces the first place of the words, and loads the document anew. False when they are not there.
inline bool ReplaceIn(IXMLDOMDocument2* document, const char* words, const char* by) {
    DocumentText text = GetText(document);
    const std::size_t at = text.find(Widen(words));
    if (at == DocumentText::npos) return false;
    text.replace(at, std::strlen(words), Widen(by));
    const BSTR xml = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    VARIANT_BOOL loaded = 0;
    document->loadXML(xml, &loaded);
    SysFreeString(xml);
    return true;
}
