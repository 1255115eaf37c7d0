// The end of a printed job, reported to the job's model, and what the next job's model starts with.
#include "printedjob.h"

#include <facts/features.h>
#include <jobmodel.h>
#include <workflowobject.h>
#include <xdevmode.h>

#include "hosterror.h"
#include "settingnames.h"

namespace {

// Calls the function with the model of a job of that DEVMODE.
template <class Use>
void UseJobModel(const InstalledPrinter& printer, DEVMODEW* devmode, Use use) {
    WorkflowObject workflow;
    if (!workflow.InitializeWorkflowObject(printer.GetHandle(), nullptr, nullptr))
        throw OperationError("the printer's workflow library cannot be loaded; install the driver's files anew");
    XDevmode xdevmode(devmode);
    JobModel model(printer.GetHandle(), *workflow.GetProductDataObj(), xdevmode, CXString());
    model.Populate();
    model.ImportDocumentSettings();
    use(model.GetManager().GetFeatureServices());
}

std::string DescribeSecret(const CXString& text) {
    return text.IsEmpty() ? "none" : std::to_string(text.GetLength()) + " characters, not shown";
}

}  // namespace

void EndPrintedJob(const InstalledPrinter& printer, DevmodeBuffer& devmode) {
    UseJobModel(printer, devmode.Get(),
                [](FeatureServices& services) { services.RaiseEvent(EventId(DataModelIds::kJobPrinted)); });
}

std::vector<std::pair<DWORD, std::string>> ReadJobPreferences(const InstalledPrinter& printer) {
    std::vector<std::pair<DWORD, std::string>> preferences;
    DEVMODEW devmode{};  // of a job for which nothing was set
    devmode.dmSize = sizeof devmode;
    UseJobModel(printer, &devmode, [&](FeatureServices& services) {
        namespace feature = facts::feature;
        const FeatureId secret(feature::kProtectedString), integer(feature::kUserInteger);
        CXString text;
        LONG number = 0;
        if (services.IsFeatureSupported(secret)) {
            services.GetStringFeature(secret).GetValue(text, DataModelIds::kCurrentValue);
            preferences.emplace_back(secret.GetId(), DescribeSecret(text));
        }
        for (const FeatureId option :
             {FeatureId(feature::kUserPreference), FeatureId(feature::kUnits), FeatureId(feature::kPaperUnits)})
            preferences.emplace_back(
                option.GetId(),
                NameValue(services.GetOptionFeature(option).GetValue().GetValueEnum(), *printer.GetProduct()));
        services.GetIntegerFeature(integer).GetValue(number, DataModelIds::kCurrentValue);
        preferences.emplace_back(integer.GetId(), std::to_string(number));
    });
    return preferences;
}
