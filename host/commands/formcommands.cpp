// printer form add, printer form remove, printer customsize add, printer customsize remove
#include <facts/papernumbers.h>
#include <facts/units.h>
#include <mvutil/cachelocation.h>
#include <mvutil/cforms.h>
#include <mvutil/customsizes.h>
#include <mvutil/user.h>

#include <charconv>
#include <cmath>
#include <memory>

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <subsystem/hosterror.h>
#include <subsystem/hosttext.h>
#include <subsystem/installedprinter.h>
#include <subsystem/printercaches.h>
#include "commands.h"

namespace {

constexpr double kLongestSide = facts::kLongestSide / double{facts::kMicrometresPerMillimetre};  // millimetres
constexpr double kShortestSide = facts::kShortestSide / double{facts::kMicrometresPerMillimetre};
constexpr std::size_t kLongestFormName = 31;        // what dmFormName holds
constexpr std::size_t kLongestCustomSizeName = 63;  // what a paper record holds

struct PaperOptions {
    std::string name, printer, width, length;
    bool metric = false;
};

// Thousandths of a millimetre.
LONG ParseSide(const std::string& text) {
    double millimetres = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, millimetres, std::chars_format::fixed);
    if (error != std::errc() || stop != end || !(millimetres >= kShortestSide && millimetres <= kLongestSide))
        throw InputError("'" + text + "' is no side of a paper; give millimetres from 0.1 to " +
                         facts::kLongestMillimetres);
    return static_cast<LONG>(std::lround(millimetres * 1000));
}

WideString ReadPaperName(const PaperOptions& options, std::size_t longest) {
    WideString name = ArgumentToWide(options.name);
    const bool hasControls = std::any_of(name.begin(), name.end(), [](WCHAR unit) { return unit < W(' '); });
    if (name.empty() || name.size() > longest || hasControls || name.find(W('\\')) != WideString::npos)
        throw InputError("'" + options.name + "' is no name for a paper; it has 1 to " + std::to_string(longest) +
                         " characters, without \\ and control characters");
    return name;
}

[[noreturn]] void ThrowFormRefusal(const char* operation, const std::string& name) {
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_EXISTS)
        throw InputError("there is a form '" + name + "' already; remove it first or take another name");
    if (error == ERROR_INVALID_FORM_NAME)
        throw NotFoundError("there is no form '" + name + "' that a user added; 'printer form list' shows them");
    if (error == ERROR_INVALID_PARAMETER) throw InputError("the form '" + name + "' is one of the system's own");
    throw OperationError(operation, HRESULT_FROM_WIN32(error));
}

void AddForm(HostContext& context, const PaperOptions& options) {
    WideString name = ReadPaperName(options, kLongestFormName);
    const LONG width = ParseSide(options.width), length = ParseSide(options.length);
    context.ChangeStore();
    const auto printer = OpenInstalledPrinter(ArgumentToWide(options.printer));
    FORM_INFO_1W form{};
    form.Flags = FORM_USER;
    form.pName = name.data();
    form.Size = {width, length};
    form.ImageableArea = {0, 0, width, length};
    if (!AddFormW(printer.Get(), 1, reinterpret_cast<LPBYTE>(&form))) ThrowFormRefusal("AddFormW", options.name);
    if (!CForms(printer.Get(), true).GetFormW(name)) {
        DeleteFormW(printer.Get(), name.data());
        throw InputError("there is no paper number left for the form '" + options.name +
                         "': the forms have those up to " + std::to_string(facts::kLastFormPaper) +
                         "; remove another form first");
    }
    RebuildAllCaches();
}

void RemoveForm(HostContext& context, const PaperOptions& options) {
    WideString name = ReadPaperName(options, kLongestFormName);
    context.ChangeStore();
    const auto printer = OpenInstalledPrinter(ArgumentToWide(options.printer));
    if (!DeleteFormW(printer.Get(), name.data())) ThrowFormRefusal("DeleteFormW", options.name);
    RebuildAllCaches();
}

WideString GetCustomSizePath(const WideString& name) {
    return WideString(kDriverFamilyKey) + W("\\") + kCustomSizesKey + W("\\") + name;
}

void AddCustomSize(HostContext& context, const PaperOptions& options) {
    const WideString path = GetCustomSizePath(ReadPaperName(options, kLongestCustomSizeName));
    const std::pair<const WCHAR*, LONG> values[] = {{kCustomSizeWidthValue, ParseSide(options.width)},
                                                    {kCustomSizeLengthValue, ParseSide(options.length)},
                                                    {kCustomSizeIsMetricValue, options.metric ? 1 : 0}};
    context.ChangeStore(StoreAccess::Write);
    if (User::EnumUserKeyNames(kCustomSizesKey).size() >= User::kMaximumKeyNames)
        throw InputError("there are " + std::to_string(User::kMaximumKeyNames) +
                         " custom sizes, as many as a printer lists; remove one first");
    UniqueKey key;
    DWORD disposition = 0;
    LSTATUS status = RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE,
                                     nullptr, key.Put(), &disposition);
    if (status == ERROR_SUCCESS && disposition == REG_OPENED_EXISTING_KEY)
        throw InputError("there is a custom size '" + options.name + "' already; remove it first or take another name");
    for (const auto& [value, number] : values) {
        if (status == ERROR_SUCCESS)
            status =
                RegSetValueExW(key.Get(), value, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
    }
    if (status != ERROR_SUCCESS)
        throw OperationError("Writing the custom size", HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
    RebuildAllCaches();
}

void RemoveCustomSize(HostContext& context, const PaperOptions& options) {
    const WideString path = GetCustomSizePath(ReadPaperName(options, kLongestCustomSizeName));
    context.ChangeStore();
    if (RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str()) != ERROR_SUCCESS)
        throw NotFoundError("there is no custom size '" + options.name + "'; 'printer customsize list' shows them");
    RebuildAllCaches();
}

}  // namespace

void AddPaperCommands(Command printer, HostContext& context) {
    const auto options = std::make_shared<PaperOptions>();
    const auto command = [&](Command group, const char* name, const char* description,
                             void (*run)(HostContext&, const PaperOptions&)) {
        const Command added = group.AddCommand(name, description, [&context, options, run] { run(context, *options); });
        added.AddOption("NAME", options->name, "The paper's name").Required();
        return added;
    };
    const auto sized = [&](Command added) {
        added.AddOption("--width", options->width, "Millimetres").Takes("MM").Required();
        added.AddOption("--length", options->length, "Millimetres").Takes("MM").Required();
        return added;
    };
    const Command form = printer.AddGroup("form", "The user's forms, which all printers offer");
    const Command customSize =
        printer.AddGroup("customsize", "The user's custom paper sizes, which all printers offer");
    const Command addForm = sized(command(form, "add", "Adds a form to the print server", AddForm));
    const Command removeForm = command(form, "remove", "Removes a form that a user added", RemoveForm);
    for (const Command& added : {addForm, removeForm})
        added.AddOption("--printer", options->printer, "A printer of the print server").Takes(kPrinterValue).Required();
    AddPaperLists(form, customSize, context);
    sized(command(customSize, "add", "Adds a custom size", AddCustomSize))
        .AddFlag("--metric", options->metric, "Shown in millimetres (default: inches)");
    command(customSize, "remove", "Removes a custom size", RemoveCustomSize);
}
