// ProviderLibrary: a plug-in DLL that hands out PrintTicket providers, loaded as a core driver loads it.
#pragma once

#include <comptr.h>
#include <printsubsystem/printticketprovider.h>
#include <products/reader/productdescription.h>
#include <unknwn.h>

#include <filesystem>
#include <memory>

// The provider of this driver family, and the plug-in DLL through which core drivers get it.
inline constexpr const char* kComponent = "mvptpcC0.dll";
inline constexpr const char* kOwnPlugin = "mvplugC0.dll";

class ProviderLibrary {
public:
    // Throws InputError when the file cannot be loaded or has not the export DllGetClassObject.
    explicit ProviderLibrary(const std::filesystem::path& file);
    ~ProviderLibrary();  // unloads it; no object of it may be alive
    ProviderLibrary(const ProviderLibrary&) = delete;
    ProviderLibrary& operator=(const ProviderLibrary&) = delete;

    const std::filesystem::path& GetFile() const noexcept { return file_; }
    // Throws OperationError when the library has no class of providers.
    ComPtr<IClassFactory> GetClassFactory() const;
    // A new, unbound provider. Throws OperationError when there is none to be had.
    ComPtr<IPrintOemPrintTicketProvider> MakeProvider() const;
    // What the library's own functions answer. Without an export DllCanUnloadNow: E_NOTIMPL.
    HRESULT CallGetClassObject(REFCLSID classId, REFIID iid, void** object) const;
    HRESULT CallCanUnloadNow() const;

private:
    std::filesystem::path file_;
    HMODULE module_;
};

// The provider to work with, and what stands before it.
struct ProviderSource {
    std::shared_ptr<const ProviderLibrary> plugIn;  // never null
    // Whose documents the core driver writes; null: the printer's own product. With it the DEVMODEs have no private
    // block of this driver family: the provider knows nothing of it.
    std::shared_ptr<const ProductDescription> coreProduct = nullptr;
};

// The file of this driver family's plug-in, beside the program or in the folder "driver" beside its own.
std::filesystem::path FindOwnPlugin();
// It, loaded once and kept for the life of the process. Throws InputError when it is not there.
ProviderSource GetOwnProvider();
