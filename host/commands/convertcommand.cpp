// convert: files of any of the inputs' forms, as a product converts them, without a printer in the store.
#include <algorithm>
#include <map>
#include <memory>
#include <optional>

#include <convert/converter.h>
#include <convert/throwawayprinter.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/inputs/devmodeinput.h>
#include <subsystem/inputs/ticketinput.h>
#include <subsystem/productfiles.h>
#include "bulk.h"
#include "commands.h"
#include "providerchoice.h"

namespace {

namespace fs = std::filesystem;

struct ConvertOptions {
    std::string product, to, base, folder;
    std::vector<std::string> in;
    bool strict = false;
    ProviderChoice provider;
};

// One target of the command: what an input becomes.
using Convert = Converted (*)(Converter& converter, const std::string& in, const std::optional<DevmodeBuffer>& base);

Converted ToTicket(Converter& converter, const std::string& in, const std::optional<DevmodeBuffer>&) {
    return converter.ToTicket(ReadDevmodeInput(PathFromUtf8(in)));
}

Converted ToDevmode(Converter& converter, const std::string& in, const std::optional<DevmodeBuffer>& base) {
    return converter.ToDevmode(ReadTicketInput(PathFromUtf8(in)).Get(), base ? *base : converter.MakeDefaultDevmode());
}

Converted ToCapabilities(Converter& converter, const std::string& in, const std::optional<DevmodeBuffer>&) {
    return converter.ToCapabilities(ReadTicketInput(PathFromUtf8(in)).Get());
}

struct Target {
    const char *name, *extension;
    Convert convert;
};
constexpr Target kTargets[] = {
    {"ticket", ".xml", ToTicket}, {"devmode", ".bin", ToDevmode}, {"capabilities", ".xml", ToCapabilities}};

const Target& FindTarget(const ConvertOptions& options) {
    const auto found = std::find_if(std::begin(kTargets), std::end(kTargets),
                                    [&](const Target& target) { return target.name == options.to; });
    if (found == std::end(kTargets))
        throw InputError("nothing is converted to '" + options.to + "'; --to takes ticket, devmode or capabilities");
    if (!options.base.empty() && found->convert != ToDevmode)
        throw InputError("--base is what a ticket is applied to; it goes with --to devmode");
    return *found;
}

fs::path MakeAbsolute(const std::string& file) {
    std::error_code error;
    return fs::absolute(PathFromUtf8(file), error).lexically_normal();
}

// The folders that all of the files lie in; standard input lies in none.
fs::path FindCommonFolder(const std::vector<fs::path>& files) {
    fs::path common;
    for (const fs::path& file : files) {
        const fs::path folder = file.parent_path();
        if (IsStandardStream(file)) continue;
        if (common.empty()) common = folder;
        const auto [end, other] = std::mismatch(common.begin(), common.end(), folder.begin(), folder.end());
        fs::path shared;
        for (auto part = common.begin(); part != end; ++part) shared /= *part;
        common = shared;
    }
    return common;
}

// The files that the inputs become: their names under the folder, with the folders that tell them apart. An input whose
// file would take the place of another one or of itself has that as its fault.
std::vector<fs::path> NameOutputs(const ConvertOptions& options, const Target& target, std::vector<BulkItem>& items) {
    std::vector<fs::path> files;
    for (const std::string& in : options.in)
        files.push_back(IsStandardStream(PathFromUtf8(in)) ? PathFromUtf8(in) : MakeAbsolute(in));
    const fs::path common = FindCommonFolder(files);
    const fs::path folder = MakeAbsolute(options.folder);
    std::map<fs::path, std::size_t> takenBy;
    for (std::size_t index = 0; index < files.size(); ++index) takenBy.emplace(files[index], index);
    for (std::size_t index = 0; index < files.size(); ++index) {
        const fs::path name = IsStandardStream(files[index]) ? "stdin" : files[index].lexically_relative(common);
        files[index] = (folder / name).replace_extension(target.extension);
        const auto [taken, isFree] = takenBy.emplace(files[index], index);
        if (!isFree)
            items[index].fault = "it would be written over '" + options.in[taken->second] + "'; name another folder";
    }
    return files;
}

std::vector<BulkItem> MakeItems(const std::vector<std::string>& files) {
    std::vector<BulkItem> items;
    items.reserve(files.size());
    for (const std::string& file : files) items.push_back({ArgumentToWide(file), 0, {}});
    return items;
}

void RequireNoLoss(const ConvertOptions& options, const BulkNotes& losses) {
    if (options.strict && !losses.empty())
        throw OperationError("settings are lost or ignored, and --strict was given; nothing was written");
}

void ConvertOne(HostContext& context, const ConvertOptions& options, const Target& target, Converters& converters,
                const std::optional<DevmodeBuffer>& base) {
    Converted converted;
    try {
        converted =
            converters.Use([&](Converter& converter) { return target.convert(converter, options.in.front(), base); });
    } catch (const InputError& error) {
        throw OperationError(error.what());  // as one of many files that fails
    }
    for (const std::string& loss : converted.losses) context.err << loss << '\n';
    RequireNoLoss(options, converted.losses);
    context.out << converted.bytes;
}

void ConvertMany(HostContext& context, const ConvertOptions& options, const Target& target, Converters& converters,
                 const std::optional<DevmodeBuffer>& base) {
    std::vector<BulkItem> items = MakeItems(options.in);
    const std::vector<fs::path> files = NameOutputs(options, target, items);
    const auto apply = [&](const BulkItem& item, BulkNotes& losses) {
        const auto index = static_cast<std::size_t>(&item - items.data());
        Converted converted =
            converters.Use([&](Converter& converter) { return target.convert(converter, options.in[index], base); });
        losses = std::move(converted.losses);
        RequireNoLoss(options, losses);
        MakeFolder(files[index].parent_path());
        WriteWholeFile(files[index], converted.bytes);
    };
    WorkInBulk(context, items, {{.done = "converted", .one = "file", .many = "files"}, apply});
}

void RunConvert(HostContext& context, const ConvertOptions& options) {
    const Target& target = FindTarget(options);
    const bool isToOutput = options.folder.empty() || IsStandardStream(PathFromUtf8(options.folder));
    if (isToOutput && options.in.size() > 1) throw InputError("many files become many; name a folder for them with -o");
    std::optional<DevmodeBuffer> base;
    if (!options.base.empty()) base = ReadDevmodeInput(PathFromUtf8(options.base));
    const fs::path product = FindProductFile(options.product);
    context.UseThrowawayStore();
    Converters converters(InstallThrowawayPrinter(product), MakeProviderSource(options.provider));
    if (isToOutput) return ConvertOne(context, options, target, converters, base);
    ConvertMany(context, options, target, converters, base);
}

}  // namespace

void AddConvertCommand(Command app, HostContext& context) {
    const auto options = std::make_shared<ConvertOptions>();
    const Command convert =
        app.AddCommand("convert", "Converts files as a product does, without a printer; what is lost is reported",
                       [&context, options] { RunConvert(context, *options); });
    convert.AddOption("--product", options->product, "The product's name ('product list') or its file")
        .Takes(kProductValue)
        .Required();
    convert
        .AddOption("--to", options->to,
                   "ticket (of DEVMODEs), devmode (of tickets) or capabilities (as tickets ask for them)")
        .Takes("ticket|devmode|capabilities")
        .Required();
    convert.AddOption("--base", options->base, "The DEVMODE that tickets are applied to (default: the product's own)")
        .NotEmpty();
    convert.AddArguments(kFileValue, options->in,
                         "Files: DEVMODEs raw, as hex or Base64 text, in a .reg file or inside a ticket; tickets alone "
                         "or in an XPS file; '-' for standard input");
    convert
        .AddOption("-o,--out", options->folder,
                   "Folder for the converted files, below it as they lie to each other (default: one file to standard "
                   "output)")
        .NotEmpty();
    convert.AddFlag("--strict", options->strict, "Write no file of which a setting is lost or ignored");
    AddProviderOption(convert, options->provider);
}
