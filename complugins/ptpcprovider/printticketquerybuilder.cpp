// The steps of a query and its text.
#include "printticketquerybuilder.h"

#include "printschematext.h"

namespace {

constexpr const WCHAR* kSourceUnit = W("printticketquerybuilder");
constexpr ComChecks kConstruction(W("PrintTicketQueryBuilder::PrintTicketQueryBuilder"), kSourceUnit);

}  // namespace

PrintTicketQueryBuilder::PrintTicketQueryBuilder(const WCHAR* prefix) : PrintTicketQueryBuilder(prefix, W("")) {}

PrintTicketQueryBuilder::PrintTicketQueryBuilder(const WCHAR* prefix, const WCHAR* start)
    : query_(CopyText(kConstruction, ViewOf(start))), prefix_(CopyText(kConstruction, ViewOf(prefix))) {}

PrintTicketQueryBuilder::~PrintTicketQueryBuilder() = default;

HRESULT PrintTicketQueryBuilder::GetQuery(Bstr* query) const {
    const ComChecks checks(W("PrintTicketQueryBuilder::GetQuery"), kSourceUnit);
    checks.Require(query != nullptr, E_POINTER);
    query->Reset();
    *query = CopyText(checks, query_.View());
    return S_OK;
}

void PrintTicketQueryBuilder::AddFeature(const WCHAR* namePrefix, const WCHAR* name) {
    AddNamed(W("PrintTicketQueryBuilder::AddFeature"), W("//%sFeature[@name = \"%s\"]"), namePrefix, name);
}

void PrintTicketQueryBuilder::AddProperty(const WCHAR* namePrefix, const WCHAR* name) {
    AddNamed(W("PrintTicketQueryBuilder::AddProperty"), W("//%sProperty[@name = \"%s\"]"), namePrefix, name);
}

void PrintTicketQueryBuilder::AddScoredProperty(const WCHAR* namePrefix, const WCHAR* name) {
    AddNamed(W("PrintTicketQueryBuilder::AddScoredProperty"), W("//%sScoredProperty[@name = \"%s\"]"), namePrefix,
             name);
}

void PrintTicketQueryBuilder::AddParameterDef(const WCHAR* namePrefix, const WCHAR* name) {
    AddNamed(W("PrintTicketQueryBuilder::AddParameterDef"), W("//%sParameterDef[@name = \"%s\"]"), namePrefix, name);
}

void PrintTicketQueryBuilder::AddParameterInit(const WCHAR* namePrefix, const WCHAR* name) {
    AddNamed(W("PrintTicketQueryBuilder::AddParameterInit"), W("//%sParameterInit[@name = \"%s\"]"), namePrefix, name);
}

void PrintTicketQueryBuilder::AddChildPropertyValue(const WCHAR* namePrefix, const WCHAR* name) {
    AddNamed(W("PrintTicketQueryBuilder::AddChildPropertyValue"), W("/%sProperty[@name = \"%s\"]/%sValue"), namePrefix,
             name);
}

void PrintTicketQueryBuilder::AddChildOptionName(const WCHAR* namePrefix, const WCHAR* name) {
    AddNamed(W("PrintTicketQueryBuilder::AddChildOptionName"), W("/%sOption[@name = \"%s\"]"), namePrefix, name);
}

void PrintTicketQueryBuilder::AddValue() {
    const ComChecks checks(W("PrintTicketQueryBuilder::AddValue"), kSourceUnit);
    checks.Require(!prefix_.IsEmpty(), E_FAIL);
    Append(checks, W("/%sValue"), prefix_.Get());
}

void PrintTicketQueryBuilder::AddOption(const WCHAR* keywordsPrefix) {
    const ComChecks checks(W("PrintTicketQueryBuilder::AddOption"), kSourceUnit);
    checks.Require(!prefix_.IsEmpty(), E_FAIL);
    Append(checks, W("/%sOption | %s/%sScoredProperty[@name = \"%sOptionName\"]/%sValue"), prefix_.Get(), query_.Get(),
           prefix_.Get(), keywordsPrefix, prefix_.Get());
}

// The formats name the framework prefix, the name, and for some the framework prefix once more.
void PrintTicketQueryBuilder::AddNamed(const WCHAR* methodName, const WCHAR* format, const WCHAR* namePrefix,
                                       const WCHAR* name) {
    const ComChecks checks(methodName, kSourceUnit);
    checks.Require(!prefix_.IsEmpty(), E_FAIL);
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    const Bstr fullName = Join(checks, ViewOf(namePrefix), name);
    Append(checks, format, prefix_.Get(), fullName.Get(), prefix_.Get());
}

template <class... Texts>
void PrintTicketQueryBuilder::Append(const ComChecks& checks, const WCHAR* format, Texts... texts) {
    try {
        CXString step;
        step.Format(format, texts...);
        query_ = Join(checks, query_.View(), step.AsWideString());
    } catch (const std::bad_alloc&) {
        checks.Throw(E_OUTOFMEMORY);
    }
}
