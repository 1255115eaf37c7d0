// Print Schema documents for tests: short texts in, and what became of them out.
#pragma once

#include <domdocument.h>
#include <mvutil/formatting.h>
#include <mvutil/morvaneexception.h>
#include <printsubsystem/printschema.h>

#include <bstr.h>
#include <comptr.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>

// {psf} and its like become the URIs of the usual prefixes.
inline std::string Expand(std::string text) {
    const std::pair<const char*, const WCHAR*> uris[] = {{"{psf}", kFrameworkNamespace},
                                                         {"{psk}", kKeywordsNamespace},
                                                         {"{xsi}", kXmlSchemaInstanceNamespace},
                                                         {"{xsd}", kXmlSchemaNamespace},
                                                         {"{mk}", kPrivateKeywordsNamespace}};
    for (const auto& [placeholder, uri] : uris) {
        for (std::size_t at = 0; (at = text.find(placeholder, at)) != std::string::npos;) {
            text.replace(at, std::string(placeholder).size(), CXString(uri).ToUtf8());
        }
    }
    return text;
}

// White space stays, as in the documents that the print system hands over.
inline ComPtr<IXMLDOMDocument2> Load(const std::string& text) {
    const std::string xml = Expand(text);
    ComPtr<IXMLDOMDocument2> document;
    std::string error;
    EXPECT_EQ(CreateDomDocument(document.Put()), S_OK);
    EXPECT_EQ(document->put_preserveWhiteSpace(VARIANT_TRUE), S_OK);
    EXPECT_EQ(LoadDomDocument(document.Get(), xml.data(), xml.size(), &error), S_OK) << error << '\n' << xml;
    return document;
}

// A document of the usual prefixes with the given children.
inline ComPtr<IXMLDOMDocument2> LoadUsual(const std::string& root, const std::string& children) {
    return Load("<psf:" + root + " xmlns:psf='{psf}' xmlns:psk='{psk}' xmlns:xsi='{xsi}' xmlns:xsd='{xsd}'" +
                " xmlns:mk='{mk}' version='1'>" + children + "</psf:" + root + ">");
}

// The text of the document from its root on, without a trailing line break.
inline std::string TextOf(const ComPtr<IXMLDOMDocument2>& document) {
    std::string text;
    EXPECT_EQ(SerialiseDomDocument(document.Get(), &text), S_OK);
    if (text.starts_with("<?xml")) text.erase(0, text.find_first_not_of(" \r\n", text.find("?>") + 2));
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    return text;
}

// The text between the root's tags.
inline std::string ContentOf(const ComPtr<IXMLDOMDocument2>& document) {
    const std::string text = TextOf(document);
    const std::size_t start = text.find('>') + 1;
    const std::size_t end = text.rfind("</");
    return text[start - 2] == '/' || end == std::string::npos ? "" : text.substr(start, end - start);
}

// The same document written in lines, by a document object that keeps white space and shows it, as the system's does.
inline ComPtr<IXMLDOMDocument2> LoadIndented(const ComPtr<IXMLDOMDocument2>& document) {
    std::string indented;
    for (const char character : TextOf(document)) {
        if (character == '<' && !indented.empty()) indented += '\n';
        (indented += character) += character == '>' ? "\n\t" : "";
    }
    indented.erase(indented.rfind('>') + 1);
    auto twin = Load(indented);
    twin->put_preserveWhiteSpace(VARIANT_TRUE);
    return twin;
}

inline std::string Utf8(const Bstr& text) { return CXString(text.View()).ToUtf8(); }

// An HRESULT as a failing test should print it.
inline std::string Name(HRESULT hr) {
    if (hr == S_OK) return "S_OK";
    if (hr == S_FALSE) return "S_FALSE";
    if (hr == E_POINTER) return "E_POINTER";
    if (hr == E_FAIL) return "E_FAIL";
    if (hr == E_INVALIDARG) return "E_INVALIDARG";
    CXString number;
    number.Format(W("0x%08X"), static_cast<unsigned>(hr));
    return number.ToUtf8();
}

// What a call gives back, or "throws" and what the exception carries.
template <class Call>
std::string Outcome(Call call) {
    try {
        return Name(call());
    } catch (const MorvaneComException& exception) {
        return "throws " + Name(exception.GetHresult());
    }
}

// Runs the call and compares what comes of it; prints the call when it is something else.
#define EXPECT_OUTCOME(expected, call) EXPECT_EQ(Outcome([&] { return call; }), expected) << #call
