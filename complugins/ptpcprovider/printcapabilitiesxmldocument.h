// PrintCapabilitiesXmlDocument: a PrintCapabilities, with its features, options and parameter definitions.
#pragma once

#include "printschemaxmldocument.h"

// Failures are thrown and absence is S_FALSE as in the base class; where kElementNotFound is named, it is returned.
class PrintCapabilitiesXmlDocument : public PrintSchemaXmlDocument {
public:
    explicit PrintCapabilitiesXmlDocument(IXMLDOMDocument2* document);

    // ---- creation

    // A Feature of the keywords namespace, with a DisplayName property when the display name is not empty.
    HRESULT CreateFeature(const WCHAR* name, const WCHAR* displayName, IXMLDOMElement** feature);
    // The same, followed by the SelectionType property PickOne.
    HRESULT CreatePickOneFeature(const WCHAR* name, const WCHAR* displayName, IXMLDOMElement** feature);
    // An Option named prefix and name, both required. A display name and a constraint ("None": the attribute
    // constrained, in the keywords namespace) are written when not empty.
    HRESULT CreateOption(const WCHAR* name, const WCHAR* prefix, const WCHAR* displayName, const WCHAR* constraint,
                         IXMLDOMElement** option);
    HRESULT AppendChildOption(const WCHAR* name, const WCHAR* prefix, const WCHAR* displayName, const WCHAR* constraint,
                              IXMLDOMNode* parent);
    // ParameterDefs. mandatory: a keyword ("Optional"). Lengths are in characters. An empty display name is not
    // written.
    HRESULT CreateIntegerParameterDef(const WCHAR* prefix, const WCHAR* name, const WCHAR* mandatory,
                                      const WCHAR* displayName, LONG defaultValue, LONG minimum, LONG maximum,
                                      LONG multiple, const WCHAR* unitType, IXMLDOMElement** parameter);
    HRESULT CreateStringParameterDef(const WCHAR* prefix, const WCHAR* name, const WCHAR* mandatory,
                                     const WCHAR* displayName, const WCHAR* defaultValue, LONG minimumLength,
                                     LONG maximumLength, const WCHAR* unitType, IXMLDOMElement** parameter);

    // ---- lookups and deletion

    HRESULT GetParameterDefNodeIfExists(const WCHAR* prefix, const WCHAR* name, IXMLDOMNode** node) const;
    HRESULT DeleteParameterDefNodeIfExists(const WCHAR* prefix, const WCHAR* name);
    // The feature's own Option children.
    ComPtr<IXMLDOMNodeList> GetChildOptionNodes(IXMLDOMNode* feature) const;
    HRESULT GetChildOptionNodeIfExists(IXMLDOMNode* feature, const WCHAR* prefix, const WCHAR* name,
                                       IXMLDOMNode** option) const;
    // The text of the first ScoredProperty of that keywords name at any depth under the node. Throws E_FAIL when there
    // is none or its text is empty.
    CXString GetChildScoredPropertyValueAsString(IXMLDOMNode* node, const WCHAR* name) const;

    // ---- display names

    // Replaces the text of the node's own DisplayName property. kElementNotFound when it has none. A null node is
    // E_INVALIDARG.
    HRESULT ReplaceDisplayNamePropertyValue(IXMLDOMNode* node, const WCHAR* text);
    // The same for the feature's option of that name; an option without a display name is left alone. S_FALSE when the
    // feature has no such option. Prefix, name and text are required.
    HRESULT ReplaceOptionDisplayNamePropertyValue(IXMLDOMNode* feature, const WCHAR* optionPrefix,
                                                  const WCHAR* optionName, const WCHAR* text);

private:
    void AppendProperty(IXMLDOMElement* parent, NamespaceKind kind, const WCHAR* name, const WCHAR* type,
                        const WCHAR* value);
    void AppendDisplayName(IXMLDOMElement* parent, const WCHAR* displayName);
};
