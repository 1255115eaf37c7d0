// Shared memory from a mapped file.
#include <windows.h>

#include <pathtext.h>

#include <subsystem/hosterror.h>
#include "sharedmemoryfile.h"

SharedMemoryFile::SharedMemoryFile(const std::filesystem::path& file, std::size_t bytes)
    : memory_(nullptr), bytes_(bytes) {
    const HANDLE opened = CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened != INVALID_HANDLE_VALUE) {
        const HANDLE mapping =
            CreateFileMappingW(opened, nullptr, PAGE_READWRITE, 0, static_cast<DWORD>(bytes), nullptr);
        if (mapping) {
            memory_ = MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, bytes);
            CloseHandle(mapping);
        }
        CloseHandle(opened);
    }
    if (!memory_) throw OperationError("the file '" + PathToUtf8(file) + "' cannot be shared");
}

SharedMemoryFile::~SharedMemoryFile() { UnmapViewOfFile(memory_); }
