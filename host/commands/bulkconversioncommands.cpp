// ticket --all-printers, capabilities --all-printers: a file for each printer, made on all cores.
#include "bulkconversioncommands.h"

#include <optional>

#include <subsystem/devmodemaker.h>
#include <subsystem/explain/explain.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/inputs/devmodeinput.h>
#include <subsystem/inputs/inputform.h>
#include <subsystem/printerfilename.h>
#include <subsystem/printsession.h>
#include <subsystem/xmlfile.h>
#include "bulk.h"
#include "missingcaches.h"

namespace {

constexpr const char* kExtension = ".xml";

using Convert = std::function<PrintSession::Document(const PrintSession& session, BulkNotes& notes)>;

void ConvertForAll(HostContext& context, const BulkConversion& conversion, const Convert& convert) {
    const std::filesystem::path folder = PathFromUtf8(conversion.folder);
    MakeFolder(folder);
    std::vector<BulkItem> items = MakeBulkItems(ListPrinters());
    const auto apply = [&](const BulkItem& item, BulkNotes& notes) {
        const PrintSession session(item.name, conversion.provider);
        WriteDocumentFile(folder / PathFromUtf8(MakePrinterFileName(item.name, kExtension)),
                          convert(session, notes).Get());
    };
    const auto isThere = [](const BulkItem& item) { return static_cast<bool>(OpenPrinterByName(item.name)); };
    WorkInBulk(context, items, {{.done = "written"}, apply, isThere});
}

// The settings that the tickets are made of: one DEVMODE for all printers, or one for each.
class TicketSettings {
public:
    // Throws InputError when the file holds no DEVMODE; without a name each printer's driver makes its own.
    explicit TicketSettings(const std::string& file) : file_(file) {
        if (file.empty()) return;
        bytes_ = ReadWholeFile(PathFromUtf8(file));
        // An export of a registry may hold one for each printer.
        if (RecogniseInput(bytes_).form != InputForm::RegistryFile)
            common_ = ReadDevmodeBytes(bytes_, NameInput(PathFromUtf8(file)), {});
    }

    DevmodeBuffer Make(const InstalledPrinter& printer) const {
        if (common_) return *common_;
        if (!file_.empty()) return ReadDevmodeBytes(bytes_, file_, printer.GetName().ToUtf8());
        return MakeDevmode(*printer.GetProduct(), printer.GetName().AsWideString(), {});
    }

private:
    std::string file_, bytes_;
    std::optional<DevmodeBuffer> common_;
};

}  // namespace

void MakeAllTickets(HostContext& context, const BulkConversion& conversion) {
    const TicketSettings settings(conversion.devmode);
    context.UseStore(StoreAccess::ReadMostly);
    ConvertForAll(context, conversion, [&](const PrintSession& session, BulkNotes& notes) {
        PrinterFacts printer(session);
        ExplainedTicket result = ConvertAndExplain(printer, settings.Make(session.GetPrinter()), nullptr);
        notes = ListLosses(result.explanation);
        const bool losesAny = !notes.empty();
        if (std::string missing = DescribeMissingCaches(session.GetPrinter()); !missing.empty())
            notes.insert(notes.begin(), std::move(missing));
        if (conversion.strict && losesAny) throw OperationError("settings are lost or ignored, and --strict was given");
        return std::move(result.ticket);
    });
}

void MakeAllCapabilities(HostContext& context, const BulkConversion& conversion) {
    context.UseStore(StoreAccess::ReadMostly);
    MakeUpForMissingCaches(context, ListPrinters());
    ConvertForAll(context, conversion,
                  [](const PrintSession& session, BulkNotes&) { return session.MakeCapabilities(nullptr, nullptr); });
}
