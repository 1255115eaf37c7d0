// OpenProduct: a product as a printer of its own, in a store in memory that all open products share.
#include "openproduct.h"

#include <printerinstall.h>
#include <store.h>

#include <mutex>

#include <subsystem/hostplatform.h>
#include "throwawayprinter.h"

namespace {

// The process's store, with one lock for opening it, changing its printers and closing it.
struct SharedStore {
    std::mutex mutex;
    std::size_t users = 0;
    unsigned long long printers = 0;  // that there have been

    void Enter() {
        if (users == 0) {
            UseDriverFolder();
            OpenStore(":memory:");
        }
        ++users;
    }
    void Leave(const CXString& printer) noexcept {
        if (--users == 0) return CloseStore();
        try {
            RemovePrinter(printer.AsWideString());
        } catch (const std::exception&) {
            // There is none, or it goes with the store; no other product sees it.
        }
    }
};

// Products may be closed while the process ends.
SharedStore& GetStore() {
    static auto& store = *new SharedStore;
    return store;
}

}  // namespace

OpenProduct::OpenProduct(const std::filesystem::path& productFile) {
    SharedStore& store = GetStore();
    const std::lock_guard lock(store.mutex);
    store.Enter();
    try {
        printer_ = CXString::FromUtf8("mvconvert " + std::to_string(++store.printers));
        InstallThrowawayPrinter(productFile, printer_);
        converters_.emplace(printer_);
    } catch (...) {
        store.Leave(printer_);
        throw;
    }
}

OpenProduct::~OpenProduct() {
    converters_.reset();
    SharedStore& store = GetStore();
    const std::lock_guard lock(store.mutex);
    store.Leave(printer_);
}
