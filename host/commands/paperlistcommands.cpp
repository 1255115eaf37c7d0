// printer form list, printer customsize list
#include <mvutil/cforms.h>
#include <mvutil/customsizes.h>
#include <mvutil/user.h>
#include <namefield.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <ostream>

#include <subsystem/explain/paperwords.h>
#include <subsystem/hosttext.h>
#include <subsystem/installedprinter.h>
#include <subsystem/jsontext.h>
#include "commands.h"

namespace {

using Json = nlohmann::ordered_json;

struct ListOptions {
    std::string printer;
    bool all = false, json = false;
};

// The rows as JSON, or a line each: the name, the sides in millimetres, what else there is to say.
void PrintPapers(HostContext& context, const ListOptions& options, const Json& rows, const char* (*describe)(bool)) {
    if (options.json) {
        context.out << FormatJson(rows) << '\n';
        return;
    }
    for (const Json& row : rows)
        context.out << row.at("name").get<std::string>() << "  ("
                    << DescribeSize(row.at("width").get<LONG>(), row.at("length").get<LONG>())
                    << describe(row.back().get<bool>()) << ")\n";
}

void ListForms(HostContext& context, const ListOptions& options) {
    context.UseStore();
    std::string name = options.printer;
    if (name.empty()) {
        // All printers of a print server have its forms.
        const std::vector<PrinterRow> printers = ListPrinters();
        if (!printers.empty()) name = ToUtf8(printers.front().name);
    }
    Json rows = Json::array();
    if (!name.empty()) {
        const CForms forms(OpenInstalledPrinter(ArgumentToWide(name)).Get(), true);
        for (const _MVN_FORM_INFO& form : forms.GetForms())
            if (options.all || form.isUserForm)
                rows.push_back({{"name", ToUtf8(GetNameField(form.name))},
                                {"width", form.width},
                                {"length", form.length},
                                {"user", form.isUserForm != 0}});
    }
    PrintPapers(context, options, rows, [](bool isUsers) { return isUsers ? "" : ", of the system or a printer"; });
}

void ListCustomSizes(HostContext& context, const ListOptions& options) {
    context.UseStore();
    Json rows = Json::array();
    for (const CXString& name : User::EnumUserKeyNames(kCustomSizesKey)) {
        const CXString key(WideString(kCustomSizesKey) + W("\\") + name.AsWideString());
        rows.push_back({{"name", name.ToUtf8()},
                        {"width", User::GetUserDataLongFromRegistry(key, kCustomSizeWidthValue, 0)},
                        {"length", User::GetUserDataLongFromRegistry(key, kCustomSizeLengthValue, 0)},
                        {"metric", User::GetUserDataBooleanFromRegistry(key, kCustomSizeIsMetricValue, false)}});
    }
    PrintPapers(context, options, rows, [](bool isMetric) { return isMetric ? "" : ", shown in inches"; });
}

}  // namespace

void AddPaperLists(Command form, Command customSize, HostContext& context) {
    const auto options = std::make_shared<ListOptions>();
    const auto add = [&](Command group, const char* description, void (*run)(HostContext&, const ListOptions&)) {
        const Command list =
            group.AddCommand("list", description, [&context, options, run] { run(context, *options); });
        list.AddFlag("--json", options->json, kJsonRows);
        return list;
    };
    const Command forms = add(form, "One line a form that a user added: name, width, length", ListForms);
    forms.AddOption("--printer", options->printer, "A printer of the print server (default: any)")
        .Takes(kPrinterValue)
        .NotEmpty();
    forms.AddFlag("--all", options->all, "The system's and the printers' own forms as well");
    add(customSize, "One line a custom size: name, width, length", ListCustomSizes);
}
