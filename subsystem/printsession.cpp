// PrintSession: one printer with its PrintTicket provider, driven as the print subsystem drives it.
#include "printsession.h"

#include <bstr.h>
#include <printsubsystem/printschema.h>
#include <workflowobject.h>

#include <algorithm>
#include <memory>
#include <set>

#include "hosterror.h"
#include "hosttext.h"
#include "xmlfile.h"

namespace {

constexpr INT kInterfaceVersion = 1;
constexpr WideStringView kDeclarationStart = W("xmlns:");

// The namespaces of every Print Schema document, under the prefixes that they usually have.
constexpr struct {
    const WCHAR *prefix, *uri;
} kSchemaNamespaces[] = {
    {W("psf"), kFrameworkNamespace},
    {W("psk"), kKeywordsNamespace},
    {W("xsi"), kXmlSchemaInstanceNamespace},
    {W("xsd"), kXmlSchemaNamespace},
};

template <class T>
struct FreeTaskMemory {
    void operator()(T* block) const noexcept { CoTaskMemFree(block); }
};
template <class T>
using TaskMemory = std::unique_ptr<T, FreeTaskMemory<T>>;

void RequireSuccess(const char* operation, HRESULT result) {
    if (FAILED(result)) throw OperationError(operation, result);
}

// Notes a document's reference count and compares it after the call.
class ReferenceCheck {
public:
    ReferenceCheck(const char* operation, IUnknown* document)
        : operation_(operation), document_(document), before_(Count(document)) {}

    HRESULT Pass(HRESULT result) const {
        const ULONG after = Count(document_);
        if (after == before_) return result;
        throw OperationError(std::string(operation_) + " left a document with " + std::to_string(after) +
                             " references that had " + std::to_string(before_) + "; this is a fault of the component");
    }

private:
    static ULONG Count(IUnknown* document) {
        if (!document) return 0;
        document->AddRef();
        return document->Release();
    }

    const char* operation_;
    IUnknown* document_;
    ULONG before_;
};

PVOID PrivatePart(DevmodeBuffer& devmode) { return reinterpret_cast<BYTE*>(devmode.Get()) + devmode.GetPublicBytes(); }

struct Declaration {
    WideString prefix;
    WideString uri;
};

std::vector<Declaration> ReadDeclarations(IXMLDOMElement* root) {
    std::vector<Declaration> declarations;
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    RequireSuccess("reading a document's root", root->get_attributes(attributes.Put()));
    for (;;) {
        ComPtr<IXMLDOMNode> attribute;
        if (attributes->nextNode(attribute.Put()) != S_OK || !attribute) return declarations;
        Bstr name;
        Variant value;
        if (attribute->get_nodeName(name.Put()) != S_OK || attribute->get_nodeValue(value.Put()) != S_OK) continue;
        if (name.View().starts_with(kDeclarationStart))
            declarations.push_back(
                {WideString(name.View().substr(kDeclarationStart.size())), WideString(value.Text())});
    }
}

using Prefixes = std::set<WideString>;

bool Declares(const std::vector<Declaration>& declarations, WideString Declaration::*part, WideStringView text) {
    return std::any_of(declarations.begin(), declarations.end(),
                       [&](const Declaration& declaration) { return declaration.*part == text; });
}

// Documents exist that use a prefix in names and declare it below the root or not at all.
void AddPrefixesOfNames(IXMLDOMDocument2* document, Prefixes* prefixes) {
    document->setProperty(Bstr(W("SelectionLanguage")).Get(), Variant(WideStringView(W("XPath"))).Get());
    ComPtr<IXMLDOMNodeList> elements;
    RequireSuccess("reading a document's names", document->selectNodes(Bstr(W("//*[@name]")).Get(), elements.Put()));
    for (ComPtr<IXMLDOMNode> node; elements->nextNode(node.Put()) == S_OK && node;) {
        const ComPtr<IXMLDOMElement> element = node.As<IXMLDOMElement>(IID_IXMLDOMElement);
        Variant name;
        if (!element || element->getAttribute(Bstr(W("name")).Get(), name.Put()) != S_OK) continue;
        const std::size_t colon = name.Text().find(W(':'));
        if (colon != WideStringView::npos) prefixes->emplace(name.Text().substr(0, colon));
    }
}

WideString MakePrefix(unsigned number) {
    std::string digits = std::to_string(number);
    digits.insert(0, 4 - std::min<std::size_t>(digits.size(), 4), '0');
    return W("ns") + *ToWide(digits);
}

// The first nsNNNN that the root does not declare and no name uses.
WideString FindFreePrefix(IXMLDOMDocument2* document, const std::vector<Declaration>& declarations) {
    Prefixes taken;
    for (const Declaration& declaration : declarations) taken.insert(declaration.prefix);
    AddPrefixesOfNames(document, &taken);
    for (unsigned number = 0;; ++number)
        if (WideString prefix = MakePrefix(number); !taken.contains(prefix)) return prefix;
}

void Declare(IXMLDOMDocument2* document, IXMLDOMElement* root, const Declaration& declaration) {
    constexpr const char* kOperation = "declaring a namespace";
    ComPtr<IXMLDOMNode> node;
    RequireSuccess(kOperation, document->createNode(Variant(LONG{NODE_ATTRIBUTE}).Get(),
                                                    Bstr(WideString(kDeclarationStart) + declaration.prefix).Get(),
                                                    Bstr().Get(), node.Put()));
    RequireSuccess(kOperation, node->put_nodeValue(Variant(WideStringView(declaration.uri)).Get()));
    const ComPtr<IXMLDOMAttribute> attribute = node.As<IXMLDOMAttribute>(IID_IXMLDOMAttribute);
    ComPtr<IXMLDOMAttribute> replaced;
    RequireSuccess(kOperation, attribute ? root->setAttributeNode(attribute.Get(), replaced.Put()) : E_NOINTERFACE);
}

}  // namespace

PrintSession::PrintSession(const CXString& printer, const ProviderSource& source)
    : printer_(printer),
      coreDriver_(source.coreProduct ? source.coreProduct : printer_.GetProduct(), printer_.GetName(),
                  printer_.GetPort()),
      library_(source.plugIn) {
    Bind();
}

void PrintSession::Bind() {
    provider_ = library_->MakeProvider();
    INT* versionList = nullptr;
    INT versionCount = 0;
    RequireSuccess("GetSupportedVersions",
                   provider_->GetSupportedVersions(printer_.GetHandle(), &versionList, &versionCount));
    const TaskMemory<INT> versions(versionList);
    if (std::find(versionList, versionList + versionCount, kInterfaceVersion) == versionList + versionCount)
        throw OperationError("the component does not support version 1 of the interface; install one that does");

    OEMPTOPTS options = OEMPT_DEFAULT;
    INT namespaceCount = 0;
    BSTR* namespaceList = nullptr;
    const HRESULT bound =
        provider_->BindPrinter(printer_.GetHandle(), kInterfaceVersion, &options, &namespaceCount, &namespaceList);
    const TaskMemory<BSTR> namespaces(namespaceList);
    for (INT index = 0; namespaceList && index < namespaceCount; ++index) SysFreeString(namespaceList[index]);
    RequireSuccess("BindPrinter", bound);

    Bstr uri;
    const HRESULT queried = provider_->QueryDeviceDefaultNamespace(uri.Put());
    if (queried != E_NOTIMPL) RequireSuccess("QueryDeviceDefaultNamespace", queried);
    deviceNamespace_ = uri.View();
}

bool PrintSession::HasWorkflowLibrary() const {
    return WorkflowObject().InitializeWorkflowObject(printer_.GetHandle(), nullptr, nullptr);
}

HRESULT PrintSession::CallTicket(DevmodeBuffer& devmode, IXMLDOMDocument2* ticket) const {
    const ReferenceCheck check("ConvertDevModeToPrintTicket", ticket);
    return check.Pass(provider_->ConvertDevModeToPrintTicket(devmode.GetBytes(), devmode.Get(), devmode.GetExtraBytes(),
                                                             PrivatePart(devmode), ticket));
}

HRESULT PrintSession::CallApply(IXMLDOMDocument2* ticket, DevmodeBuffer& devmode) const {
    const ReferenceCheck check("ConvertPrintTicketToDevMode", ticket);
    return check.Pass(provider_->ConvertPrintTicketToDevMode(ticket, devmode.GetBytes(), devmode.Get(),
                                                             devmode.GetExtraBytes(), PrivatePart(devmode)));
}

HRESULT PrintSession::CallCapabilities(IXMLDOMDocument2* ticket, IXMLDOMDocument2* capabilities) const {
    const ReferenceCheck ticketCheck("CompletePrintCapabilities", ticket);
    const ReferenceCheck check("CompletePrintCapabilities", capabilities);
    return ticketCheck.Pass(check.Pass(provider_->CompletePrintCapabilities(ticket, capabilities)));
}

HRESULT PrintSession::CallExpand(IXMLDOMDocument2* ticket) const {
    return ReferenceCheck("ExpandIntentOptions", ticket).Pass(provider_->ExpandIntentOptions(ticket));
}

HRESULT PrintSession::CallValidate(IXMLDOMDocument2* ticket) const {
    return ReferenceCheck("ValidatePrintTicket", ticket).Pass(provider_->ValidatePrintTicket(ticket));
}

PrintSession::Document PrintSession::MakeTicket(DevmodeBuffer& devmode, Document coreTicket) const {
    if (!coreTicket)
        coreTicket =
            ReadDocumentBytes(coreDriver_.WriteTicket(devmode.CopyPublicPart()), "the core driver's PrintTicket");
    DeclareNamespaces(coreTicket.Get());
    RequireSuccess("ConvertDevModeToPrintTicket", CallTicket(devmode, coreTicket.Get()));
    return coreTicket;
}

void PrintSession::ApplyTicket(IXMLDOMDocument2* ticket, DevmodeBuffer& devmode) const {
    DeclareNamespaces(ticket);
    DEVMODEW publicPart = devmode.CopyPublicPart();
    coreDriver_.ReadTicket(ticket, publicPart);
    devmode.SetPublicPart(publicPart);
    RequireSuccess("ConvertPrintTicketToDevMode", CallApply(ticket, devmode));
}

PrintSession::Document PrintSession::MakeCapabilities(IXMLDOMDocument2* ticket, Document coreCapabilities) const {
    if (!coreCapabilities)
        coreCapabilities = ReadDocumentBytes(coreDriver_.WriteCapabilities(), "the core driver's PrintCapabilities");
    if (ticket) DeclareNamespaces(ticket);
    DeclareNamespaces(coreCapabilities.Get());
    RequireSuccess("CompletePrintCapabilities", CallCapabilities(ticket, coreCapabilities.Get()));
    return coreCapabilities;
}

void PrintSession::DeclareNamespaces(IXMLDOMDocument2* document) const {
    ComPtr<IXMLDOMElement> root;
    if (document->get_documentElement(root.Put()) != S_OK || !root) return;
    std::vector<Declaration> declarations = ReadDeclarations(root.Get());
    const auto declare = [&](const WideString& prefix, const WideString& uri) {
        declarations.push_back({prefix, uri});
        Declare(document, root.Get(), declarations.back());
    };
    const WideString own = deviceNamespace_.empty() ? coreDriver_.GetOwnNamespace() : deviceNamespace_;
    if (!Declares(declarations, &Declaration::uri, own)) {
        // A provider without a namespace writes its names under ns0000, whatever that stands for in the document.
        const WideString prefix = deviceNamespace_.empty() ? MakePrefix(0) : FindFreePrefix(document, declarations);
        if (!Declares(declarations, &Declaration::prefix, prefix)) declare(prefix, own);
    }
    for (const auto& [prefix, uri] : kSchemaNamespaces) {
        if (Declares(declarations, &Declaration::uri, uri)) continue;
        const bool isTaken = Declares(declarations, &Declaration::prefix, prefix);
        declare(isTaken ? FindFreePrefix(document, declarations) : prefix, uri);
    }
}

std::string FormatDocument(IXMLDOMDocument2* document) {
    std::string text;
    RequireSuccess("serialising a document", SerialiseDomDocument(document, &text));
    return text;
}
