// PrintSchemaXmlDocument: the only way in which the component reads and changes a Print Schema document.
#pragma once

#include <mvutil/cxstring.h>

#include <bstr.h>
#include <comptr.h>
#include <msxml2.h>

#include <optional>
#include <vector>

class ComChecks;

// Selects one of a document's prefixes.
enum class NamespaceKind : LONG { Framework = 0, Keywords = 1, Private = 2 };

// An absent setting: the HRESULT form of ERROR_NOT_FOUND. Returned by lookups, never thrown.
inline constexpr HRESULT kElementNotFound = static_cast<HRESULT>(0x80070490u);
// Thrown by operations on an object built over no document.
inline constexpr HRESULT kNoDocument = static_cast<HRESULT>(0x8000000Au);

// The decimal integer at the start of a text: white space, a sign, digits up to the first other character. No digits
// give 0; a value beyond the type gives the type's limit.
LONG ReadDecimalInteger(WideStringView text) noexcept;

// The node's text without the white space around it, which is no part of a value: documents come indented, and not
// every document object takes it off.
HRESULT GetTrimmedText(IXMLDOMNode* node, Bstr* text);

// Wraps one DOM document that holds a PrintTicket or a PrintCapabilities. Knows the prefixes under which the document's
// root declares the Print Schema namespaces; each is empty or ends with its colon, so that a prefix followed by a local
// name is a qualified name in any case.
//
// Operations return S_OK, or S_FALSE where a lookup finds nothing; failures are thrown as MorvaneComException. A null
// out pointer or node is E_POINTER, an empty name, query or required text E_INVALIDARG, unless said otherwise. A null
// text is an empty one. Nodes given out carry a reference for the caller. Created elements are not attached to the
// document.
class PrintSchemaXmlDocument {
public:
    // Keeps a reference to the document and makes XPath its selection language. No document: an object without one.
    // Throws S_FALSE when the document's root is not the framework's element of that local name, E_FAIL when the root
    // declares the framework or the private namespace without a prefix. Where the root declares the private keywords
    // namespace under another prefix than mk, that prefix is renamed to mk throughout the name attributes.
    PrintSchemaXmlDocument(const WCHAR* rootName, IXMLDOMDocument2* document);
    virtual ~PrintSchemaXmlDocument();
    PrintSchemaXmlDocument(const PrintSchemaXmlDocument&) = delete;
    PrintSchemaXmlDocument& operator=(const PrintSchemaXmlDocument&) = delete;

    bool HasDocument() const noexcept { return static_cast<bool>(document_); }
    // The root element, borrowed; null without a document.
    IXMLDOMNode* GetRootNode() const noexcept { return rootNode_.Get(); }

    // Copies of the prefixes. GetNsPrefix throws E_INVALIDARG for an unknown kind.
    Bstr GetNsPrefix(NamespaceKind kind) const;
    Bstr GetFrameworkPrefix() const { return GetNsPrefix(NamespaceKind::Framework); }
    Bstr GetKeywordsPrefix() const { return GetNsPrefix(NamespaceKind::Keywords); }
    Bstr GetPrivatePrefix() const { return GetNsPrefix(NamespaceKind::Private); }
    // The prefix of a namespace declaration among the root's own attributes, with its colon. S_FALSE, out unchanged,
    // when no attribute has the URI for value; throws E_FAIL when the first that has it declares no prefix.
    HRESULT GetPrefixFromURI(const WCHAR* uri, Bstr* prefix) const;

    // ---- lookups

    // The first node that an XPath query selects. Throws 0x8000000A without a document.
    HRESULT GetNode(const WCHAR* query, IXMLDOMNode** node) const;
    // All framework elements of a local name in the document ("ParameterInit"). An empty query is E_FAIL.
    HRESULT GetNodes(const WCHAR* query, IXMLDOMNodeList** nodes) const;
    // A Feature by name; without the suffix, absence is thrown as E_FAIL.
    HRESULT GetFeatureNodeIfExists(const WCHAR* prefix, const WCHAR* name, IXMLDOMNode** node) const;
    HRESULT GetFeatureNode(const WCHAR* prefix, const WCHAR* name, IXMLDOMNode** node) const;
    // The text of the selected node's Value, or of the ParameterInit that its ParameterRef names. An empty text leaves
    // the out string null.
    HRESULT GetNodeValue(const WCHAR* query, Bstr* text) const;
    // The text of an attribute. S_FALSE when the node has none of that name.
    HRESULT GetAttributeValue(IXMLDOMNode* node, const WCHAR* name, Bstr* text) const;

    // ---- deletion

    // Takes the node from its parent. S_FALSE, and nothing done, when it has none.
    HRESULT DeleteNode(IXMLDOMNode* node);
    HRESULT DeleteFeatureNodeIfExists(const WCHAR* prefix, const WCHAR* name);
    // Deletes the first of several Features of that name, once, however many there are. S_OK in any case.
    HRESULT DeleteFeatureNodeIfADuplicateExists(const WCHAR* prefix, const WCHAR* name);
    // Deletes every Property of that name in the document; S_OK, also when there is none. An empty name is E_FAIL.
    HRESULT DeletePropertyNodesIfExist(const WCHAR* prefix, const WCHAR* name);
    // Deletes the root's children of that kind ("Feature") and name, in one walk. What lies deeper is another's.
    void DeleteEvery(const WCHAR* kind, const WCHAR* prefix, const WCHAR* name);

    // ---- creation

    // An element of the framework namespace under the qualified name as given. A null name is E_INVALIDARG.
    HRESULT CreateXMLElement(const WCHAR* qualifiedName, IXMLDOMElement** element);
    // Sets an attribute; a null URI stands for no namespace. A null element, name or value is E_INVALIDARG.
    HRESULT AppendXMLAttribute(IXMLDOMElement* element, const WCHAR* qualifiedName, const WCHAR* namespaceUri,
                               const WCHAR* value);
    // A Property, without content or with one Value of an XML Schema type ("integer"); the value's text may be empty.
    HRESULT CreateProperty(NamespaceKind kind, const WCHAR* name, IXMLDOMElement** property);
    HRESULT CreateProperty(NamespaceKind kind, const WCHAR* name, const WCHAR* type, const WCHAR* value,
                           IXMLDOMElement** property);
    // A ScoredProperty of the keywords namespace; the value's text is required.
    HRESULT CreateScoredProperty(const WCHAR* name, IXMLDOMElement** property);
    HRESULT CreateScoredProperty(const WCHAR* name, const WCHAR* type, const WCHAR* value, IXMLDOMElement** property);
    HRESULT CreateIntegerScoredProperty(const WCHAR* name, LONG value, IXMLDOMElement** property);
    // An empty prefix is E_INVALIDARG, too.
    HRESULT CreateParameterRef(const WCHAR* prefix, const WCHAR* name, IXMLDOMElement** reference);
    // A ScoredProperty that holds a ParameterRef.
    HRESULT CreateParameterRefScoredProperty(const WCHAR* prefix, const WCHAR* name, const WCHAR* refPrefix,
                                             const WCHAR* refName, IXMLDOMElement** property);

    HRESULT AppendChildToRootNode(IXMLDOMNode* child);
    HRESULT AppendChild(IXMLDOMNode* parent, IXMLDOMNode* child);
    // Create and append; all names are of the keywords namespace. A null parent is E_INVALIDARG.
    HRESULT AppendChildIntegerProperty(IXMLDOMNode* parent, const WCHAR* name, LONG value);
    HRESULT AppendChildIntegerScoredProperty(IXMLDOMNode* parent, const WCHAR* name, LONG value);
    HRESULT AppendChildQNameScoredProperty(IXMLDOMNode* parent, const WCHAR* name, const WCHAR* valueName);
    // Creates and appends. A null parent is E_POINTER.
    HRESULT AppendChildParameterRefScoredProperty(IXMLDOMNode* parent, const WCHAR* prefix, const WCHAR* name,
                                                  const WCHAR* refPrefix, const WCHAR* refName);

protected:
    // A framework element of the local name, with a name attribute of prefix and name.
    HRESULT CreateNamedElement(const WCHAR* localName, WideStringView prefix, const WCHAR* name,
                               IXMLDOMElement** element);
    // Appends a Value of an XML Schema type to the element, on behalf of the method of the checks.
    void AppendTypedValue(const ComChecks& checks, IXMLDOMElement* element, const WCHAR* type, Bstr value);
    // CreateXMLElement and AppendXMLAttribute, for texts that are BSTRs already; a null URI stands for no namespace.
    ComPtr<IXMLDOMElement> CreateElement(BSTR qualifiedName);
    void SetAttribute(IXMLDOMElement* element, BSTR qualifiedName, BSTR namespaceUri, Bstr value);

    // Deletes every node that the query selects.
    void DeleteSelected(const ComChecks& checks, const WCHAR* query);

    const Bstr& PrefixOf(NamespaceKind kind) const;
    WideStringView FrameworkPrefix() const noexcept { return psfPrefix_.View(); }
    WideStringView KeywordsPrefix() const noexcept { return pskPrefix_.View(); }
    WideStringView PrivatePrefix() const noexcept { return privatePrefix_.View(); }
    WideStringView SchemaPrefix() const noexcept { return xsdPrefix_.View(); }

private:
    struct RootAttribute {
        ComPtr<IXMLDOMNode> node;
        Variant value;
    };

    std::vector<RootAttribute> ListRootAttributes() const;
    static HRESULT FindPrefix(const std::vector<RootAttribute>& attributes, WideStringView uri, Bstr* prefix);
    void SetProperty(const ComChecks& checks, BSTR name, Bstr value);
    void SetSelectionNamespace(const ComChecks& checks, WideStringView prefix);
    bool FindRoot(const ComChecks& checks);
    void NormalizePrivatePrefix(const ComChecks& checks);
    std::optional<std::vector<ComPtr<IXMLDOMNode>>> FindPrivateNames(const ComChecks& checks) const;
    void RenamePrivateNames(const ComChecks& checks, const std::vector<ComPtr<IXMLDOMNode>>& names);
    void RenamePrivateDeclaration(const ComChecks& checks);
    ComPtr<IXMLDOMNodeList> SelectNodes(const ComChecks& checks, const WCHAR* query) const;
    bool FindParameterValue(const ComChecks& checks, const Bstr& name, Bstr* text) const;

    ComPtr<IXMLDOMDocument2> document_;
    Bstr rootName_;
    Bstr xsdPrefix_;
    Bstr xsiPrefix_;
    Bstr psfPrefix_;
    Bstr pskPrefix_;
    Bstr privatePrefix_;
    ComPtr<IXMLDOMNode> rootNode_;
};
