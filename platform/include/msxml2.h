// The MSXML DOM's interfaces, as the SDK gives them: same slots, same identifiers. Implemented in platform/dom.
#pragma once

#include <oleauto.h>

enum tagDOMNodeType {
    NODE_INVALID,
    NODE_ELEMENT,
    NODE_ATTRIBUTE,
    NODE_TEXT,
    NODE_CDATA_SECTION,
    NODE_ENTITY_REFERENCE,
    NODE_ENTITY,
    NODE_PROCESSING_INSTRUCTION,
    NODE_COMMENT,
    NODE_DOCUMENT,
    NODE_DOCUMENT_TYPE,
    NODE_DOCUMENT_FRAGMENT,
    NODE_NOTATION
};
using DOMNodeType = tagDOMNodeType;

#define E_XML_NOTWF (static_cast<HRESULT>(0xC00CE223u))

struct IXMLDOMAttribute;
struct IXMLDOMCDATASection;
struct IXMLDOMComment;
struct IXMLDOMDocument;
struct IXMLDOMDocumentFragment;
struct IXMLDOMDocumentType;
struct IXMLDOMElement;
struct IXMLDOMEntityReference;
struct IXMLDOMImplementation;
struct IXMLDOMNamedNodeMap;
struct IXMLDOMNode;
struct IXMLDOMNodeList;
struct IXMLDOMParseError;
struct IXMLDOMProcessingInstruction;
struct IXMLDOMSchemaCollection;
struct IXMLDOMText;

struct IXMLDOMNodeList : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** listItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_length(LONG* listLength) = 0;
    virtual HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** nextItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE get__newEnum(IUnknown** ppUnk) = 0;
};
inline constexpr IID IID_IXMLDOMNodeList = {
    0x2933BF82, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct IXMLDOMNamedNodeMap : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE getNamedItem(BSTR name, IXMLDOMNode** namedItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE setNamedItem(IXMLDOMNode* newItem, IXMLDOMNode** nameItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE removeNamedItem(BSTR name, IXMLDOMNode** namedItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** listItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_length(LONG* listLength) = 0;
    virtual HRESULT STDMETHODCALLTYPE getQualifiedItem(BSTR baseName, BSTR namespaceURI,
                                                       IXMLDOMNode** qualifiedItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE removeQualifiedItem(BSTR baseName, BSTR namespaceURI,
                                                          IXMLDOMNode** qualifiedItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** nextItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE get__newEnum(IUnknown** ppUnk) = 0;
};
inline constexpr IID IID_IXMLDOMNamedNodeMap = {
    0x2933BF83, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct IXMLDOMParseError : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_errorCode(LONG* errorCode) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_url(BSTR* urlString) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_reason(BSTR* reasonString) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_srcText(BSTR* sourceString) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_line(LONG* lineNumber) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_linepos(LONG* linePosition) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_filepos(LONG* filePosition) = 0;
};
inline constexpr IID IID_IXMLDOMParseError = {
    0x3EFAA426, 0x272F, 0x11D2, {0x83, 0x6F, 0x00, 0x00, 0xF8, 0x7A, 0x77, 0x82}};

struct IXMLDOMNode : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_nodeName(BSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_nodeValue(VARIANT* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_nodeValue(VARIANT value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_nodeType(DOMNodeType* type) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_parentNode(IXMLDOMNode** parent) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_childNodes(IXMLDOMNodeList** childList) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_firstChild(IXMLDOMNode** firstChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_lastChild(IXMLDOMNode** lastChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_previousSibling(IXMLDOMNode** previousSibling) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_nextSibling(IXMLDOMNode** nextSibling) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_attributes(IXMLDOMNamedNodeMap** attributeMap) = 0;
    virtual HRESULT STDMETHODCALLTYPE insertBefore(IXMLDOMNode* newChild, VARIANT refChild,
                                                   IXMLDOMNode** outNewChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE replaceChild(IXMLDOMNode* newChild, IXMLDOMNode* oldChild,
                                                   IXMLDOMNode** outOldChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE removeChild(IXMLDOMNode* childNode, IXMLDOMNode** oldChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE appendChild(IXMLDOMNode* newChild, IXMLDOMNode** outNewChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE hasChildNodes(VARIANT_BOOL* hasChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ownerDocument(IXMLDOMDocument** DOMDocument) = 0;
    virtual HRESULT STDMETHODCALLTYPE cloneNode(VARIANT_BOOL deep, IXMLDOMNode** cloneRoot) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_nodeTypeString(BSTR* nodeType) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_text(BSTR* text) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_text(BSTR text) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_specified(VARIANT_BOOL* isSpecified) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_definition(IXMLDOMNode** definitionNode) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_nodeTypedValue(VARIANT* typedValue) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_nodeTypedValue(VARIANT typedValue) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_dataType(VARIANT* dataTypeName) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_dataType(BSTR dataTypeName) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_xml(BSTR* xmlString) = 0;
    virtual HRESULT STDMETHODCALLTYPE transformNode(IXMLDOMNode* stylesheet, BSTR* xmlString) = 0;
    virtual HRESULT STDMETHODCALLTYPE selectNodes(BSTR queryString, IXMLDOMNodeList** resultList) = 0;
    virtual HRESULT STDMETHODCALLTYPE selectSingleNode(BSTR queryString, IXMLDOMNode** resultNode) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_parsed(VARIANT_BOOL* isParsed) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_namespaceURI(BSTR* namespaceURI) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_prefix(BSTR* prefixString) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_baseName(BSTR* nameString) = 0;
    virtual HRESULT STDMETHODCALLTYPE transformNodeToObject(IXMLDOMNode* stylesheet, VARIANT outputObject) = 0;
};
inline constexpr IID IID_IXMLDOMNode = {0x2933BF80, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct IXMLDOMAttribute : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE get_name(BSTR* attributeName) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_value(VARIANT* attributeValue) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_value(VARIANT attributeValue) = 0;
};
inline constexpr IID IID_IXMLDOMAttribute = {
    0x2933BF85, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct IXMLDOMElement : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE get_tagName(BSTR* tagName) = 0;
    virtual HRESULT STDMETHODCALLTYPE getAttribute(BSTR name, VARIANT* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE setAttribute(BSTR name, VARIANT value) = 0;
    virtual HRESULT STDMETHODCALLTYPE removeAttribute(BSTR name) = 0;
    virtual HRESULT STDMETHODCALLTYPE getAttributeNode(BSTR name, IXMLDOMAttribute** attributeNode) = 0;
    virtual HRESULT STDMETHODCALLTYPE setAttributeNode(IXMLDOMAttribute* DOMAttribute,
                                                       IXMLDOMAttribute** attributeNode) = 0;
    virtual HRESULT STDMETHODCALLTYPE removeAttributeNode(IXMLDOMAttribute* DOMAttribute,
                                                          IXMLDOMAttribute** attributeNode) = 0;
    virtual HRESULT STDMETHODCALLTYPE getElementsByTagName(BSTR tagName, IXMLDOMNodeList** resultList) = 0;
    virtual HRESULT STDMETHODCALLTYPE normalize() = 0;
};
inline constexpr IID IID_IXMLDOMElement = {
    0x2933BF86, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct IXMLDOMCharacterData : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE get_data(BSTR* data) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_data(BSTR data) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_length(LONG* dataLength) = 0;
    virtual HRESULT STDMETHODCALLTYPE substringData(LONG offset, LONG count, BSTR* data) = 0;
    virtual HRESULT STDMETHODCALLTYPE appendData(BSTR data) = 0;
    virtual HRESULT STDMETHODCALLTYPE insertData(LONG offset, BSTR data) = 0;
    virtual HRESULT STDMETHODCALLTYPE deleteData(LONG offset, LONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE replaceData(LONG offset, LONG count, BSTR data) = 0;
};
inline constexpr IID IID_IXMLDOMCharacterData = {
    0x2933BF84, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct IXMLDOMText : IXMLDOMCharacterData {
    virtual HRESULT STDMETHODCALLTYPE splitText(LONG offset, IXMLDOMText** rightHandTextNode) = 0;
};
inline constexpr IID IID_IXMLDOMText = {0x2933BF87, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct IXMLDOMCDATASection : IXMLDOMText {};
inline constexpr IID IID_IXMLDOMCDATASection = {
    0x2933BF8A, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct IXMLDOMComment : IXMLDOMCharacterData {};
inline constexpr IID IID_IXMLDOMComment = {
    0x2933BF88, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct IXMLDOMProcessingInstruction : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE get_target(BSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_data(BSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_data(BSTR value) = 0;
};
inline constexpr IID IID_IXMLDOMProcessingInstruction = {
    0x2933BF89, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct IXMLDOMDocumentFragment : IXMLDOMNode {};
inline constexpr IID IID_IXMLDOMDocumentFragment = {
    0x3EFAA413, 0x272F, 0x11D2, {0x83, 0x6F, 0x00, 0x00, 0xF8, 0x7A, 0x77, 0x82}};

struct IXMLDOMDocument : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE get_doctype(IXMLDOMDocumentType** documentType) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_implementation(IXMLDOMImplementation** impl) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_documentElement(IXMLDOMElement** DOMElement) = 0;
    virtual HRESULT STDMETHODCALLTYPE putref_documentElement(IXMLDOMElement* DOMElement) = 0;
    virtual HRESULT STDMETHODCALLTYPE createElement(BSTR tagName, IXMLDOMElement** element) = 0;
    virtual HRESULT STDMETHODCALLTYPE createDocumentFragment(IXMLDOMDocumentFragment** docFrag) = 0;
    virtual HRESULT STDMETHODCALLTYPE createTextNode(BSTR data, IXMLDOMText** text) = 0;
    virtual HRESULT STDMETHODCALLTYPE createComment(BSTR data, IXMLDOMComment** comment) = 0;
    virtual HRESULT STDMETHODCALLTYPE createCDATASection(BSTR data, IXMLDOMCDATASection** cdata) = 0;
    virtual HRESULT STDMETHODCALLTYPE createProcessingInstruction(BSTR target, BSTR data,
                                                                  IXMLDOMProcessingInstruction** pi) = 0;
    virtual HRESULT STDMETHODCALLTYPE createAttribute(BSTR name, IXMLDOMAttribute** attribute) = 0;
    virtual HRESULT STDMETHODCALLTYPE createEntityReference(BSTR name, IXMLDOMEntityReference** entityRef) = 0;
    virtual HRESULT STDMETHODCALLTYPE getElementsByTagName(BSTR tagName, IXMLDOMNodeList** resultList) = 0;
    virtual HRESULT STDMETHODCALLTYPE createNode(VARIANT Type, BSTR name, BSTR namespaceURI, IXMLDOMNode** node) = 0;
    virtual HRESULT STDMETHODCALLTYPE nodeFromID(BSTR idString, IXMLDOMNode** node) = 0;
    virtual HRESULT STDMETHODCALLTYPE load(VARIANT xmlSource, VARIANT_BOOL* isSuccessful) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_readyState(LONG* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_parseError(IXMLDOMParseError** errorObj) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_url(BSTR* urlString) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_async(VARIANT_BOOL* isAsync) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_async(VARIANT_BOOL isAsync) = 0;
    virtual HRESULT STDMETHODCALLTYPE abort() = 0;
    virtual HRESULT STDMETHODCALLTYPE loadXML(BSTR bstrXML, VARIANT_BOOL* isSuccessful) = 0;
    virtual HRESULT STDMETHODCALLTYPE save(VARIANT destination) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_validateOnParse(VARIANT_BOOL* isValidating) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_validateOnParse(VARIANT_BOOL isValidating) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_resolveExternals(VARIANT_BOOL* isResolving) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_resolveExternals(VARIANT_BOOL isResolving) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_preserveWhiteSpace(VARIANT_BOOL* isPreserving) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_preserveWhiteSpace(VARIANT_BOOL isPreserving) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_onreadystatechange(VARIANT readystatechangeSink) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ondataavailable(VARIANT ondataavailableSink) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ontransformnode(VARIANT ontransformnodeSink) = 0;
};
inline constexpr IID IID_IXMLDOMDocument = {
    0x2933BF81, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

struct IXMLDOMDocument2 : IXMLDOMDocument {
    virtual HRESULT STDMETHODCALLTYPE get_namespaces(IXMLDOMSchemaCollection** namespaceCollection) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_schemas(VARIANT* otherCollection) = 0;
    virtual HRESULT STDMETHODCALLTYPE putref_schemas(VARIANT otherCollection) = 0;
    virtual HRESULT STDMETHODCALLTYPE validate(IXMLDOMParseError** errorObj) = 0;
    virtual HRESULT STDMETHODCALLTYPE setProperty(BSTR name, VARIANT value) = 0;
    virtual HRESULT STDMETHODCALLTYPE getProperty(BSTR name, VARIANT* value) = 0;
};
inline constexpr IID IID_IXMLDOMDocument2 = {
    0x2933BF95, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
