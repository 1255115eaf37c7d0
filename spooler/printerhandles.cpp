// The table of open printer handles.
#include "printerhandles.h"

#include "spoolererror.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <shared_mutex>

namespace {

std::shared_mutex tableMutex;
std::map<std::uintptr_t, WideString> table;
// Numbers are not used again, so that a handle that was closed stays bad. The system's handles are multiples of four.
std::uintptr_t lastHandle = 0x1000;

}  // namespace

HANDLE OpenHandle(const WideString& printerName) {
    const std::scoped_lock lock(tableMutex);
    table.emplace(lastHandle + 4, printerName);
    lastHandle += 4;
    return reinterpret_cast<HANDLE>(lastHandle);  // NOLINT(performance-no-int-to-ptr): a handle is a number here
}

WideString GetNameBehind(HANDLE handle) {
    const std::shared_lock lock(tableMutex);
    const auto entry = table.find(reinterpret_cast<std::uintptr_t>(handle));
    Require(entry != table.end(), ERROR_INVALID_HANDLE);
    return entry->second;
}

void CloseHandleOf(HANDLE handle) {
    const std::scoped_lock lock(tableMutex);
    Require(table.erase(reinterpret_cast<std::uintptr_t>(handle)) == 1, ERROR_INVALID_HANDLE);
}
