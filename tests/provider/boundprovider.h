// A printer with its provider, and what tests ask of both.
#pragma once

#include <support/documents.h>
#include <support/printerfixture.h>
#include <support/privatedevmode.h>

#include <mvutil/persistentattributes.h>
#include <ptpcprovider/morvaneptprovider.h>

#include <cstring>

// Looks into a provider: what no caller of the published interface can set.
class ProviderProbe {
public:
    static void SetOsMajorVersion(MorvanePtProvider& provider, DWORD version) { provider.osMajorVersion_ = version; }
    static void SetCapabilityFlags(MorvanePtProvider& provider, ULONGLONG flags) {
        provider.driverCapabilityFlags_ = flags;
    }
    // Family and capability word, and whether there is product data.
    static std::string TellBinding(MorvanePtProvider& provider) {
        std::string members =
            std::to_string(provider.controllerFamily_) + " " + std::to_string(provider.driverCapabilityFlags_);
        try {
            return members + (provider.IsColorDevice() ? " colour" : " grey");
        } catch (const MorvaneComException&) {
            return members;
        }
    }
};

// The product's printer in the open store, with a provider bound to it.
class BoundProvider {
public:
    explicit BoundProvider(const std::string& product, const WCHAR* name = W("Test Printer"))
        : printer_(product, name) {
        Bind();
    }
    BoundProvider(const WCHAR* name, const std::filesystem::path& productFile) : printer_(name, productFile) { Bind(); }

    MorvanePtProvider* operator->() const { return provider_.Get(); }
    MorvanePtProvider& operator*() const { return *provider_.Get(); }
    HANDLE GetPrinter() const { return printer_.GetHandle(); }

    HRESULT ToTicket(TestDevmode& devmode, const ComPtr<IXMLDOMDocument2>& ticket) const {
        return provider_->ConvertDevModeToPrintTicket(BytesOf(devmode), devmode.Get(), 0, nullptr, ticket.Get());
    }
    HRESULT ToDevmode(const ComPtr<IXMLDOMDocument2>& ticket, TestDevmode& devmode) const {
        return provider_->ConvertPrintTicketToDevMode(ticket.Get(), BytesOf(devmode), devmode.Get(), 0, nullptr);
    }
    // The same for documents of the usual prefixes with the given children; failures are the test's. What is read from
    // a ticket is read alike from its indented twin.
    ComPtr<IXMLDOMDocument2> MakeTicket(TestDevmode& devmode, const std::string& children = "") const {
        auto ticket = LoadUsual("PrintTicket", children);
        EXPECT_EQ(ToTicket(devmode, ticket), S_OK);
        return ticket;
    }
    void Apply(const std::string& children, TestDevmode& devmode) const {
        const auto ticket = LoadUsual("PrintTicket", children);
        TestDevmode other = devmode;
        EXPECT_EQ(ToDevmode(ticket, devmode), S_OK);
        EXPECT_EQ(ToDevmode(LoadIndented(ticket), other), S_OK);
        EXPECT_EQ(std::memcmp(other.Get(), devmode.Get(), BytesOf(devmode)), 0) << "the indented twin differs";
    }
    ComPtr<IXMLDOMDocument2> Complete(const std::string& children = "",
                                      const ComPtr<IXMLDOMDocument2>& ticket = nullptr) const {
        auto capabilities = LoadUsual("PrintCapabilities", children);
        EXPECT_EQ(provider_->CompletePrintCapabilities(ticket.Get(), capabilities.Get()), S_OK);
        if (!ticket) return capabilities;
        const auto other = LoadUsual("PrintCapabilities", children);
        EXPECT_EQ(provider_->CompletePrintCapabilities(LoadIndented(ticket).Get(), other.Get()), S_OK);
        EXPECT_EQ(TextOf(other), TextOf(capabilities)) << "the indented twin differs";
        return capabilities;
    }
    static ULONG BytesOf(TestDevmode& devmode) { return ULONG{devmode.Get()->dmSize} + devmode.Get()->dmDriverExtra; }

private:
    void Bind() {
        OEMPTOPTS options = OEMPT_DEFAULT;
        INT count = 0;
        BSTR* namespaces = nullptr;
        EXPECT_EQ(provider_->BindPrinter(printer_.GetHandle(), 1, &options, &count, &namespaces), S_OK);
        for (INT i = 0; i < count; ++i) SysFreeString(namespaces[i]);
        CoTaskMemFree(namespaces);
    }

    TestPrinter printer_;
    ComPtr<MorvanePtProvider> provider_ = ComPtr<MorvanePtProvider>::Adopt(new MorvanePtProvider);
};

// Two printers in a store of their own.
struct ProviderTest : testing::Test {
    const TestStore store;
    const BoundProvider press{kPress, W("Press")}, office{kOffice, W("Office")};
};

// A DEVMODE whose block holds document properties (feature 43 = the number) and an application name.
inline TestDevmode MakeTestDevmode(LONG number = 1) {
    AttributeBytesRawList list;
    list.Append(AttributeBytesFeatureId(43), AttributeBytesIntegerValue(number));
    const ByteBuffer state =
        PersistentAttributes::MakeState(PersistentAttributes::GetDataModelDocPropNameSpaceId(), list);
    return TestDevmode(MakePrivateBlock({{1, state}, {2, TextBytes(W("writer.exe"))}}));
}

// Counts the reports of caught failures for as long as it lives.
class ReportCounter {
public:
    ReportCounter() {
        previous_ = MorvaneException::SetReportHook([this](const ExceptionReport& report) {
            ++count;
            last = report;
        });
    }
    ~ReportCounter() { MorvaneException::SetReportHook(previous_); }
    ReportCounter(const ReportCounter&) = delete;
    ReportCounter& operator=(const ReportCounter&) = delete;

    int count = 0;
    ExceptionReport last;

private:
    MorvaneException::ReportHook previous_;
};

// What a document holds, as tests write it; all names are keywords where no prefix is given.
inline std::string Feature(const std::string& name, const std::string& content) {
    return "<psf:Feature name='psk:" + name + "'>" + content + "</psf:Feature>";
}
inline std::string Option(const std::string& wholeName, const std::string& content = "") {
    return "<psf:Option name='" + wholeName + "'>" + content + "</psf:Option>";
}
inline std::string ScoredProperty(const std::string& name, const std::string& value) {
    return "<psf:ScoredProperty name='psk:" + name + "'><psf:Value>" + value + "</psf:Value></psf:ScoredProperty>";
}
inline std::string Parameter(const std::string& wholeName, const std::string& value) {
    return "<psf:ParameterInit name='" + wholeName + "'><psf:Value>" + value + "</psf:Value></psf:ParameterInit>";
}

// The texts of what the query selects, in document order, with blanks between them; "-" when it selects nothing.
inline std::string TextsOf(const ComPtr<IXMLDOMDocument2>& document, const std::string& query) {
    document->setProperty(Bstr(W("SelectionNamespaces")).Get(),
                          Variant(WideStringView(W("xmlns:psf='") + WideString(kFrameworkNamespace) + W("'"))).Get());
    ComPtr<IXMLDOMNodeList> nodes;
    EXPECT_EQ(document->selectNodes(Bstr(CXString::FromUtf8(query).AsWideString()).Get(), nodes.Put()), S_OK) << query;
    std::string all;
    for (ComPtr<IXMLDOMNode> node; nodes && nodes->nextNode(node.Put()) == S_OK && node;) {
        Bstr text;
        EXPECT_EQ(node->get_text(text.Put()), S_OK);
        all += (all.empty() ? "" : " ") + Utf8(text);
    }
    return all.empty() ? "-" : all;
}

// The values of the root's parameters or the options of its features by that whole name.
inline std::string ValueOf(const ComPtr<IXMLDOMDocument2>& document, const std::string& kind, const std::string& name) {
    return TextsOf(document, "/*/psf:" + kind + "[@name='" + name + "']" +
                                 (kind == "Feature" ? "/psf:Option/@name" : "/psf:Value"));
}
