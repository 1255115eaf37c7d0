// caches rebuild, caches show
#include <namefield.h>
#include <printsubsystem/capabilityrecords.h>

#include <cstring>
#include <iterator>
#include <memory>
#include <ostream>
#include <span>

#include <subsystem/hosttext.h>
#include <subsystem/installedprinter.h>
#include <subsystem/printercaches.h>
#include "bulk.h"
#include "commands.h"

namespace {

using std::ostream;

struct CachesOptions {
    std::string printer;
    bool all = false;
};

// One part of a blob, which is long enough for it.
template <class Part>
Part ReadPart(const ByteBuffer& blob, std::size_t offset) {
    Part part;
    std::memcpy(&part, blob.getLpbyte() + offset, sizeof part);
    return part;
}

std::string NameOf(std::span<const WCHAR> field) { return ToUtf8(GetNameField(field)); }

void Show(ostream& out, const _tag_FormsInfoRec& record) {
    out << NameOf(record.name) << ": number " << record.msPaperId << ", form " << record.formIndex << ", "
        << record.width << " x " << record.length << " tenths of a millimetre, value " << record.pageSizeValue
        << ", units " << record.displayUnits << ", type " << record.pageSizeType;
}
void Show(ostream& out, const BinCapsRecord& record) {
    out << NameOf(record.name) << ": number " << record.number << ", value " << record.value;
}
void Show(ostream& out, const MediaCapsRecord& record) { out << NameOf(record.name) << ": number " << record.number; }
void Show(ostream& out, const MediaReadyRecord& record) {
    const std::string media = NameOf(record.mediaName);
    out << NameOf(record.paperName) << ", " << (media.empty() ? "any media type" : media);
}
void Show(ostream& out, const DependentFileRecord& record) { out << NameOf(record.name); }
void Show(ostream& out, const _tag_ResolutionInfoRec& record) {
    out << NameOf(record.name) << ": " << record.crossFeed << " x " << record.feed
        << (record.kind == 0 ? ", the default" : "");
}

template <class Header, class Record>
void ShowList(ostream& out, const ByteBuffer& blob) {
    const DWORD count = ReadPart<Header>(blob, 0).count;
    const std::size_t held = (blob.getDword() - sizeof(Header)) / sizeof(Record);
    if (count > held) {
        out << "damaged: it counts " << count << " records and holds " << held << '\n';
        return;
    }
    out << count << (count == 1 ? " record\n" : " records\n");
    for (DWORD index = 0; index < count; ++index) {
        out << "  ";
        Show(out, ReadPart<Record>(blob, sizeof(Header) + index * sizeof(Record)));
        out << '\n';
    }
}

void ShowDeviceLimits(ostream& out, const ByteBuffer& blob) {
    using Caps = DeviceLimitsCaps;
    const auto caps = ReadPart<Caps>(blob, 0);
    out << "valid " << FormatHex(caps.valid) << '\n';
    const struct {
        DWORD bit;
        const char* name;
        DWORD value;
    } kWords[] = {{Caps::kCollate, "collates", caps.collate},
                  {Caps::kColor, "prints colour", caps.color},
                  {Caps::kCopies, "most copies", caps.maximumCopies},
                  {Caps::kDuplex, "prints on both sides", caps.duplex},
                  {Caps::kMemory, "memory in KiB", caps.memory},
                  {Caps::kPagesPerMinute, "pages a minute", caps.pagesPerMinute},
                  {Caps::kPrintRate, "print rate", caps.printRate},
                  {Caps::kPrintRateUnit, "unit of the print rate", caps.printRateUnit}};
    for (const auto& word : kWords)
        if (caps.valid & word.bit) out << "  " << word.name << ": " << word.value << '\n';
    if (caps.valid & Caps::kExtents) {
        out << "  smallest page: " << caps.minimumWidth << " x " << caps.minimumLength << " tenths of a millimetre\n"
            << "  largest page: " << caps.maximumWidth << " x " << caps.maximumLength << " tenths of a millimetre\n";
    }
}

void ShowBlob(ostream& out, CapabilityGroupId group, const ByteBuffer& blob) {
    switch (group) {
        case CapabilityGroupId::Paper:
            return ShowList<PaperCapsHeader, _tag_FormsInfoRec>(out, blob);
        case CapabilityGroupId::Bins:
            return ShowList<ListCapsHeader, BinCapsRecord>(out, blob);
        case CapabilityGroupId::Media:
            return ShowList<ListCapsHeader, MediaCapsRecord>(out, blob);
        case CapabilityGroupId::MediaReady:
            return ShowList<ListCapsHeader, MediaReadyRecord>(out, blob);
        case CapabilityGroupId::DependentFiles:
            return ShowList<ListCapsHeader, DependentFileRecord>(out, blob);
        case CapabilityGroupId::Resolutions:
            return ShowList<ResolutionCapsHeader, _tag_ResolutionInfoRec>(out, blob);
        case CapabilityGroupId::DeviceLimits:
            return ShowDeviceLimits(out, blob);
        case CapabilityGroupId::Staple:
            out << (ReadPart<StapleCaps>(blob, 0).staples ? "staples\n" : "does not staple\n");
    }
}

void RunShow(HostContext& context, const CachesOptions& options) {
    context.UseStore();
    const InstalledPrinter printer(ArgumentToWide(options.printer));
    for (const CapabilityGroup& group : kCapabilityGroups) {
        ByteBuffer blob;
        context.out << ToUtf8(group.valueName) << ": ";
        if (!ReadCache(printer.GetHandle(), printer.GetPort(), group, blob)) {
            context.out << "none\n";
        } else if (blob.getDword() < group.minimumBytes) {
            context.out << "damaged: it has " << blob.getDword() << " bytes and needs " << group.minimumBytes << '\n';
        } else if (!IsWholeCapabilityBlob(group, blob)) {
            context.out << "damaged: its check word is not that of its " << blob.getDword() << " bytes\n";
        } else {
            ShowBlob(context.out, group.id, blob);
        }
    }
}

void RunRebuildAll(HostContext& context) {
    context.UseStore(StoreAccess::ReadMostly);
    const std::vector<PrinterRow> rows = ListPrinters();
    std::vector<BulkItem> items = MakeBulkItems(rows);
    CapabilityCachesOfMany caches;
    ChangeInBulk(context, items,
                 {.done = "rebuilt",
                  .begin = [&] { caches = {}; },
                  .apply =
                      [&](std::size_t index) {
                          if (!OpenPrinterByName(rows[index].name)) return false;
                          const InstalledPrinter printer(rows[index].name);  // with a product that can be read
                          RebuildCaches(caches, printer.GetHandle(), rows[index]);
                          return true;
                      },
                  .end = {},
                  .isDone = [](const BulkItem&) { return false; },
                  .undo = {}});
}

void RunRebuild(HostContext& context, const CachesOptions& options) {
    if (options.all != options.printer.empty()) throw InputError("give either --printer NAME or --all");
    if (options.all) return RunRebuildAll(context);
    context.ChangeStore();
    CapabilityCachesOfMany caches;
    const InstalledPrinter printer(ArgumentToWide(options.printer));
    RebuildCaches(caches, printer.GetHandle(), {printer.GetName().AsWideString(), {}, {}});
}

}  // namespace

void AddCachesCommands(Command app, HostContext& context) {
    const Command caches = app.AddGroup("caches", "What a printer's driver keeps of the printer's capabilities");
    const auto options = std::make_shared<CachesOptions>();
    const auto add = [&](const char* name, const char* description, void (*run)(HostContext&, const CachesOptions&)) {
        return caches.AddCommand(name, description, [&context, options, run] { run(context, *options); });
    };
    constexpr const char* kPrinter = "The printer's name";
    add("show", "Prints the caches' records; damaged caches are told", RunShow)
        .AddOption("--printer", options->printer, kPrinter)
        .Required();
    const Command rebuild =
        add("rebuild", "Builds the caches anew from the product, the forms and the custom sizes", RunRebuild);
    rebuild.AddOption("--printer", options->printer, kPrinter).NotEmpty();
    rebuild.AddFlag("--all", options->all, "Those of all printers");
}
