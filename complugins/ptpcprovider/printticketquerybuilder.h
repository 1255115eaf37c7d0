// PrintTicketQueryBuilder: composes the XPath queries that find Print Schema elements by their name attributes.
#pragma once

#include <widetext.h>
#include <windows.h>

#include <bstr.h>

class ComChecks;

// Made for one query. The operation that needs it appends steps in order, then takes the text. A name argument is a
// name prefix (with its colon, or empty) followed by a local name. Every step throws MorvaneComException: E_FAIL when
// the builder's framework prefix is empty, E_INVALIDARG for an empty local name, E_OUTOFMEMORY.
class PrintTicketQueryBuilder {
public:
    // prefix: the document's framework prefix with its colon. start: what the query begins with; "." makes it relative.
    explicit PrintTicketQueryBuilder(const WCHAR* prefix);
    PrintTicketQueryBuilder(const WCHAR* prefix, const WCHAR* start);
    virtual ~PrintTicketQueryBuilder();
    PrintTicketQueryBuilder(const PrintTicketQueryBuilder&) = delete;
    PrintTicketQueryBuilder& operator=(const PrintTicketQueryBuilder&) = delete;

    // Replaces the out string by a new copy of the query. Throws E_POINTER for a null out, E_OUTOFMEMORY.
    HRESULT GetQuery(Bstr* query) const;

    // Elements at any depth below what the query has selected so far.
    void AddFeature(const WCHAR* namePrefix, const WCHAR* name);
    void AddProperty(const WCHAR* namePrefix, const WCHAR* name);
    void AddScoredProperty(const WCHAR* namePrefix, const WCHAR* name);
    void AddParameterDef(const WCHAR* namePrefix, const WCHAR* name);
    void AddParameterInit(const WCHAR* namePrefix, const WCHAR* name);
    // Children: the Value of the Property of that name, a Value, the Option of that name.
    void AddChildPropertyValue(const WCHAR* namePrefix, const WCHAR* name);
    void AddValue();
    void AddChildOptionName(const WCHAR* namePrefix, const WCHAR* name);
    // Behind AddFeature: the feature's Option children, or the Value of its own ScoredProperty named OptionName in the
    // keywords namespace.
    void AddOption(const WCHAR* keywordsPrefix);

private:
    void AddNamed(const WCHAR* methodName, const WCHAR* format, const WCHAR* namePrefix, const WCHAR* name);
    template <class... Texts>
    void Append(const ComChecks& checks, const WCHAR* format, Texts... texts);

    Bstr query_;
    Bstr prefix_;
};

// The text of a query, from the steps that the callable appends to its builder.
template <class Steps>
Bstr ComposeQuery(const Bstr& prefix, Steps appendSteps, const WCHAR* start = W("")) {
    PrintTicketQueryBuilder builder(prefix.Get(), start);
    appendSteps(builder);
    Bstr query;
    builder.GetQuery(&query);
    return query;
}
