// One operation of a provider on documents of any kind.
#include "operationtrial.h"

#include <bstr.h>
#include <subsystem/documentkind.h>
#include <subsystem/hresultnames.h>
#include <subsystem/xmlfile.h>

namespace {

struct KindFacts {
    OperationKind kind;
    const char* call;
    WideStringView root;
};
constexpr KindFacts kKinds[] = {
    {OperationKind::Ticket, "ConvertDevModeToPrintTicket", kTicketRoot},
    {OperationKind::Apply, "ConvertPrintTicketToDevMode", kTicketRoot},
    {OperationKind::Capabilities, "CompletePrintCapabilities", kCapabilitiesRoot},
    {OperationKind::CapabilitiesForTicket, "CompletePrintCapabilities for a ticket", kTicketRoot},
    {OperationKind::Expand, "ExpandIntentOptions", kTicketRoot},
    {OperationKind::Validate, "ValidatePrintTicket", kTicketRoot},
};

const KindFacts& FactsOf(OperationKind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

PVOID PrivatePart(DevmodeBuffer& devmode) { return reinterpret_cast<BYTE*>(devmode.Get()) + devmode.GetPublicBytes(); }

WideString RootName(IXMLDOMDocument2* document) {
    ComPtr<IXMLDOMElement> root;
    Bstr name;
    if (document->get_documentElement(root.Put()) != S_OK || !root || root->get_nodeName(name.Put()) != S_OK) return {};
    return WideString(name.View());
}

TestBench::Document Read(const std::string& text) { return ReadDocumentBytes(text, "the document"); }

}  // namespace

std::span<const OperationKind> ListOperationKinds() {
    using enum OperationKind;
    static constexpr OperationKind kinds[] = {Ticket, Apply, Capabilities, CapabilitiesForTicket, Expand, Validate};
    return kinds;
}

bool IsPublishedResult(HRESULT result) noexcept {
    return FAILED(result) || result == S_OK || result == S_FALSE || result == S_NO_CONFLICT ||
           result == S_CONFLICT_RESOLVED;
}

OperationTrial::OperationTrial(TestBench& bench, const PrintSession& session, OperationKind kind)
    : bench_(bench), session_(session), kind_(kind), devmode_(bench.MakeDevmode(session)) {
    bench.Step(std::string("the documents for ") + GetCall());
    Document document = kind == OperationKind::Capabilities ? bench.MakeCoreCapabilities(session)
                                                            : bench.MakeCoreTicket(session, devmode_);
    DevmodeBuffer devmode = devmode_;
    if (kind != OperationKind::Capabilities && kind != OperationKind::Ticket)
        document = session.MakeTicket(devmode, document);
    document_ = FormatDocument(document.Get());
    if (kind == OperationKind::CapabilitiesForTicket)
        capabilities_ = FormatDocument(bench.MakeCoreCapabilities(session).Get());
    const Document own = ReadDocument();
    expected_ = Run(own.Get(), own.Get(), {});
}

const char* OperationTrial::GetCall() const noexcept { return FactsOf(kind_).call; }

OperationTrial::Document OperationTrial::ReadDocument() const { return Read(document_); }

HRESULT OperationTrial::CallProvider(IXMLDOMDocument2* document, DevmodeBuffer& devmode,
                                     IXMLDOMDocument2* capabilities) const {
    IPrintOemPrintTicketProvider& provider = *session_.GetProvider();
    switch (kind_) {
        case OperationKind::Ticket:
            return provider.ConvertDevModeToPrintTicket(devmode.GetBytes(), devmode.Get(), devmode.GetExtraBytes(),
                                                        PrivatePart(devmode), document);
        case OperationKind::Apply:
            return provider.ConvertPrintTicketToDevMode(document, devmode.GetBytes(), devmode.Get(),
                                                        devmode.GetExtraBytes(), PrivatePart(devmode));
        case OperationKind::Capabilities:
            return provider.CompletePrintCapabilities(nullptr, document);
        case OperationKind::CapabilitiesForTicket:
            return provider.CompletePrintCapabilities(document, capabilities);
        case OperationKind::Expand:
            return provider.ExpandIntentOptions(document);
        case OperationKind::Validate:
            return provider.ValidatePrintTicket(document);
    }
    return E_NOTIMPL;
}

OperationTrial::Result OperationTrial::Run(IXMLDOMDocument2* document, IXMLDOMDocument2* seen,
                                           const CallSurroundings& surroundings) const {
    const std::string name = GetCall();
    DevmodeBuffer devmode = devmode_;
    const Document capabilities = capabilities_.empty() ? nullptr : Read(capabilities_);
    const ULONG references = CountReferences(seen);
    const WideString root = RootName(document);
    const std::function<HRESULT()> call = [&] { return CallProvider(seen, devmode, capabilities.Get()); };
    const HRESULT answer =
        CallBehindWall(bench_, GetCall(), [&] { return surroundings ? surroundings(call) : call(); });
    bench_.Require(CountReferences(seen) == references, name + " left the document with " +
                                                            std::to_string(CountReferences(seen)) +
                                                            " references, which had " + std::to_string(references));
    bench_.Require(IsPublishedResult(answer),
                   name + " answered " + DescribeHresult(answer) + ", which is not published");
    bench_.Require(RootName(document) == root, name + " took the root of the document away");
    Result result{answer, FormatDocument(document), std::string(devmode.GetBytesView())};
    try {
        Read(result.document);
    } catch (const HostError& error) {
        bench_.Fail(name + " left what cannot be read again: " + error.what());
    }
    if (capabilities) result.document += FormatDocument(capabilities.Get());
    return result;
}

HRESULT OperationTrial::Call(IXMLDOMDocument2* document, IXMLDOMDocument2* standIn,
                             const CallSurroundings& surroundings) const {
    const Result result = Run(document, standIn ? standIn : document, surroundings);
    const std::string_view before = devmode_.GetBytesView(), after = result.devmode;
    constexpr std::size_t sizes = offsetof(DEVMODEW, dmSize), end = offsetof(DEVMODEW, dmFields);
    bench_.Require(before.substr(sizes, end - sizes) == after.substr(sizes, end - sizes),
                   std::string(GetCall()) + " changed the sizes of the DEVMODE");
    return result.answer;
}

void OperationTrial::RequireAsEver() const {
    const Document document = ReadDocument();
    bench_.Require(Run(document.Get(), document.Get(), {}) == expected_,
                   std::string(GetCall()) + " of a good document does not lead to what it led to at first");
}
