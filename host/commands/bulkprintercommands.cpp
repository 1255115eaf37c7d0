// printer add --from, printer remove --all and --from: many printers at once.
#include <printerinstall.h>

#include <map>
#include <optional>

#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/printercaches.h>
#include <subsystem/printerlistfile.h>
#include <subsystem/productfiles.h>
#include "bulk.h"
#include "printercommands.h"

namespace {

std::vector<BulkItem> MakeItems(const std::vector<PrinterListEntry>& entries) {
    std::vector<BulkItem> items;
    items.reserve(entries.size());
    for (const PrinterListEntry& entry : entries) items.push_back({entry.name, entry.line, entry.fault});
    return items;
}

bool IsPrinter(const BulkItem& item) { return OpenPrinterByName(item.name) && !HalfPrinters::Contains(item.name); }

// Files of products by the names that a list gives them, each searched for once.
class ProductFiles {
public:
    const std::filesystem::path& Find(const std::string& product) {
        const auto found = files_.find(product);
        return found != files_.end() ? found->second : files_.emplace(product, FindProductFile(product)).first->second;
    }

private:
    std::map<std::string, std::filesystem::path> files_;
};

// Takes away what is listed.
void RemoveItems(HostContext& context, std::vector<BulkItem> items, bool atomic) {
    std::optional<PrinterInstaller> installer;
    ChangeInBulk(context, items,
                 {.done = "removed",
                  .begin =
                      [&] {
                          if (!installer) installer.emplace();
                      },
                  .apply =
                      [&](std::size_t index) {
                          installer->Remove(items[index].name);
                          return true;
                      },
                  .end = [&] { installer->RemoveUnusedDrivers(); },
                  .isDone = [](const BulkItem& item) { return !OpenPrinterByName(item.name); },
                  .undo = {}},
                 atomic);
}

}  // namespace

void AddPrintersOfList(HostContext& context, const PrinterOptions& options) {
    const std::vector<PrinterListEntry> entries = ReadPrinterList(ReadWholeFile(PathFromUtf8(options.from)), true);
    context.UseStore(StoreAccess::Write);
    std::vector<BulkItem> items = MakeItems(entries);
    ProductFiles products;
    std::optional<PrinterInstaller> installer;
    CapabilityCachesOfMany caches;
    ChangeInBulk(context, items,
                 {.done = "added",
                  .begin =
                      [&] {
                          if (!installer) installer.emplace();
                          caches = {};
                      },
                  .apply =
                      [&](std::size_t index) {
                          const PrinterListEntry& entry = entries[index];
                          installer->Add(entry.name, products.Find(entry.product), entry.port,
                                         [&](HANDLE printer, const WideString& driver) {
                                             CompletePrinter(caches, printer, {entry.name, entry.port, driver});
                                         });
                          return true;
                      },
                  .end = [&] { installer->RemoveUnusedDrivers(); },
                  .isDone = IsPrinter,
                  .undo = [&](const BulkItem& item) { installer->Remove(item.name); }},
                 options.atomic);
}

void RemovePrintersOfList(HostContext& context, const PrinterOptions& options) {
    const std::vector<PrinterListEntry> entries = ReadPrinterList(ReadWholeFile(PathFromUtf8(options.from)), false);
    context.UseStore(StoreAccess::ReadMostly);
    std::vector<BulkItem> items = MakeItems(entries);
    for (BulkItem& item : items)
        if (item.fault.empty() && !OpenPrinterByName(item.name) && !HalfPrinters::Contains(item.name))
            item.fault = "there is no printer '" + ToUtf8(item.name) + "'";
    RemoveItems(context, std::move(items), options.atomic);
}

void RemoveAllPrinters(HostContext& context, const PrinterOptions& options) {
    context.UseStore(StoreAccess::ReadMostly);
    std::vector<BulkItem> items = MakeBulkItems(ListPrinterPorts());
    for (const WideString& half : HalfPrinters::List())
        if (!OpenPrinterByName(half)) items.push_back({half, 0, {}});
    RemoveItems(context, std::move(items), options.atomic);
}
