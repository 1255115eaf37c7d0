// Identity and reference counts: of the provider, of documents, of the core driver's helper.
#include <subsystem/xmlfile.h>

#include <atomic>

#include <verify/binding.h>
#include <verify/check.h>
#include <verify/testbench.h>

namespace {

constexpr IID kNobodysInterface = {0x6d1b2f3e, 0x1c55, 0x4a0b, {0x93, 0x7e, 0x20, 0x5a, 0x4f, 0x61, 0x0c, 0xd2}};

void KeepsItsIdentity(TestBench& bench) {
    const auto provider = bench.MakeProvider();
    bench.Step("QueryInterface of the provider");
    const auto unknown = provider.As<IUnknown>(IID_IUnknown);
    bench.Require(static_cast<bool>(unknown), "the provider does not answer for IUnknown");
    const auto again = unknown.As<IPrintOemPrintTicketProvider>(IID_IPrintOemPrintTicketProvider);
    bench.Require(static_cast<bool>(again), "the provider's IUnknown does not answer for the provider's interface");
    bench.Require(again.As<IUnknown>(IID_IUnknown).Get() == unknown.Get(), "the provider has two identities");
    void* object = &object;
    bench.RequireResult("QueryInterface for an unknown interface", provider->QueryInterface(kNobodysInterface, &object),
                        E_NOINTERFACE);
    bench.Require(object == nullptr, "QueryInterface for an unknown interface leaves a pointer");
    const ULONG references = CountReferences(provider.Get());
    provider->AddRef();
    bench.Require(provider->Release() == references, "AddRef and Release do not cancel out");
}

// Notes a document's references, and compares them behind a call.
class DocumentCount {
public:
    DocumentCount(TestBench& bench, IXMLDOMDocument2* document)
        : bench_(bench), document_(document), before_(CountReferences(document)) {}

    void Require(const std::string& call) const {
        const ULONG after = CountReferences(document_);
        bench_.Require(after == before_, call + " leaves a document with " + std::to_string(after) +
                                             " references that had " + std::to_string(before_));
    }

private:
    TestBench& bench_;
    IXMLDOMDocument2* document_;
    ULONG before_;
};

void KeepsNoDocument(TestBench& bench) {
    const auto session = bench.OpenSession();
    IPrintOemPrintTicketProvider* const provider = session->GetProvider();
    DevmodeBuffer devmode = bench.MakeDevmode(*session);
    const auto good = bench.MakeCoreTicket(*session, devmode);
    const auto foreign = ReadDocumentBytes("<other version='1'/>", "a document of another kind");
    for (IXMLDOMDocument2* const ticket : {good.Get(), foreign.Get()}) {
        const auto capabilities = bench.MakeCoreCapabilities(*session);
        const DocumentCount count(bench, ticket), capabilitiesCount(bench, capabilities.Get());
        const auto require = [&](const char* call, auto run) {
            bench.Step(call);
            run();
            count.Require(call);
            capabilitiesCount.Require(call);
        };
        const ULONG bytes = devmode.GetBytes();
        require("ConvertDevModeToPrintTicket",
                [&] { provider->ConvertDevModeToPrintTicket(bytes, devmode.Get(), 0, nullptr, ticket); });
        require("ConvertPrintTicketToDevMode",
                [&] { provider->ConvertPrintTicketToDevMode(ticket, bytes, devmode.Get(), 0, nullptr); });
        require("CompletePrintCapabilities", [&] { provider->CompletePrintCapabilities(ticket, capabilities.Get()); });
        require("ExpandIntentOptions", [&] { provider->ExpandIntentOptions(ticket); });
        require("ValidatePrintTicket", [&] { provider->ValidatePrintTicket(ticket); });
    }
}

// A core driver's helper that counts what is held of it.
class Helper final : public IPrintCoreHelper {
public:
    virtual ~Helper() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IPrintCoreHelper)) return E_NOINTERFACE;
        *object = static_cast<IPrintCoreHelper*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }

    std::atomic<ULONG> references = 1;
};

void ReleasesTheHelper(TestBench& bench) {
    Helper helper, second;
    auto provider = bench.MakeProvider();
    bench.Step("PublishPrintTicketHelperInterface");
    provider->PublishPrintTicketHelperInterface(&helper);
    provider->PublishPrintTicketHelperInterface(&second);
    bench.Step("the last Release");
    provider.Reset();
    bench.Require(helper.references == 1 && second.references == 1,
                  "the core driver's helper is left with " + std::to_string(helper.references) +
                      " and a second one with " + std::to_string(second.references) + " references that had 1 each");
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Contract, "identity", "QueryInterface, AddRef and Release by the rules of COM", KeepsItsIdentity}},
    {{CheckGroup::Contract, "document-references",
      "each operation, also a failing one, leaves documents with the references that they had", KeepsNoDocument}},
    {{CheckGroup::Contract, "helper-references", "the core driver's helper is released with the provider",
      ReleasesTheHelper}},
};

}  // namespace
