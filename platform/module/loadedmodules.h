// The modules of the process: the program and the shared libraries that are loaded.
#pragma once

#include <windows.h>

#include <link.h>

#include <optional>
#include <string>

namespace mvplatform {

// A loaded module. Its handle is the address of its image, as on Windows: any value can be looked up without harm.
struct LoadedModule {
    HMODULE handle;
    link_map* map;  // what dlopen gives and the dl functions take

    bool IsProgram() const { return map->l_name[0] == '\0'; }
    // Absolute, with slashes. Empty when the system does not say.
    std::string GetPath() const;
    // Takes a reference of its own, which dlclose gives back. False when the module is being unloaded.
    bool AddReference() const;
};

std::optional<LoadedModule> ModuleFromAddress(const void* address);
// Nothing when the value is not the handle of a loaded module. Null is the program.
std::optional<LoadedModule> ModuleFromHandle(HMODULE handle);
std::optional<LoadedModule> ModuleFromMap(const void* dlopenHandle);

// A path with slashes for one with either slash.
std::string SystemPath(std::string path);
// The file name itself or, when it has no extension, with ".dll".
std::string WithDefaultExtension(const std::string& path);
// Finds a loaded module by a system path, or by a file name without regard to case; nothing is loaded. "kernel32.dll"
// is the library with the platform's functions.
std::optional<LoadedModule> FindLoadedModule(const std::string& path);

}  // namespace mvplatform
