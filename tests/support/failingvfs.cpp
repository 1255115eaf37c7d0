// A layer under SQLite on whose files writing can be made to fail.
#include "failingvfs.h"

#include <signal.h>
#include <sqlite3.h>
#include <unistd.h>

#include <new>

namespace {

using Fault = FailingVfs::Fault;

sqlite3_vfs* below = nullptr;
Fault chosenFault{};
int remaining = 0;  // calls until the chosen one; 0 when it was, negative when there is none
bool isArmed = false;

// What a call answers; SQLITE_OK when it is to be done.
int Judge(bool isWrite, int failure) {
    if (!isArmed) return SQLITE_OK;
    if (remaining > 0 && --remaining > 0) return SQLITE_OK;
    const bool isChosen = remaining == 0;
    if (chosenFault == Fault::Kill) kill(getpid(), SIGKILL);
    if (chosenFault == Fault::DiskFull) return isWrite ? SQLITE_FULL : SQLITE_OK;
    remaining = -1;
    return isChosen ? failure : SQLITE_OK;
}

// A file of the layer below lies behind it.
struct File : sqlite3_file {
    sqlite3_file* Below() noexcept { return reinterpret_cast<sqlite3_file*>(this + 1); }
};
sqlite3_file* Below(sqlite3_file* file) noexcept { return static_cast<File*>(file)->Below(); }

// A method that is the same below.
template <auto Method, class... Arguments>
int Pass(sqlite3_file* file, Arguments... arguments) {
    return (Below(file)->pMethods->*Method)(Below(file), arguments...);
}

int Write(sqlite3_file* file, const void* data, int bytes, sqlite3_int64 at) {
    const int failure = Judge(true, SQLITE_IOERR_WRITE);
    return failure != SQLITE_OK ? failure : Below(file)->pMethods->xWrite(Below(file), data, bytes, at);
}
int Truncate(sqlite3_file* file, sqlite3_int64 size) {
    const int failure = Judge(false, SQLITE_IOERR_TRUNCATE);
    return failure != SQLITE_OK ? failure : Below(file)->pMethods->xTruncate(Below(file), size);
}
// No test can see whether the disk has the bytes, and waiting for it takes most of the time.
int Sync(sqlite3_file*, int) { return Judge(false, SQLITE_IOERR_FSYNC); }
int Map(sqlite3_file* file, int part, int bytes, int extend, void volatile** memory) {
    return Below(file)->pMethods->xShmMap(Below(file), part, bytes, extend, memory);
}
void Barrier(sqlite3_file* file) { Below(file)->pMethods->xShmBarrier(Below(file)); }

using Methods = sqlite3_io_methods;
constexpr Methods methods = {2,  // no pages mapped into memory
                             Pass<&Methods::xClose>,
                             Pass<&Methods::xRead>,
                             Write,
                             Truncate,
                             Sync,
                             Pass<&Methods::xFileSize>,
                             Pass<&Methods::xLock>,
                             Pass<&Methods::xUnlock>,
                             Pass<&Methods::xCheckReservedLock>,
                             Pass<&Methods::xFileControl>,
                             Pass<&Methods::xSectorSize>,
                             Pass<&Methods::xDeviceCharacteristics>,
                             Map,
                             Pass<&Methods::xShmLock>,
                             Barrier,
                             Pass<&Methods::xShmUnmap>,
                             nullptr,
                             nullptr};

int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    new (file) File();
    const int result = below->xOpen(below, name, Below(file), flags, outFlags);
    file->pMethods = Below(file)->pMethods ? &methods : nullptr;
    return result;
}

sqlite3_vfs layer;

}  // namespace

FailingVfs::FailingVfs() {
    below = sqlite3_vfs_find(nullptr);
    layer = *below;
    layer.zName = "failing";
    layer.szOsFile = static_cast<int>(sizeof(File)) + below->szOsFile;
    layer.xOpen = Open;
    sqlite3_vfs_register(&layer, 1);
    Rest();
}

FailingVfs::~FailingVfs() {
    Rest();
    sqlite3_vfs_unregister(&layer);
    sqlite3_vfs_register(below, 1);
}

void FailingVfs::FailAt(Fault fault, int number) noexcept {
    chosenFault = fault;
    remaining = number;
    isArmed = true;
}

bool FailingVfs::HasFailed() noexcept { return isArmed && remaining <= 0; }

void FailingVfs::Rest() noexcept { isArmed = false; }
