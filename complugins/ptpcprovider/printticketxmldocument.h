// PrintTicketXmlDocument: a PrintTicket, with the chosen options, their scored properties and the parameter values.
#pragma once

#include "printschemaxmldocument.h"

// Failures are thrown and absence is S_FALSE as in the base class; where kElementNotFound is named, it is returned.
class PrintTicketXmlDocument : public PrintSchemaXmlDocument {
public:
    explicit PrintTicketXmlDocument(IXMLDOMDocument2* document);

    // ---- lookups: features and properties of the keywords namespace

    // The chosen option's local name and its prefix with the colon. kElementNotFound, outs unchanged, when the feature
    // or its option is absent. Throws E_FAIL for an option name without a colon.
    HRESULT GetFeatureOption(const WCHAR* feature, Bstr* optionName, Bstr* optionPrefix) const;
    // The value of a ScoredProperty at any depth in the feature, also by way of a ParameterRef; an empty value leaves
    // the out string null. kElementNotFound when absent.
    HRESULT GetScoredPropertyValue(const WCHAR* feature, const WCHAR* scoredProperty, Bstr* text) const;
    // That value as ReadDecimalInteger reads it. kElementNotFound, out unchanged, when absent.
    HRESULT GetScoredPropertyValue(const WCHAR* feature, const WCHAR* scoredProperty, LONG* value) const;
    HRESULT GetParameterInitNodeIfExists(const WCHAR* prefix, const WCHAR* name, IXMLDOMNode** node) const;
    // The Value element of a ParameterInit.
    HRESULT GetParameterInitValueNodeIfExists(const WCHAR* prefix, const WCHAR* name, IXMLDOMNode** node) const;

    // ---- creation

    // A keywords Feature that holds an Option without name.
    HRESULT CreateFeatureOptionPair(const WCHAR* feature, IXMLDOMElement** featureElement,
                                    IXMLDOMElement** optionElement);
    // The same with the option named, in the keywords namespace or in the private one.
    HRESULT CreateFeatureOptionPair(const WCHAR* feature, bool optionIsKeyword, const WCHAR* option,
                                    IXMLDOMElement** featureElement, IXMLDOMElement** optionElement);
    // A ParameterInit with its Value; prefix, name and text are required.
    HRESULT CreateStringParameterInit(const WCHAR* prefix, const WCHAR* name, const WCHAR* value,
                                      IXMLDOMElement** parameter);
    HRESULT CreateStringParameterInit(const WCHAR* prefix, const WCHAR* name, Bstr value, IXMLDOMElement** parameter);
    HRESULT CreateIntegerParameterInit(const WCHAR* prefix, const WCHAR* name, ULONG value, IXMLDOMElement** parameter);
    HRESULT CreateSignedIntegerParameterInit(const WCHAR* prefix, const WCHAR* name, LONG value,
                                             IXMLDOMElement** parameter);
    // Creates and appends to the root.
    HRESULT AppendIntegerParameterInit(const WCHAR* prefix, const WCHAR* name, ULONG value);

    // ---- deletion

    HRESULT DeleteParameterInitNodeIfExists(const WCHAR* prefix, const WCHAR* name);
    // Deletes every Feature of that name and, if there was any, every ParameterInit of the document that no remaining
    // ParameterRef names. Returns S_FALSE.
    HRESULT DeleteFeatureAndOrphanParameterInitsIfExists(const WCHAR* prefix, const WCHAR* name);
    // Deletes the ParameterInits that none of the ParameterRefs names; one without a name stays, unless there is no
    // ParameterRef at all.
    HRESULT DeleteParamInitOrphans(IXMLDOMNodeList* parameterRefs, IXMLDOMNodeList* parameterInits);
    // Deletes every node of the list.
    HRESULT DeleteNodeList(IXMLDOMNodeList* nodes);

private:
    HRESULT CreateParameterInit(const ComChecks& checks, const WCHAR* prefix, const WCHAR* name, const WCHAR* type,
                                Bstr value, IXMLDOMElement** parameter);
};
