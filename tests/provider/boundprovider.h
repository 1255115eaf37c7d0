// A printer with its provider, and what tests ask of both.
#pragma once

#include <printschema/documents.h>
#include <support/printerfixture.h>
#include <support/privatedevmode.h>

#include <mvutil/persistentattributes.h>
#include <ptpcprovider/morvaneptprovider.h>

// Looks into a provider: what no caller of the published interface can set.
class ProviderProbe {
public:
    static void SetOsMajorVersion(MorvanePtProvider& provider, DWORD version) { provider.osMajorVersion = version; }
    static void SetCapabilityFlags(MorvanePtProvider& provider, ULONGLONG flags) {
        provider.driverCapabilityFlags = flags;
    }
    static bool IsColorDevice(MorvanePtProvider& provider) { return provider.IsColorDevice(); }
    static PageSizeDictionary& GetPageSizeDictionary(MorvanePtProvider& provider) {
        return provider.GetPageSizeDictionary();
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

// A DEVMODE whose block holds document properties (feature 43 = the number) and an application name.
inline TestDevmode MakeTestDevmode(LONG number = 1) {
    AttributeBytesIndexedList list;
    list.SetAttributeBytes(AttributeBytesFeatureId(43), AttributeBytesIntegerValue(number));
    AttributeBytesRawList raw;
    raw.ImportFromIndexedList(list);
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetNameSpaceAttributes(PersistentAttributes::GetDataModelDocPropNameSpaceId(), raw);
    PersistentAttributes attributes(ByteBuffer(), false, nullptr);
    attributes.SetAttributeBytesNameSpaces(nameSpaces);
    ByteBuffer image;
    attributes.GetPersistentAttributesState(image);
    return TestDevmode(MakePrivateBlock({{1, image}, {2, TextBytes(W("writer.exe"))}}));
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

// The value of a root parameter or the option of a root feature by its whole name; "-" when it is absent.
inline std::string ValueOf(const ComPtr<IXMLDOMDocument2>& document, const std::string& kind, const std::string& name) {
    const bool isFeature = kind == "Feature";
    const CXString query = CXString::FromUtf8("/*/psf:" + kind + "[@name='" + name + "']" +
                                              (isFeature ? "/psf:Option/@name" : "/psf:Value"));
    document->setProperty(Bstr(W("SelectionNamespaces")).Get(),
                          Variant(WideStringView(W("xmlns:psf='") + WideString(kFrameworkNamespace) + W("'"))).Get());
    ComPtr<IXMLDOMNodeList> nodes;
    if (document->selectNodes(Bstr(query.AsWideString()).Get(), nodes.Put()) != S_OK) return "-";
    std::string all;
    for (ComPtr<IXMLDOMNode> node; nodes->nextNode(node.Put()) == S_OK && node;) {
        Bstr text;
        EXPECT_EQ(node->get_text(text.Put()), S_OK);
        all += (all.empty() ? "" : " ") + Utf8(text);
    }
    return all.empty() ? "-" : all;
}
