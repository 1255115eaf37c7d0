// Shared memory from mmap.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <subsystem/hosterror.h>
#include "sharedmemoryfile.h"

SharedMemoryFile::SharedMemoryFile(const std::filesystem::path& file, std::size_t bytes)
    : memory_(MAP_FAILED), bytes_(bytes) {
    const int descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor >= 0 && ftruncate(descriptor, static_cast<off_t>(bytes)) == 0)
        memory_ = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (descriptor >= 0) close(descriptor);
    if (memory_ == MAP_FAILED) throw OperationError("the file '" + file.string() + "' cannot be shared");
}

SharedMemoryFile::~SharedMemoryFile() { munmap(memory_, bytes_); }
