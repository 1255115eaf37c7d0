// Lookups and deletion in a Print Schema document.
#include "printschemaxmldocument.h"

#include "printschematext.h"
#include "printticketquerybuilder.h"

#include <limits>

namespace {

constexpr const WCHAR* kSourceUnit = W("printschemaxmldocument");

}  // namespace

LONG ReadDecimalInteger(WideStringView text) noexcept {
    const std::size_t start = text.find_first_not_of(W(" \t\n\v\f\r"));
    if (start == WideStringView::npos) return 0;
    text.remove_prefix(start);
    const bool negative = text.front() == W('-');
    if (negative || text.front() == W('+')) text.remove_prefix(1);

    const LONGLONG limit = negative ? -static_cast<LONGLONG>(std::numeric_limits<LONG>::min())
                                    : static_cast<LONGLONG>(std::numeric_limits<LONG>::max());
    LONGLONG value = 0;
    for (const WCHAR character : text) {
        if (character < W('0') || character > W('9')) break;
        value = value * 10 + (character - W('0'));
        if (value > limit) value = limit;
    }
    return static_cast<LONG>(negative ? -value : value);
}

HRESULT GetTrimmedText(IXMLDOMNode* node, Bstr* text) {
    const HRESULT hr = node->get_text(text->Put());
    if (FAILED(hr)) return hr;
    const WideStringView trimmed = Trimmed(text->View());
    if (trimmed.size() == text->View().size()) return hr;
    Bstr copy;
    *copy.Put() = SysAllocStringLen(trimmed.data(), static_cast<UINT>(trimmed.size()));
    if (!copy.Get()) return E_OUTOFMEMORY;
    *text = std::move(copy);
    return hr;
}

// ---- lookups

HRESULT PrintSchemaXmlDocument::GetNode(const WCHAR* query, IXMLDOMNode** node) const {
    const ComChecks checks(W("PrintSchemaXmlDocument::GetNode"), kSourceUnit);
    checks.Require(node != nullptr, E_POINTER);
    *node = nullptr;
    checks.Require(HasDocument(), kNoDocument);
    checks.Require(!IsEmpty(query), E_INVALIDARG);
    ComPtr<IXMLDOMNode> found;
    if (!Found(checks, document_->selectSingleNode(CopyText(checks, query).Get(), found.Put()), found)) return S_FALSE;
    *node = found.Detach();
    return S_OK;
}

ComPtr<IXMLDOMNodeList> PrintSchemaXmlDocument::SelectNodes(const ComChecks& checks, const WCHAR* query) const {
    checks.Require(HasDocument(), kNoDocument);
    ComPtr<IXMLDOMNodeList> nodes;
    checks.Require(Found(checks, document_->selectNodes(CopyText(checks, query).Get(), nodes.Put()), nodes), E_FAIL);
    return nodes;
}

HRESULT PrintSchemaXmlDocument::GetNodes(const WCHAR* query, IXMLDOMNodeList** nodes) const {
    const ComChecks checks(W("PrintSchemaXmlDocument::GetNodes"), kSourceUnit);
    checks.Require(nodes != nullptr, E_POINTER);
    *nodes = nullptr;
    checks.Require(!IsEmpty(query), E_FAIL);
    const Bstr name = Join(checks, FrameworkPrefix(), query);
    *nodes = SelectNodes(checks, Join(checks, W("//"), name.View()).Get()).Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::GetFeatureNodeIfExists(const WCHAR* prefix, const WCHAR* name,
                                                       IXMLDOMNode** node) const {
    const ComChecks checks(W("PrintSchemaXmlDocument::GetFeatureNodeIfExists"), kSourceUnit);
    checks.Require(node != nullptr, E_POINTER);
    *node = nullptr;
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    const Bstr query = ComposeQuery(psfPrefix_, [&](auto& steps) { steps.AddFeature(prefix, name); });
    return GetNode(query.Get(), node);
}

HRESULT PrintSchemaXmlDocument::GetFeatureNode(const WCHAR* prefix, const WCHAR* name, IXMLDOMNode** node) const {
    const ComChecks checks(W("PrintSchemaXmlDocument::GetFeatureNode"), kSourceUnit);
    checks.Require(GetFeatureNodeIfExists(prefix, name, node) == S_OK, E_FAIL);
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::GetNodeValue(const WCHAR* query, Bstr* text) const {
    const ComChecks checks(W("PrintSchemaXmlDocument::GetNodeValue"), kSourceUnit);
    checks.Require(text != nullptr, E_POINTER);
    text->Reset();
    checks.Require(!IsEmpty(query), E_INVALIDARG);
    ComPtr<IXMLDOMNode> node;
    if (GetNode(query, node.Put()) == S_FALSE) return S_FALSE;

    Bstr result;
    ComPtr<IXMLDOMNode> value;
    ComPtr<IXMLDOMNode> reference;
    if (Found(checks, node->selectSingleNode(Join(checks, FrameworkPrefix(), W("Value")).Get(), value.Put()), value)) {
        result = GetTypedValue(checks, value.Get());
    } else if (Found(checks,
                     node->selectSingleNode(Join(checks, FrameworkPrefix(), W("ParameterRef")).Get(), reference.Put()),
                     reference)) {
        Bstr name;
        if (GetAttributeValue(reference.Get(), W("name"), &name) == S_FALSE) return S_FALSE;
        if (!FindParameterValue(checks, name, &result)) return S_FALSE;
    } else {
        return S_FALSE;
    }
    if (!result.IsEmpty()) *text = std::move(result);
    return S_OK;
}

// The first ParameterInit of exactly that name gives the text of its Value. The name comes from the document and may
// hold quotes: it is compared here and put into no query.
bool PrintSchemaXmlDocument::FindParameterValue(const ComChecks& checks, const Bstr& name, Bstr* text) const {
    const Bstr valueName = Join(checks, FrameworkPrefix(), W("Value"));
    ComPtr<IXMLDOMNodeList> parameters;
    GetNodes(W("ParameterInit"), parameters.Put());
    const LONG count = CountOf(checks, parameters.Get());
    for (LONG index = 0; index < count; ++index) {
        const ComPtr<IXMLDOMNode> parameter = NodeAt(checks, parameters.Get(), index);
        Bstr parameterName;
        if (GetAttributeValue(parameter.Get(), W("name"), &parameterName) == S_FALSE) continue;
        if (parameterName.View() != name.View()) continue;
        ComPtr<IXMLDOMNode> value;
        const bool hasValue = Found(checks, parameter->selectSingleNode(valueName.Get(), value.Put()), value);
        *text = GetTypedValue(checks, hasValue ? value.Get() : parameter.Get());
        return true;
    }
    return false;
}

HRESULT PrintSchemaXmlDocument::GetAttributeValue(IXMLDOMNode* node, const WCHAR* name, Bstr* text) const {
    const ComChecks checks(W("PrintSchemaXmlDocument::GetAttributeValue"), kSourceUnit);
    checks.Require(node != nullptr && text != nullptr, E_POINTER);
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    if (!Found(checks, node->get_attributes(attributes.Put()), attributes)) return S_FALSE;
    ComPtr<IXMLDOMNode> attribute;
    if (!Found(checks, attributes->getNamedItem(CopyText(checks, name).Get(), attribute.Put()), attribute))
        return S_FALSE;
    checks.Succeeds(attribute->get_text(text->Put()));
    return S_OK;
}

// ---- deletion

HRESULT PrintSchemaXmlDocument::DeleteNode(IXMLDOMNode* node) {
    const ComChecks checks(W("PrintSchemaXmlDocument::DeleteNode"), kSourceUnit);
    checks.Require(node != nullptr, E_POINTER);
    ComPtr<IXMLDOMNode> parent;
    if (!Found(checks, node->get_parentNode(parent.Put()), parent)) return S_FALSE;
    ComPtr<IXMLDOMNode> removed;
    checks.Require(Found(checks, parent->removeChild(node, removed.Put()), removed), E_FAIL);
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::DeleteFeatureNodeIfExists(const WCHAR* prefix, const WCHAR* name) {
    ComPtr<IXMLDOMNode> feature;
    if (GetFeatureNodeIfExists(prefix, name, feature.Put()) == S_FALSE) return S_FALSE;
    return DeleteNode(feature.Get());
}

HRESULT PrintSchemaXmlDocument::DeleteFeatureNodeIfADuplicateExists(const WCHAR* prefix, const WCHAR* name) {
    const ComChecks checks(W("PrintSchemaXmlDocument::DeleteFeatureNodeIfADuplicateExists"), kSourceUnit);
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    const Bstr query = ComposeQuery(psfPrefix_, [&](auto& steps) { steps.AddFeature(prefix, name); });
    const ComPtr<IXMLDOMNodeList> features = SelectNodes(checks, query.Get());
    if (CountOf(checks, features.Get()) > 1) DeleteNode(NodeAt(checks, features.Get(), 0).Get());
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::DeletePropertyNodesIfExist(const WCHAR* prefix, const WCHAR* name) {
    const ComChecks checks(W("PrintSchemaXmlDocument::DeletePropertyNodesIfExist"), kSourceUnit);
    checks.Require(!IsEmpty(name), E_FAIL);
    const Bstr query = ComposeQuery(psfPrefix_, [&](auto& steps) { steps.AddProperty(prefix, name); });
    DeleteSelected(checks, query.Get());
    return S_OK;
}

void PrintSchemaXmlDocument::DeleteEvery(const WCHAR* kind, const WCHAR* prefix, const WCHAR* name) {
    const ComChecks checks(W("PrintSchemaXmlDocument::DeleteEvery"), kSourceUnit);
    CXString query;
    query.Format(W("/*/%s%s[@name = \"%s%s\"]"), psfPrefix_.Get(), kind, prefix, name);
    DeleteSelected(checks, query);
}

void PrintSchemaXmlDocument::DeleteSelected(const ComChecks& checks, const WCHAR* query) {
    const ComPtr<IXMLDOMNodeList> nodes = SelectNodes(checks, query);
    const LONG count = CountOf(checks, nodes.Get());
    for (LONG index = 0; index < count; ++index) DeleteNode(NodeAt(checks, nodes.Get(), index).Get());
}
