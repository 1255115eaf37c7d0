// Asks the provider for the version of its interface, in both ways: as a core driver does, through the plug-in, and
// through the class that mvptpcC0.dll exports.
#include <ptpcprovider/morvaneptprovider.h>
#include <widetext.h>

#include <cstdio>

namespace {

// The provider that the plug-in hands out; null when there is none.
IPrintOemPrintTicketProvider* MakeThroughPlugin() {
    using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
    const HMODULE plugin = LoadLibraryW(W("mvplugC0.dll"));
    const FARPROC found = plugin ? GetProcAddress(plugin, "DllGetClassObject") : nullptr;
    const auto getClassObject = reinterpret_cast<GetClassObject>(reinterpret_cast<void (*)()>(found));
    void *factory = nullptr, *provider = nullptr;
    if (!getClassObject || FAILED(getClassObject(CLSID_OEMPTPROVIDER, IID_IClassFactory, &factory))) return nullptr;
    static_cast<IClassFactory*>(factory)->CreateInstance(nullptr, IID_IPrintOemPrintTicketProvider, &provider);
    static_cast<IClassFactory*>(factory)->Release();
    return static_cast<IPrintOemPrintTicketProvider*>(provider);
}

// False when the provider, which is released, does not answer.
bool ShowVersions(const char* way, IPrintOemPrintTicketProvider* provider) {
    INT *versions = nullptr, count = 0;
    if (!provider) return false;
    const HRESULT result = provider->GetSupportedVersions(nullptr, &versions, &count);
    provider->Release();
    if (FAILED(result) || count < 1) return false;
    std::printf("%s: version %d\n", way, versions[0]);
    CoTaskMemFree(versions);
    return true;
}

}  // namespace

int main() {
    const bool throughPlugin = ShowVersions("plug-in", MakeThroughPlugin());
    return ShowVersions("class", new MorvanePtProvider) && throughPlugin ? 0 : 1;
}
