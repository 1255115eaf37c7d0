// RenBase: a data model of one job is built, given the job's settings, and written as a job ticket.
#include "renbase.h"

#include "jobmodel.h"
#include "mvjtwriter.h"
#include "privateblock.h"
#include "renidentification.h"
#include "xdevmode.h"
#include "xoempdev.h"

#include <facts/drivercapabilities.h>
#include <facts/features.h>
#include <facts/values.h>
#include <mvcore/datamodelmanager.h>
#include <mvutil/devicesettings.h>
#include <mvutil/executioncontext.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/printer.h>
#include <mvutil/printjob.h>
#include <workflow/productdata.h>

namespace {

constexpr const WCHAR* kSourceUnit = W("renbase");
constexpr LONG kGenerateContext = 31553;
constexpr LONG kOwnWriterContext = 31555;
constexpr LONG kLibraryExportContext = 31556;

namespace feature = facts::feature;
namespace value = facts::value;

constexpr DWORD kWriterSetting = 546;
constexpr DWORD kOwnWriter = 8701;
// Keys of the job's store.
constexpr LONG kDocumentNameItem = 7;
constexpr LONG kJobNumberItem = 16;

// What the private DEVMODE says of title, sender and recipient.
struct JobTexts {
    struct Text {
        DWORD feature;
        DWORD switchFeature;  // true: the system's text
        CXString own = {};
        bool isSystemText = false;
    };

    explicit JobTexts(XDevmode& xdevmode) {
        xdevmode.GetPropertyString(privateblock::kJobTextKey, jobText);
        for (Text& text : texts) {
            xdevmode.GetStringValueFromAttributeBytes(text.feature, text.own);
            xdevmode.GetBooleanValueFromAttributeBytes(text.switchFeature, text.isSystemText);
        }
    }

    CXString jobText;  // stands for the sender and for the recipient
    Text texts[3] = {{feature::kTitle, feature::kTitleIsOfJob},
                     {feature::kSender, feature::kSenderIsOfJob},
                     {feature::kRecipient, feature::kRecipientIsOfJob}};
};

void SetString(const ListOfFeaturesRef& features, DWORD id, const CXString& text) {
    features.GetStringFeature(FeatureId(id)).SetValue(text);
}

void SetOption(const ListOfFeaturesRef& features, DWORD id, DWORD wanted) {
    features.GetOptionFeature(FeatureId(id)).SetValue(ValueId(wanted));
}

bool HoldsOption(const ListOfFeaturesRef& features, DWORD id, DWORD wanted) {
    return features.GetOptionFeature(FeatureId(id)).GetValue() == ValueId(wanted);
}

void SetJobTexts(const ListOfFeaturesRef& features, const JobTexts& job, const CXString& documentName) {
    for (const JobTexts::Text& text : job.texts) {
        const CXString& systemText = text.feature == feature::kTitle ? documentName : job.jobText;
        SetString(features, text.feature, text.isSystemText ? systemText : text.own);
    }
}

void SetByFlags(const ListOfFeaturesRef& features, ULONGLONG flags) {
    if (flags & facts::kJobTicketWriter8631Flags)
        SetOption(features, feature::kJobTicketWriter, value::kJobTicketWriter8631);
    if (flags & facts::kPostScriptDeviceFlag)
        SetOption(features, feature::kJobTicketWriter, value::kJobTicketWriter8630);
}

void SetCopiesAndCollation(const ListOfFeaturesRef& features, const DEVMODEW& devmode) {
    if (HoldsOption(features, feature::kCopiesSource, value::kCopiesOfDevmode))
        features.GetIntegerFeature(FeatureId(feature::kCopies)).SetValue(LONG{devmode.dmCopies});
    if (HoldsOption(features, feature::kCollationSource, value::kCollationOfDevmode))
        SetOption(features, feature::kCollation,
                  devmode.dmCollate == DMCOLLATE_TRUE ? value::kCollated : value::kUncollated);
}

bool UsesOwnWriter(AttributeBytesReader& deviceSettings) {
    DWORD writer = 0;
    return deviceSettings.GetOptionValueFromAttributeBytes(kWriterSetting, writer) && writer == kOwnWriter;
}

void ExportByLibrary(DataModelManager& manager, ByteBuffer& buffer) {
    const BasicExecutionContext context(kLibraryExportContext, W("RenBase::ExportByLibrary"), kSourceUnit);
    const ExecutionContextLifetime lifetime(context);
    manager.GetMvjtTranslator(DataModelIds::kMvjtTranslator)->ExportToBuffer(buffer, true);
}

}  // namespace

void RenBase::CloseKernelHandle::operator()(HANDLE handle) const noexcept {
    if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
}

RenBase::RenBase() = default;
RenBase::~RenBase() = default;

bool RenBase::GenerateMvjt(HANDLE printerHandle, const DEVMODEW* devmode, XOemPdev& pdev, XDevmode& xdevmode,
                           ByteBuffer& buffer, ULONGLONG flags, const ProductData& productData) try {
    const BasicExecutionContext context(kGenerateContext, W("RenBase::GenerateMvjt"), kSourceUnit);
    const ExecutionContextLifetime lifetime(context);
    bool wantsTicket = false;
    xdevmode.GetBooleanValueFromAttributeBytes(feature::kJobTickets, wantsTicket);
    if (!wantsTicket) return false;

    CXString documentName;
    pdev.GetPropertyString(kDocumentNameItem, documentName);
    JobModel model(printerHandle, productData, xdevmode, documentName);
    DeviceSettingsManager deviceSettings{Printer(printerHandle)};
    const IdentificationSettings identification =
        ReadIdentificationSettings(deviceSettings, pdev, productData.GetControllerFamily());

    model.Populate();
    DataModelManager& manager = model.GetManager();
    FeatureServices& services = manager.GetFeatureServices();
    ListOfFeaturesRef features;
    services.GetRootListOfFeatures(features);

    const JobTexts job(xdevmode);
    if (xdevmode.GetProperty(privateblock::kAttributeStateKey)) {
        manager.BeginMassSet();
        model.ImportDocumentSettings();
        if (identification.mode == IdentificationSettings::kModeOfStrings) {
            SetString(features, feature::kJobText1, identification.second);
            SetString(features, feature::kJobText2, identification.first);
        }
        SetJobTexts(features, job, documentName);
        LONG jobNumber = 0;
        if (services.IsFeatureSupported(FeatureId(feature::kJobKey)) && pdev.GetPropertyLong(kJobNumberItem, jobNumber))
            SetString(features, feature::kJobKey,
                      PrintJob::GetLumeoPrintJobIDkey(printerHandle, jobNumber, job.jobText));
        SetByFlags(features, flags);
        manager.EndMassSet();
    }
    SetCopiesAndCollation(features, *devmode);
    manager.GetSpecialPagesServices().MakePrintInstructionAdjustments();
    if (UsesOwnWriter(deviceSettings)) return WriteOwnMvjt(manager, buffer, flags);
    ExportByLibrary(manager, buffer);
    return true;
} catch (const ExceptionUnsupportedFeatureRequest&) {
    return false;
}

// The flags change no line.
bool RenBase::WriteOwnMvjt(DataModelManager& manager, ByteBuffer& buffer, ULONGLONG) {
    const BasicExecutionContext context(kOwnWriterContext, W("RenBase::WriteOwnMvjt"), kSourceUnit);
    const ExecutionContextLifetime lifetime(context);
    WriteMvjt(manager.GetFeatureServices(), buffer);
    return true;
}

RenMvjtForXps::RenMvjtForXps() = default;
RenMvjtForXps::~RenMvjtForXps() = default;

void RenMvjtForXps::ProvideDataSources(std::vector<std::pair<DataSourceProviderTypes, DataSource*>>&) {}

HRESULT RenMvjtForXps::RenderPages() { return E_NOTIMPL; }
