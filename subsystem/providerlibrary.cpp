// Loading a plug-in and getting providers of it.
#include "providerlibrary.h"

#include <widetext.h>
#include <windows.h>

#include "hosterror.h"
#include "hostplatform.h"

namespace {

using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID classId, REFIID iid, void** object);
using CanUnloadNow = HRESULT(STDMETHODCALLTYPE*)();

template <class Function>
Function FindExport(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace

ProviderLibrary::ProviderLibrary(const std::filesystem::path& file) : file_(file) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        throw InputError("there is no provider's library '" + PathToUtf8(file) + "'; name a plug-in DLL");
    const WideString path = std::filesystem::absolute(file, error).make_preferred().string<WCHAR>();
    module_ = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!module_)
        throw InputError("the provider's library '" + PathToUtf8(file) + "' cannot be loaded (error " +
                         std::to_string(GetLastError()) + "); see whether the libraries that it needs lie beside it");
    if (!FindExport<GetClassObject>(module_, "DllGetClassObject")) {
        FreeLibrary(module_);
        throw InputError("'" + PathToUtf8(file) + "' does not export DllGetClassObject; name the driver's plug-in DLL");
    }
}

ProviderLibrary::~ProviderLibrary() { FreeLibrary(module_); }

HRESULT ProviderLibrary::CallGetClassObject(REFCLSID classId, REFIID iid, void** object) const {
    return FindExport<GetClassObject>(module_, "DllGetClassObject")(classId, iid, object);
}

HRESULT ProviderLibrary::CallCanUnloadNow() const {
    const auto canUnloadNow = FindExport<CanUnloadNow>(module_, "DllCanUnloadNow");
    return canUnloadNow ? canUnloadNow() : E_NOTIMPL;
}

ComPtr<IClassFactory> ProviderLibrary::GetClassFactory() const {
    ComPtr<IClassFactory> factory;
    const HRESULT result = CallGetClassObject(CLSID_OEMPTPROVIDER, IID_IClassFactory, factory.PutVoid());
    if (FAILED(result)) throw OperationError("DllGetClassObject", result);
    if (!factory) throw OperationError("DllGetClassObject succeeded and handed out no class factory");
    return factory;
}

ComPtr<IPrintOemPrintTicketProvider> ProviderLibrary::MakeProvider() const {
    ComPtr<IPrintOemPrintTicketProvider> provider;
    const HRESULT result =
        GetClassFactory()->CreateInstance(nullptr, IID_IPrintOemPrintTicketProvider, provider.PutVoid());
    if (FAILED(result)) throw OperationError("CreateInstance", result);
    if (!provider) throw OperationError("CreateInstance succeeded and handed out no provider");
    return provider;
}

std::filesystem::path FindOwnPlugin() { return GetDriverFolder() / kOwnPlugin; }

ProviderSource GetOwnProvider() {
    // Kept for the life of the process: what it has loaded is not unloaded while the process ends.
    static const auto& library =
        *new std::shared_ptr<const ProviderLibrary>(std::make_shared<ProviderLibrary>(FindOwnPlugin()));
    return {library};
}
