// The COM object: identity, binding to a printer, and what the feature units ask of the printer's product.
#include "ptpcprovider/morvaneptprovider.h"

#include <bstr.h>
#include <comptr.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/operationscope.h>
#include <mvutil/printdriver.h>
#include <objbase.h>
#include <printsubsystem/printschema.h>
#include <throwscheme.h>

#include <new>
#include <utility>

namespace {

constexpr const WCHAR* kSourceUnit = W("morvaneptprovider");
constexpr INT kInterfaceVersion = 1;

// What is called, be it a library or the host's own object, may throw; nothing leaves a COM method but an HRESULT.
template <class Call>
HRESULT RunWalled(Call call) noexcept {
    try {
        return call();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

}  // namespace

MorvanePtProvider::MorvanePtProvider()
    : refCount_(1),
      printerHandle_(nullptr),
      driverCapabilityFlags_(0),
      osMajorVersion_(0),
      osMinorVersion_(0),
      controllerFamily_(DataModelIds::kNotSet) {}

// The helper goes first; then the members in reverse order: the workflow library, the dictionary, the strings.
MorvanePtProvider::~MorvanePtProvider() { coreHelper_.Reset(); }

HRESULT MorvanePtProvider::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IPrintOemPrintTicketProvider)) return E_NOINTERFACE;
    *object = static_cast<IPrintOemPrintTicketProvider*>(this);
    AddRef();
    return S_OK;
}

ULONG MorvanePtProvider::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&refCount_)); }

ULONG MorvanePtProvider::Release() {
    const LONG count = InterlockedDecrement(&refCount_);
    if (count == 0) delete this;
    return static_cast<ULONG>(count);
}

HRESULT MorvanePtProvider::GetSupportedVersions(HANDLE, INT** versions, INT* count) {
    if (!versions || !count) return E_INVALIDARG;
    *count = 0;
    *versions = static_cast<INT*>(CoTaskMemAlloc(sizeof(INT)));
    if (!*versions) return E_OUTOFMEMORY;
    **versions = kInterfaceVersion;
    *count = 1;
    return S_OK;
}

HRESULT MorvanePtProvider::BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* namespaceCount,
                                       BSTR** namespaces) {
    if (!options || !namespaceCount || !namespaces || !printer) return E_INVALIDARG;
    *namespaceCount = 0;
    *namespaces = nullptr;
    if (version != kInterfaceVersion) return E_VERSION_NOT_SUPPORTED;

    const HRESULT bound = RunWalled([&] {
        const OperationScope scope;
        const ULONGLONG flags = PrintDriver().GetDriverCapability(printer, facts::kDriverCapabilityFlags);
        // A printer without its workflow library still binds; what needs product data fails later.
        workflowObject_.InitializeWorkflowObject(printer, this, &controllerFamily_);
        printerHandle_ = printer;
        driverCapabilityFlags_ = flags;
        return S_OK;
    });
    if (FAILED(bound)) return bound;
    OSVERSIONINFOW system = {};
    system.dwOSVersionInfoSize = sizeof(system);
    static_assert(sizeof(system) == 276);
    GetVersionExW(&system);
    osMajorVersion_ = system.dwMajorVersion;
    osMinorVersion_ = system.dwMinorVersion;

    *options = OEMPT_DEFAULT;
    if (!HasPrivateNamespace()) return S_OK;
    *namespaceCount = 1;
    *namespaces = static_cast<BSTR*>(CoTaskMemAlloc(sizeof(BSTR)));
    if (!*namespaces) return E_OUTOFMEMORY;
    **namespaces = SysAllocString(kPrivateKeywordsNamespace);
    return **namespaces ? S_OK : E_OUTOFMEMORY;
}

HRESULT MorvanePtProvider::PublishPrintTicketHelperInterface(IUnknown* helper) {
    if (!helper) return E_INVALIDARG;
    if (coreHelper_) return S_OK;
    return RunWalled([&] {
        ComPtr<IPrintCoreHelper> offered;
        const HRESULT hr = helper->QueryInterface(IID_IPrintCoreHelper, offered.PutVoid());
        if (SUCCEEDED(hr)) coreHelper_ = std::move(offered);
        return hr == E_NOINTERFACE ? S_OK : hr;  // the interface is optional
    });
}

HRESULT MorvanePtProvider::QueryDeviceDefaultNamespace(BSTR* namespaceUri) {
    if (!namespaceUri) return E_INVALIDARG;
    if (!HasPrivateNamespace()) return E_NOTIMPL;
    *namespaceUri = SysAllocString(kPrivateKeywordsNamespace);
    return *namespaceUri ? S_OK : E_OUTOFMEMORY;
}

void MorvanePtProvider::ProvideDataSources(std::vector<std::pair<DataSourceProviderTypes, DataSource*>>&) {}

ProductStringLoader& MorvanePtProvider::GetProductStringLoader() {
    const ComChecks checks(W("MorvanePtProvider::GetProductStringLoader"), kSourceUnit);
    checks.Require(workflowObject_.IsInitialized(), E_FAIL);
    productStringLoader_ = std::make_unique<ProductStringLoader>(controllerFamily_);
    TextResourceLoader::Initialize(printerHandle_, false);
    return *productStringLoader_;
}

ProductData& MorvanePtProvider::GetProductData() {
    const ComChecks checks(W("MorvanePtProvider::GetProductData"), kSourceUnit);
    checks.Require(workflowObject_.IsInitialized(), E_FAIL);
    ProductData* const product = workflowObject_.GetProductDataObj();
    checks.Require(product != nullptr, E_FAIL);  // a library may have an object, but nothing to say of the product
    return *product;
}

PageSizeDictionary& MorvanePtProvider::GetPageSizeDictionary() {
    if (!pageSizeDictionary_) pageSizeDictionary_ = std::make_unique<PageSizeDictionary>(nullptr);
    return *pageSizeDictionary_;
}

bool MorvanePtProvider::IsColorDevice() {
    CXString capability = GetProductData().GetInfo(ProductData::kInfoColorCapability);
    capability.MakeLower();
    return capability.Compare(W("color")) == 0;
}
