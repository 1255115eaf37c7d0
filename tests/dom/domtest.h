// Short words for the tests of the DOM.
#pragma once

#include <support/infoset.h>

#include <bstr.h>
#include <comptr.h>
#include <domdocument.h>
#include <widetext.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using Document = ComPtr<IXMLDOMDocument2>;
using Node = ComPtr<IXMLDOMNode>;

// ASCII as UTF-16.
inline Bstr B(std::string_view text) { return Bstr(std::basic_string<WCHAR>(text.begin(), text.end())); }
inline std::string S(const Bstr& text) { return Utf8Text(text.View()); }

inline Document NewDocument() {
    Document document;
    EXPECT_EQ(CreateDomDocument(document.Put()), S_OK);
    return document;
}

inline Document Load(std::string_view xml, VARIANT_BOOL preservesWhiteSpace = VARIANT_TRUE) {
    Document document = NewDocument();
    EXPECT_EQ(document->put_preserveWhiteSpace(preservesWhiteSpace), S_OK);
    std::string error;
    EXPECT_EQ(LoadDomDocument(document.Get(), xml.data(), xml.size(), &error), S_OK) << error << '\n' << xml;
    return document;
}

inline ComPtr<IXMLDOMElement> Root(const Document& document) {
    ComPtr<IXMLDOMElement> root;
    document->get_documentElement(root.Put());
    return root;
}

// What one of a node's properties holds.
inline std::string Ask(IXMLDOMNode* node, HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*get)(BSTR*)) {
    Bstr text;
    EXPECT_EQ((node->*get)(text.Put()), S_OK);
    return S(text);
}
inline std::string Xml(IXMLDOMNode* node) { return Ask(node, &IXMLDOMNode::get_xml); }
inline std::string Text(IXMLDOMNode* node) { return Ask(node, &IXMLDOMNode::get_text); }
inline std::string Name(IXMLDOMNode* node) { return Ask(node, &IXMLDOMNode::get_nodeName); }

inline std::string RootXml(const Document& document) { return Xml(Root(document).Get()); }

inline std::string Value(IXMLDOMNode* node) {
    Variant value;
    EXPECT_EQ(node->get_nodeValue(value.Put()), S_OK);
    return Utf8Text(value.Text());
}

inline Node Select(IXMLDOMNode* from, std::string_view query) {
    Node node;
    EXPECT_TRUE(SUCCEEDED(from->selectSingleNode(B(query).Get(), node.Put()))) << query;
    return node;
}

inline HRESULT SetProperty(const Document& document, std::string_view name, std::string_view value) {
    const Variant text(B(value).View());
    return document->setProperty(B(name).Get(), text.Get());
}

inline Node Create(const Document& document, DOMNodeType type, std::string_view name, std::string_view uri = {}) {
    Node node;
    EXPECT_EQ(document->createNode(Variant(static_cast<LONG>(type)).Get(), B(name).Get(), B(uri).Get(), node.Put()),
              S_OK)
        << name;
    return node;
}

// An attribute with a value, put on the element.
inline HRESULT Put(const Document& document, IXMLDOMElement* element, std::string_view name, std::string_view uri,
                   std::string_view value) {
    const auto attribute = Create(document, NODE_ATTRIBUTE, name, uri).As<IXMLDOMAttribute>(IID_IXMLDOMAttribute);
    EXPECT_EQ(attribute->put_value(Variant(B(value).View()).Get()), S_OK);
    return element->setAttributeNode(attribute.Get(), nullptr);
}

inline ComPtr<IXMLDOMNamedNodeMap> Attributes(IXMLDOMNode* element) {
    ComPtr<IXMLDOMNamedNodeMap> map;
    EXPECT_EQ(element->get_attributes(map.Put()), S_OK);
    return map;
}

// The names in the order in which the map lists them, each followed by a blank.
inline std::string AttributeNames(IXMLDOMNode* element) {
    const auto map = Attributes(element);
    std::string names;
    EXPECT_EQ(map->reset(), S_OK);
    for (Node node; map->nextNode(node.Put()) == S_OK;) names += Name(node.Get()) + ' ';
    return names;
}

inline std::string Serialised(const Document& document) {
    std::string utf8;
    EXPECT_EQ(SerialiseDomDocument(document.Get(), &utf8), S_OK);
    return utf8;
}

// ASCII in two bytes a character, with a byte order mark or without.
inline std::string Utf16(std::string_view ascii, bool bigEndian, bool mark) {
    std::string bytes = !mark ? "" : bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : ascii) bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
}
