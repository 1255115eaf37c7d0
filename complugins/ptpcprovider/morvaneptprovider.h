// MorvanePtProvider: the PrintTicket provider that the print subsystem loads beside the core driver.
#pragma once

#include <comptr.h>
#include <datasourceprovider.h>
#include <facts/drivercapabilities.h>
#include <mvcore/pagesizedictionary.h>
#include <mvutil/attributebytes.h>
#include <mvutil/textresources.h>
#include <printsubsystem/printticketprovider.h>
#include <workflow/productdata.h>
#include <workflowobject.h>

#include <memory>

class Bstr;
class MsCachedDeviceCapabilities;
class PrintCapabilitiesXmlDocument;
class PrintSchemaXmlDocument;
class PrintTicketXmlDocument;
class XDevmode;
enum class NamespaceKind : LONG;
using MsPrintTicketNamespacesEnum = NamespaceKind;  // the namespace that the name of an option is in
struct MediaTypeDataEntry;
struct PageOutputQualityDataEntry;
struct _tag_FormsInfoRec;

#ifdef MVPTPC_EXPORTS
#define MVPTPC_API __declspec(dllexport)
#else
#define MVPTPC_API __declspec(dllimport)
#endif

// One object serves one printer: it is constructed with a reference count of 1, bound once with BindPrinter, and used
// by one thread at a time. Only the reference count is safe for several threads. No COM method lets an exception
// escape.
class MVPTPC_API MorvanePtProvider final : public IPrintOemPrintTicketProvider, public DataSourceProvider {
public:
    MorvanePtProvider();
    ~MorvanePtProvider() override;
    MorvanePtProvider(const MorvanePtProvider&) = delete;
    MorvanePtProvider& operator=(const MorvanePtProvider&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // The caller frees the array with CoTaskMemFree.
    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE printer, INT** versions, INT* count) override;
    // The handle is kept and stays the caller's. The caller frees the namespaces and their array.
    HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* namespaceCount,
                                          BSTR** namespaces) override;
    HRESULT STDMETHODCALLTYPE PublishPrintTicketHelperInterface(IUnknown* helper) override;
    HRESULT STDMETHODCALLTYPE QueryDeviceDefaultNamespace(BSTR* namespaceUri) override;

    // The conversions change the caller's DEVMODE and documents in place and keep no reference to them. A DEVMODE that
    // claims more bytes than were handed in, or fewer than the public fields read here, gives E_INVALIDARG. After a
    // failure (E_FAIL, with one report) the changes made before it stay. The private DEVMODE arguments are not used.
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2* ticket, ULONG devmodeBytes,
                                                          PDEVMODEW devmode, ULONG privateBytes,
                                                          PVOID privateDevmode) override;
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG devmodeBytes, PDEVMODEW devmode, ULONG privateBytes,
                                                          PVOID privateDevmode, IXMLDOMDocument2* ticket) override;
    HRESULT STDMETHODCALLTYPE CompletePrintCapabilities(IXMLDOMDocument2* ticket,
                                                        IXMLDOMDocument2* capabilities) override;
    HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2* ticket) override;
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override;

    // The provider contributes no data sources of its own.
    void ProvideDataSources(std::vector<std::pair<DataSourceProviderTypes, DataSource*>>& sources) override;

private:
    friend class ProviderProbe;  // tests look at what a printer binds to

    // What the printer's product says; both throw MorvaneComException (E_FAIL) without a bound workflow library.
    ProductStringLoader& GetProductStringLoader();  // valid until the next call
    ProductData& GetProductData();                  // owned by the workflow library
    PageSizeDictionary& GetPageSizeDictionary();    // made on first use; needs no binding
    bool IsColorDevice();

    bool HasPrivateNamespace() const noexcept { return (driverCapabilityFlags_ & facts::kPrivateNamespaceFlag) != 0; }
    bool IsPostScriptDevice() const noexcept { return (driverCapabilityFlags_ & facts::kPostScriptDeviceFlag) != 0; }

    // Each feature unit returns the HRESULT of a MorvaneComException that ends it.

    // Media type. The printer's types are in the order in which the core driver reports them; none when it cannot say.
    std::vector<MediaTypeDataEntry> GetMediaTypeCachedDeviceCapabilitiesAndPrintSchemaMappings(
        MsCachedDeviceCapabilities& deviceCapabilities);
    HRESULT AddOrReplacePageMediaTypeCapabilities(PrintCapabilitiesXmlDocument& capabilities,
                                                  MsCachedDeviceCapabilities& deviceCapabilities);
    HRESULT ConvertPageMediaTypeToDevmode(PrintTicketXmlDocument& ticket,
                                          MsCachedDeviceCapabilities& deviceCapabilities,
                                          AttributeBytesIndexedList* list, bool* changed);
    HRESULT ConvertDevmodeToPageMediaType(PrintTicketXmlDocument& ticket, XDevmode& xdevmode,
                                          MsCachedDeviceCapabilities& deviceCapabilities);

    // Media size. A size without an entry in the dictionary leaves the name as it was.
    void GetMsPageMediaSizeOptionName(bool custom, const _tag_FormsInfoRec& record, CXString* name,
                                      MsPrintTicketNamespacesEnum* kind);
    // The record that the ticket selects. True when the ticket gives no usable size, so that it is the default one.
    bool GetPrintTicketPaperSize(PrintTicketXmlDocument& ticket, MsCachedDeviceCapabilities& deviceCapabilities,
                                 _tag_FormsInfoRec* paper);
    // The record that the DEVMODE, which has all public fields, selects; left as it was when there is none.
    void GetDevmodePaperSize(DEVMODEW* devmode, MsCachedDeviceCapabilities& deviceCapabilities,
                             _tag_FormsInfoRec* paper);
    HRESULT ReplacePageMediaSizeCapabilities(PrintCapabilitiesXmlDocument& capabilities, PrintTicketXmlDocument& ticket,
                                             MsCachedDeviceCapabilities& deviceCapabilities);
    HRESULT ConvertPageMediaSizeToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                          MsCachedDeviceCapabilities& deviceCapabilities);
    HRESULT ConvertDevmodeToPageMediaSize(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                          MsCachedDeviceCapabilities& deviceCapabilities);

    // Imageable size and area, of the paper that the ticket selects.
    HRESULT ReplacePageImageableSizeAndAreaProperties(PrintCapabilitiesXmlDocument& capabilities,
                                                      PrintTicketXmlDocument& ticket,
                                                      MsCachedDeviceCapabilities& deviceCapabilities);

    // Output quality.
    std::vector<PageOutputQualityDataEntry> GetPageOutputQualityCapabilitiesAndPrintSchemaMappings();
    HRESULT AddOrReplacePageOutputQualityCapabilities(PrintCapabilitiesXmlDocument& capabilities);
    HRESULT ConvertPageOutputQualityToDevmode(PrintTicketXmlDocument& ticket, AttributeBytesIndexedList* list,
                                              bool* changed);
    HRESULT ConvertDevmodeToPageOutputQuality(PrintTicketXmlDocument& ticket, XDevmode& xdevmode);
    bool HasAutomaticOutputQuality();

    // Fix-ups of what the core driver wrote.
    HRESULT DeleteRedundantPageOrientationFromPpdGpdNamespace(PrintSchemaXmlDocument& document);
    HRESULT FixUpResolutionCapabilities(PrintCapabilitiesXmlDocument& capabilities,
                                        MsCachedDeviceCapabilities& deviceCapabilities);
    HRESULT FixUpDuplexCapabilities(PrintCapabilitiesXmlDocument& capabilities);

    // Colour management.
    HRESULT AddOrReplaceColorFeaturesCapabilities(PrintCapabilitiesXmlDocument& capabilities);
    HRESULT ConvertColorFeaturesToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                          AttributeBytesIndexedList* list, bool* changed);
    HRESULT ConvertDevmodeToColorFeatures(PrintTicketXmlDocument& ticket, DEVMODEW* devmode, XDevmode& xdevmode);
    bool HasColorFeatures();
    bool IsAtLeastOsVersion6() const noexcept { return osMajorVersion_ >= 6; }

    // Copies.
    HRESULT AddOrReplaceMiscFeaturesCapabilities(PrintCapabilitiesXmlDocument& capabilities,
                                                 MsCachedDeviceCapabilities& deviceCapabilities);
    HRESULT ConvertMiscFeaturesToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                         AttributeBytesIndexedList* list, bool* changed);
    HRESULT ConvertDevmodeToMiscFeatures(PrintTicketXmlDocument& ticket, DEVMODEW* devmode, XDevmode& xdevmode);

    // The MVJT job ticket of the current settings, in a private parameter; for printers of the private namespace.
    HRESULT AddJobMvjtJobTicketCapabilities(PrintCapabilitiesXmlDocument& capabilities);
    // S_FALSE when no job ticket applies.
    HRESULT EmbedPrivateMvjtInPrintTicket(PrintTicketXmlDocument& ticket, XDevmode& xdevmode);
    HRESULT GetMorvaneMvjtJobTicketAsCdataSection(XDevmode& xdevmode, Bstr& text);

    // The whole private block, carried in a private parameter.
    HRESULT AddMorvaneDriverDataCapabilities(PrintCapabilitiesXmlDocument& capabilities);
    HRESULT SetMorvaneDriverDataInPrintTicket(PrintTicketXmlDocument& ticket, XDevmode& xdevmode);
    // S_FALSE when the ticket has no such parameter; S_OK when it was read, whether or not its checksum matched.
    HRESULT GetMorvaneDriverDataFromPrintTicketAndUpdateDevmode(PrintTicketXmlDocument& ticket, XDevmode& xdevmode);
    // A working copy of the block's document properties; none when the block has no property 1.
    std::unique_ptr<AttributeBytesIndexedList> CreateDataModelDataAttributeBytesIndexedList(XDevmode& xdevmode);
    // A state that would not leave room for the block's other entries is dropped.
    void CommitChangesToDevmodeFromDataModelDataAttributeBytesIndexedList(XDevmode& xdevmode,
                                                                          const AttributeBytesIndexedList* list);

    volatile LONG refCount_;
    HANDLE printerHandle_;
    ComPtr<IPrintCoreHelper> coreHelper_;  // the core driver's optional helper
    std::unique_ptr<ProductStringLoader> productStringLoader_;
    std::unique_ptr<PageSizeDictionary> pageSizeDictionary_;
    ULONGLONG driverCapabilityFlags_;
    DWORD osMajorVersion_;
    DWORD osMinorVersion_;
    WorkflowObject workflowObject_;
    unsigned controllerFamily_;
};
