// Printers without their capability caches, and what a command does about them.
#include "missingcaches.h"

#include <mvutil/cachelocation.h>
#include <spooler/printerstore.h>
#include <store.h>
#include <textcodec.h>

#include <algorithm>
#include <ostream>
#include <set>

#include <subsystem/hosttext.h>
#include <subsystem/printercaches.h>
#include <subsystem/registryexchange.h>

namespace {

constexpr std::size_t kMostNames = 10;  // of printers that the sentence gives

std::string Describe(const std::vector<PrinterRow>& lacking) {
    std::string text = "the capability caches of ";
    for (std::size_t index = 0; index < std::min(lacking.size(), kMostNames); ++index)
        text += (index ? ", '" : "'") + ToUtf8(lacking[index].name) + "'";
    if (lacking.size() > kMostNames) text += " and " + std::to_string(lacking.size() - kMostNames) + " more printers";
    return text + " are missing or damaged";
}

WideString GetParent(const WideString& path) { return path.substr(0, std::min(path.rfind(W('\\')), path.size())); }

// All of the store but other printers and what is kept for them, of which there may be thousands.
RegFile CopyStore(const std::vector<PrinterRow>& printers) {
    const auto lowered = [](WideString path) {
        LowerRegistryName(path);
        return path;
    };
    const WideString parents[] = {lowered(kPrintersKey), lowered(kPrinterCachesKey)};
    std::set<WideString> wanted;
    for (const PrinterRow& row : printers) {
        wanted.insert(parents[0] + lowered(W("\\") + row.name));
        wanted.insert(parents[1] + lowered(W("\\") + GetCacheKeyName(row.port)));
    }
    return ExportRegistry([&](const WideString& path) {
        const WideString key = lowered(path), parent = GetParent(key);
        return (parent != parents[0] && parent != parents[1]) || wanted.contains(key);
    });
}

}  // namespace

void MakeUpForMissingCaches(HostContext& context, const std::vector<PrinterRow>& printers) {
    std::vector<PrinterRow> lacking;
    for (const PrinterRow& row : printers)
        if (LacksCaches(row)) lacking.push_back(row);
    if (lacking.empty()) return;
    context.err << Describe(lacking)
                << "; what they would say comes from the product, and 'caches rebuild' makes them\n";
    const RegFile copy = CopyStore(printers);
    context.UseThrowawayStore();
    StoreTransaction transaction;
    ImportRegistry(copy);
    RebuildCachesOf(lacking);
    transaction.Commit();
}

std::string DescribeMissingCaches(const PrinterRow& printer) {
    if (!LacksCaches(printer)) return {};
    return Describe({printer}) + ", and so not all of its papers are known; 'caches rebuild' makes them";
}

std::string DescribeMissingCaches(const InstalledPrinter& printer) {
    return DescribeMissingCaches(PrinterRow{printer.GetName().AsWideString(), printer.GetPort().AsWideString(), {}});
}
