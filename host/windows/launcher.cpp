// mvpthost.exe: finds the driver's files beside itself or in the folder "driver" beside its own, and runs the program.
#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <string>

int main() {
    std::wstring path(32768, wchar_t());
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    SetDllDirectoryW((folder.parent_path() / "driver").c_str());
    const HMODULE program = LoadLibraryW((folder / "mvpthostmain.dll").c_str());
    if (!program) {
        std::fputs(
            "mvpthost: the driver's files are neither beside the program nor in ../driver; unpack them together\n",
            stderr);
        return 1;
    }
    const auto run = reinterpret_cast<void (*)()>(GetProcAddress(program, "RunProgram"));
    return reinterpret_cast<int (*)()>(run)();
}
