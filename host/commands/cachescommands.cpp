// caches rebuild, caches show
#include <namefield.h>
#include <printsubsystem/capabilityrecords.h>
#include <nlohmann/json.hpp>

#include <cstring>
#include <iterator>
#include <memory>
#include <ostream>
#include <span>
#include <sstream>

#include <subsystem/hosttext.h>
#include <subsystem/installedprinter.h>
#include <subsystem/jsontext.h>
#include <subsystem/printercaches.h>
#include "bulk.h"
#include "commands.h"

namespace {

using std::ostream;
using Json = nlohmann::ordered_json;

constexpr const char* kDamaged = "damaged";

struct CachesOptions {
    std::string printer;
    bool all = false, json = false;
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

// The same for programs; lengths in tenths of a millimetre.
Json ToJson(const _tag_FormsInfoRec& record) {
    return {{"name", NameOf(record.name)},  {"number", record.msPaperId}, {"form", record.formIndex},
            {"width", record.width},        {"length", record.length},    {"value", record.pageSizeValue},
            {"units", record.displayUnits}, {"type", record.pageSizeType}};
}
Json ToJson(const BinCapsRecord& record) {
    return {{"name", NameOf(record.name)}, {"number", record.number}, {"value", record.value}};
}
Json ToJson(const MediaCapsRecord& record) { return {{"name", NameOf(record.name)}, {"number", record.number}}; }
Json ToJson(const MediaReadyRecord& record) {
    return {{"paper", NameOf(record.paperName)}, {"media", NameOf(record.mediaName)}};
}
Json ToJson(const DependentFileRecord& record) { return {{"name", NameOf(record.name)}}; }
Json ToJson(const _tag_ResolutionInfoRec& record) {
    return {{"name", NameOf(record.name)},
            {"crossFeed", record.crossFeed},
            {"feed", record.feed},
            {"default", record.kind == 0}};
}

// One cache in lines for a reader and as JSON.
struct ShownCache {
    std::ostringstream lines;
    Json json;

    void Refuse(const char* state, const std::string& reason) {
        json = {{"state", state}};
        if (!reason.empty()) json["reason"] = reason;
        lines << state << (reason.empty() ? "" : ": ") << reason << '\n';
    }
};

template <class Header, class Record>
void ShowList(ShownCache& shown, const ByteBuffer& blob) {
    const DWORD count = ReadPart<Header>(blob, 0).count;
    const std::size_t held = (blob.getDword() - sizeof(Header)) / sizeof(Record);
    if (count > held)
        return shown.Refuse(kDamaged,
                            "it counts " + std::to_string(count) + " records and holds " + std::to_string(held));
    shown.lines << count << (count == 1 ? " record\n" : " records\n");
    Json& records = shown.json["records"] = Json::array();
    for (DWORD index = 0; index < count; ++index) {
        const auto record = ReadPart<Record>(blob, sizeof(Header) + index * sizeof(Record));
        shown.lines << "  ";
        Show(shown.lines, record);
        shown.lines << '\n';
        records.push_back(ToJson(record));
    }
}

void ShowDeviceLimits(ShownCache& shown, const ByteBuffer& blob) {
    using Caps = DeviceLimitsCaps;
    const auto caps = ReadPart<Caps>(blob, 0);
    shown.lines << "valid " << FormatHex(caps.valid) << '\n';
    const struct {
        DWORD bit;
        const char *key, *name;
        DWORD value;
    } kWords[] = {{Caps::kCollate, "collate", "collates", caps.collate},
                  {Caps::kColor, "color", "prints colour", caps.color},
                  {Caps::kCopies, "maximumCopies", "most copies", caps.maximumCopies},
                  {Caps::kDuplex, "duplex", "prints on both sides", caps.duplex},
                  {Caps::kMemory, "memory", "memory in KiB", caps.memory},
                  {Caps::kPagesPerMinute, "pagesPerMinute", "pages a minute", caps.pagesPerMinute},
                  {Caps::kPrintRate, "printRate", "print rate", caps.printRate},
                  {Caps::kPrintRateUnit, "printRateUnit", "unit of the print rate", caps.printRateUnit}};
    for (const auto& word : kWords) {
        if (!(caps.valid & word.bit)) continue;
        shown.lines << "  " << word.name << ": " << word.value << '\n';
        shown.json[word.key] = word.value;
    }
    if (!(caps.valid & Caps::kExtents)) return;
    const auto show = [&](const char* key, const char* name, LONG width, LONG length) {
        shown.lines << "  " << name << ": " << width << " x " << length << " tenths of a millimetre\n";
        shown.json[key] = {{"width", width}, {"length", length}};
    };
    show("smallestPage", "smallest page", caps.minimumWidth, caps.minimumLength);
    show("largestPage", "largest page", caps.maximumWidth, caps.maximumLength);
}

void ShowBlob(ShownCache& shown, CapabilityGroupId group, const ByteBuffer& blob) {
    switch (group) {
        case CapabilityGroupId::Paper:
            return ShowList<PaperCapsHeader, _tag_FormsInfoRec>(shown, blob);
        case CapabilityGroupId::Bins:
            return ShowList<ListCapsHeader, BinCapsRecord>(shown, blob);
        case CapabilityGroupId::Media:
            return ShowList<ListCapsHeader, MediaCapsRecord>(shown, blob);
        case CapabilityGroupId::MediaReady:
            return ShowList<ListCapsHeader, MediaReadyRecord>(shown, blob);
        case CapabilityGroupId::DependentFiles:
            return ShowList<ListCapsHeader, DependentFileRecord>(shown, blob);
        case CapabilityGroupId::Resolutions:
            return ShowList<ResolutionCapsHeader, _tag_ResolutionInfoRec>(shown, blob);
        case CapabilityGroupId::DeviceLimits:
            return ShowDeviceLimits(shown, blob);
        case CapabilityGroupId::Staple: {
            const bool staples = ReadPart<StapleCaps>(blob, 0).staples != 0;
            shown.lines << (staples ? "staples\n" : "does not staple\n");
            shown.json["staples"] = staples;
        }
    }
}

void ShowCache(ShownCache& shown, const InstalledPrinter& printer, const CapabilityGroup& group) {
    ByteBuffer blob;
    if (!ReadCache(printer.GetHandle(), printer.GetPort(), group, blob)) return shown.Refuse("none", {});
    const std::string bytes = std::to_string(blob.getDword());
    if (blob.getDword() < group.minimumBytes)
        return shown.Refuse(kDamaged, "it has " + bytes + " bytes and needs " + std::to_string(group.minimumBytes));
    if (!IsWholeCapabilityBlob(group, blob))
        return shown.Refuse(kDamaged, "its check word is not that of its " + bytes + " bytes");
    shown.json = {{"state", "whole"}};
    ShowBlob(shown, group.id, blob);
}

void RunShow(HostContext& context, const CachesOptions& options) {
    context.UseStore();
    const InstalledPrinter printer(ArgumentToWide(options.printer));
    Json caches = Json::object();
    for (const CapabilityGroup& group : kCapabilityGroups) {
        const std::string name = ToUtf8(group.valueName);
        ShownCache shown;
        ShowCache(shown, printer, group);
        if (!options.json) context.out << name << ": " << shown.lines.str();
        caches[name] = std::move(shown.json);
    }
    if (options.json) context.out << FormatJson(caches) << '\n';
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
    const Command show = add("show", "Prints the caches' records; damaged caches are told", RunShow);
    show.AddOption("--printer", options->printer, kPrinter).Takes(kPrinterValue).Required();
    show.AddFlag("--json", options->json, kJson);
    const Command rebuild =
        add("rebuild", "Builds the caches anew from the product, the forms and the custom sizes", RunRebuild);
    rebuild.AddOption("--printer", options->printer, kPrinter).Takes(kPrinterValue).NotEmpty();
    rebuild.AddFlag("--all", options->all, "Those of all printers");
}
