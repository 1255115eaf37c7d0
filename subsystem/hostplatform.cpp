// What the host asks of the system it runs on; the one place where the two hosts differ.
#include "hostplatform.h"

#include <dlldelayloader.h>
#include <windows.h>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#else
#include <dlfcn.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <random>

#include "hosterror.h"
#include "hosttext.h"

static constexpr const char* kDriverLibrary = "mvprodC0.dll";

#ifdef _WIN32

namespace {

std::filesystem::path GetModuleFolder(HMODULE module) {
    WideString path(32768, W('\0'));
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return std::filesystem::path(path).parent_path();
}

}  // namespace

std::filesystem::path GetDriverFolder() { return GetModuleFolder(GetModuleHandleA(kDriverLibrary)); }

std::vector<std::string> GetProgramArguments(int, char**) {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    // The C runtime's arguments are in the system's code page; the system's own are UTF-16.
    int count = 0;
    std::vector<std::string> arguments;
    if (LPWSTR* list = CommandLineToArgvW(GetCommandLineW(), &count)) {
        for (int index = 1; index < count; ++index) arguments.push_back(ToUtf8(list[index]));
        LocalFree(list);
    }
    return arguments;
}

bool IsTerminal(const std::ostream& stream) { return &stream == &std::cerr && _isatty(_fileno(stderr)); }

std::optional<std::string> GetEnvironment(const char* name) {
    const wchar_t* text = _wgetenv(WideString(name, name + std::char_traits<char>::length(name)).c_str());
    if (!text || !*text) return std::nullopt;
    return ToUtf8(text);
}

std::filesystem::path GetProgramFolder() { return GetModuleFolder(nullptr); }

std::optional<std::filesystem::path> GetUserDataFolder() {
    if (const auto folder = GetEnvironment("LOCALAPPDATA")) return PathFromUtf8(*folder);
    return std::nullopt;
}

std::optional<std::filesystem::path> GetUserSettingsFolder() {
    if (const auto folder = GetEnvironment("APPDATA")) return PathFromUtf8(*folder);
    return std::nullopt;
}

static constexpr char kPathListSeparator = ';';

#else

std::vector<std::string> GetProgramArguments(int argc, char** argv) {
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

bool IsTerminal(const std::ostream& stream) { return &stream == &std::cerr && isatty(STDERR_FILENO); }

std::optional<std::string> GetEnvironment(const char* name) {
    const char* text = std::getenv(name);
    if (!text || !*text) return std::nullopt;
    return text;
}

std::filesystem::path GetProgramFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

std::filesystem::path GetDriverFolder() {
    Dl_info library{};
    std::error_code error;
    if (!dladdr(GetModuleHandleA(kDriverLibrary), &library) || !library.dli_fname) return GetProgramFolder();
    // The loader may know it through a link to its folder, from which no path leads to the products.
    const std::filesystem::path file = std::filesystem::canonical(library.dli_fname, error);
    return error ? GetProgramFolder() : file.parent_path();
}

std::optional<std::filesystem::path> GetUserDataFolder() {
    if (const auto folder = GetEnvironment("XDG_DATA_HOME")) return PathFromUtf8(*folder);
    if (const auto home = GetEnvironment("HOME")) return PathFromUtf8(*home) / ".local" / "share";
    return std::nullopt;
}

std::optional<std::filesystem::path> GetUserSettingsFolder() {
    if (const auto folder = GetEnvironment("XDG_CONFIG_HOME")) return PathFromUtf8(*folder);
    if (const auto home = GetEnvironment("HOME")) return PathFromUtf8(*home) / ".config";
    return std::nullopt;
}

static constexpr char kPathListSeparator = ':';

#endif

void UseDriverFolder() {
    AttachModule(GetModuleHandleA(kDriverLibrary));
    NoteProcessEnding();  // when this code goes, nothing is unloaded
}

std::vector<std::filesystem::path> SplitPathList(std::string_view list) {
    std::vector<std::filesystem::path> folders;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(kPathListSeparator), list.size());
        if (end > 0) folders.push_back(PathFromUtf8(std::string(list.substr(0, end))));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return folders;
}

std::filesystem::path MakeTemporaryFolder(const std::string& prefix) {
    std::error_code error;
    const std::filesystem::path parent = std::filesystem::temp_directory_path(error);
    std::random_device random;
    for (int attempt = 0; attempt < 100 && !error; ++attempt) {
        std::filesystem::path folder = parent / (prefix + FormatHex(random(), 8).substr(2));
        if (std::filesystem::create_directory(folder, error)) return folder;
    }
    throw OperationError("no temporary folder can be made below '" + PathToUtf8(parent) + "'; name a folder yourself");
}
