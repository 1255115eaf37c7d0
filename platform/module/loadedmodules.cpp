// The modules of the process: the program and the shared libraries that are loaded.
#include "loadedmodules.h"

#include <textcodec.h>

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace mvplatform {
namespace {

namespace fs = std::filesystem;

const char ownImage = 0;  // an address in the platform library

std::string FileName(const std::string& path) { return path.substr(path.rfind('/') + 1); }

// One address in each loaded module. The callback may not call the loader, so the modules are looked up later.
std::vector<const void*> ModuleAddresses() {
    std::vector<const void*> addresses;
    const auto collect = [](dl_phdr_info* module, std::size_t, void* list) {
        const ElfW(Phdr)* end = module->dlpi_phdr + module->dlpi_phnum;
        const ElfW(Phdr)* load =
            std::find_if(module->dlpi_phdr, end, [](const auto& h) { return h.p_type == PT_LOAD; });
        if (load == end) return 0;
        const auto address = module->dlpi_addr + load->p_vaddr;
        auto& found = *static_cast<std::vector<const void*>*>(list);
        found.push_back(reinterpret_cast<const void*>(address));  // NOLINT(performance-no-int-to-ptr): a number there
        return 0;
    };
    dl_iterate_phdr(collect, &addresses);
    return addresses;
}

}  // namespace

std::string LoadedModule::GetPath() const {
    std::error_code error;
    if (IsProgram()) return fs::read_symlink("/proc/self/exe", error).string();
    return fs::absolute(map->l_name, error).string();
}

bool LoadedModule::AddReference() const {
    void* reference = dlopen(IsProgram() ? nullptr : map->l_name, RTLD_NOW | RTLD_NOLOAD);
    if (reference && reference != map) dlclose(reference);  // another file came to that path
    return reference == map;
}

std::optional<LoadedModule> ModuleFromAddress(const void* address) {
    Dl_info image;
    void* map = nullptr;
    if (!dladdr1(address, &image, &map, RTLD_DL_LINKMAP) || !map) return std::nullopt;
    return LoadedModule{static_cast<HMODULE>(image.dli_fbase), static_cast<link_map*>(map)};
}

std::optional<LoadedModule> ModuleFromHandle(HMODULE handle) {
    if (!handle) {
        void* program = dlopen(nullptr, RTLD_NOW);
        const std::optional<LoadedModule> module = ModuleFromMap(program);
        if (program) dlclose(program);
        return module;
    }
    std::optional<LoadedModule> module = ModuleFromAddress(handle);
    if (module && module->handle != handle) module.reset();
    return module;
}

std::optional<LoadedModule> ModuleFromMap(const void* dlopenHandle) {
    return dlopenHandle ? ModuleFromAddress(static_cast<const link_map*>(dlopenHandle)->l_ld) : std::nullopt;
}

std::string SystemPath(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

std::string WithDefaultExtension(const std::string& path) {
    return FileName(path).find('.') == std::string::npos ? path + ".dll" : path;
}

std::optional<LoadedModule> FindLoadedModule(const std::string& path) {
    const bool isFileName = path.find('/') == std::string::npos;
    const auto wide = [](std::string_view text) { return WideFromUtf8(text, BadText::Keep); };
    const auto isWanted = [&](const std::string& other) {
        return isFileName ? EqualRegistryNames(wide(FileName(other)), wide(path)) : other == path;
    };
    if (isWanted("kernel32.dll")) return ModuleFromAddress(&ownImage);
    for (const void* address : ModuleAddresses()) {
        const std::optional<LoadedModule> module = ModuleFromAddress(address);
        if (module && isWanted(module->GetPath())) return module;
    }
    if (isFileName) return std::nullopt;
    // The same file under another path.
    void* reference = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    const std::optional<LoadedModule> module = ModuleFromMap(reference);
    if (reference) dlclose(reference);
    return module;
}

}  // namespace mvplatform
