// Installing a product as a printer, and removing it: over the spooler's functions alone.
#pragma once

#include "printerlist.h"

#include <widetext.h>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>

// The core driver's own files, of which every printer's driver consists beside the product's and the libraries.
inline constexpr const char* kCoreDriverFile = "mvcored.dll";
inline constexpr const char* kCoreConfigFile = "mvcoreui.dll";

// Adds and removes printers, as many as wanted, for one thread. It looks at all printers once, when it is made, so that
// each further one takes no longer for those that are there. When the registry forgets what it was told (a transaction
// that is undone), another installer has to be made.
class PrinterInstaller {
public:
    // Makes what belongs to an added printer beside the spooler's records. When it throws, the printer goes again.
    using Completion = std::function<void(HANDLE printer, const WideString& driver)>;

    PrinterInstaller() { LookAtPorts(); }

    // Adds the product's driver (or brings it up to date) and a printer of it, which counts once it is complete. An
    // empty port makes one for this printer alone, "MV_1:" and so on; without a driver's name it is the product's
    // model. The port's capability caches start empty when no other printer uses it. Returns the port. Throws
    // ProductError for an unusable product file, and std::runtime_error with a sentence for the user: a name that a
    // printer cannot have or one has already, a port that a printer of another product uses; a SpoolerFailure for the
    // rest.
    WideString Add(const WideString& name, const std::filesystem::path& productFile, const WideString& port,
                   const Completion& complete = {}, const WideString& driverName = {});

    // Removes the printer or the half of one, and with the last one of a port its capability caches. Throws
    // std::runtime_error with a sentence for the user.
    void Remove(const WideString& name);

    // Removes the drivers that this installer has left without a printer. Those that are wanted again are added again.
    void RemoveUnusedDrivers();

private:
    void LookAtPorts();
    bool IsPortUsed(const WideString& port, const WideString& exceptBy) const;
    void CheckPort(const WideString& port, const WideString& driver) const;
    WideString TakePort(const WideString& wanted, const WideString& driver);
    void AddToSpooler(const WideString& name, const WideString& port, const WideString& driver,
                      const Completion& complete);
    void RemoveParts(const WideString& name, const WideString& port);

    std::multimap<WideString, WideString> printersOfPorts_;  // names by the name of the port's caches, in small letters
    std::set<WideString> addedDrivers_;
    std::set<WideString> doubtfulDrivers_;  // which may have no printer
    int nextPort_ = 1;
};

// One printer, from beginning to end.
WideString InstallPrinter(const WideString& name, const std::filesystem::path& productFile, const WideString& port,
                          const PrinterInstaller::Completion& complete = {}, const WideString& driverName = {});
inline WideString InstallPrinter(const WCHAR* name, const std::filesystem::path& productFile, const WCHAR* port) {
    return InstallPrinter(WideString(name), productFile, WideString(port));
}
void RemovePrinter(const WideString& name);  // with its driver, when that has no other printer
inline void RemovePrinter(const WCHAR* name) { RemovePrinter(WideString(name)); }
