// Bringing a DEVMODE's paper fields into line with the printer's paper database.
#include <xdevmode.h>

#include <mscacheddevicecapabilities.h>
#include <privateblock.h>

#include <facts/papernumbers.h>
#include <mvcore/datamodelids.h>
#include <mvutil/cforms.h>
#include <mvutil/devicesettings.h>
#include <mvutil/operatingsystem.h>
#include <namefield.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace {

using Records = std::vector<_tag_FormsInfoRec>;

constexpr DWORD kSpreadsheetRuleSetting = 720;
constexpr const WCHAR* kSpreadsheetProgram = W("excel.exe");

template <class Predicate>
const _tag_FormsInfoRec* FindRecord(const Records& records, Predicate matches) {
    const auto found = std::find_if(records.begin(), records.end(), matches);
    return found == records.end() ? nullptr : &*found;
}

CXString FormNameOf(const DEVMODEW* devmode) { return CXString(GetNameField(devmode->dmFormName)); }

bool HasDimensionsOf(const _tag_FormsInfoRec& record, const DEVMODEW* devmode) {
    return record.width == devmode->dmPaperWidth && record.length == devmode->dmPaperLength;
}

bool IsMappedForm(const _tag_FormsInfoRec& record, const DEVMODEW* devmode) {
    return record.pageSizeType == static_cast<DWORD>(PageSizeTypeEnum::MappedForm) && HasDimensionsOf(record, devmode);
}

// A spreadsheet keeps the number of a form that was there when it was saved; by now it may be another's. A user's form
// is replaced by the country's usual paper.
void ReplaceFormOfSpreadsheet(HANDLE printer, DEVMODEW* devmode) {
    if (devmode->dmPaperSize <= facts::kLastSystemPaper) return;
    DeviceSettingsManager settings{Printer(printer)};
    bool applies = false;
    if (!settings.GetBooleanValueFromAttributeBytes(kSpreadsheetRuleSetting, applies) || !applies) return;
    CXString program;
    if (!XDevmode(devmode).GetPropertyString(privateblock::kApplicationNameKey, program)) return;
    if (program != kSpreadsheetProgram) return;
    const CForms forms(printer, true);
    const _MVN_FORM_INFO* const form = forms.GetFormW(static_cast<WORD>(devmode->dmPaperSize));
    if (!form || !form->isUserForm) return;
    devmode->dmPaperSize = OperatingSystem::IsMetricCountry() ? DMPAPER_A4 : DMPAPER_LETTER;
}

// By number, else by name: whichever the DEVMODE says is set. Takes over what the record says beside that.
bool MatchNumberOrName(DEVMODEW* devmode, const Records& records) {
    const bool byNumber = (devmode->dmFields & DM_PAPERSIZE) != 0;
    if (!byNumber && !(devmode->dmFields & DM_FORMNAME)) return false;
    const CXString name = FormNameOf(devmode);
    const _tag_FormsInfoRec* const record = FindRecord(records, [&](const _tag_FormsInfoRec& candidate) {
        if (candidate.msPaperId == DMPAPER_USER) return false;
        if (!byNumber) return name.CompareNoCase(candidate.name) == 0;
        return candidate.msPaperId == int{devmode->dmPaperSize} && candidate.msPaperId != DMPAPER_TABLOID;
    });
    if (!record) return false;
    XDevmode::SetPaperDimensions(devmode, record->width, record->length);
    if (byNumber) {
        XDevmode::SetFormName(devmode, record->name);
    } else {
        devmode->dmPaperSize = static_cast<SHORT>(record->msPaperId);
    }
    return true;
}

bool MatchRecord(DEVMODEW* devmode, const Records& records) {
    if (devmode->dmPaperWidth > devmode->dmPaperLength)
        XDevmode::SetPaperDimensions(devmode, devmode->dmPaperLength, devmode->dmPaperWidth);
    const bool isMatched = MatchNumberOrName(devmode, records);
    const _tag_FormsInfoRec* const mapped = FindRecord(records, [&](const _tag_FormsInfoRec& record) {
        return IsMappedForm(record, devmode) && record.msPaperId != DMPAPER_TABLOID;
    });
    if (mapped) devmode->dmPaperSize = static_cast<SHORT>(mapped->msPaperId);
    if (isMatched) return true;
    if (mapped && (devmode->dmFields & DM_PAPERSIZE)) {
        XDevmode::SetFormName(devmode, mapped->name);
        return true;
    }

    if (devmode->dmFields & DM_FORMNAME) {
        const CXString name = FormNameOf(devmode);
        const _tag_FormsInfoRec* const named =
            FindRecord(records, [&](const _tag_FormsInfoRec& record) { return name.Compare(record.name) == 0; });
        if (named && HasDimensionsOf(*named, devmode)) return true;
    }
    const _tag_FormsInfoRec* sameSize =
        FindRecord(records, [&](const _tag_FormsInfoRec& record) { return IsMappedForm(record, devmode); });
    if (!sameSize) {
        sameSize =
            FindRecord(records, [&](const _tag_FormsInfoRec& record) { return HasDimensionsOf(record, devmode); });
    }
    if (!sameSize) return false;
    XDevmode::SetFormName(devmode, sameSize->name);
    return true;
}

}  // namespace

bool XDevmode::NormalizeDevmodePaperSize(HANDLE printer, DEVMODEW* devmode, MsCachedDeviceCapabilities& capabilities) {
    if (devmode->dmFields & DM_PAPERSIZE) devmode->dmFields &= ~static_cast<DWORD>(DM_FORMNAME);
    ReplaceFormOfSpreadsheet(printer, devmode);
    if (devmode->dmPaperSize == DMPAPER_TABLOID) devmode->dmPaperSize = DMPAPER_11X17;

    const Records& records = capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer);
    const bool isMatched = !records.empty() && MatchRecord(devmode, records);
    const bool hasName = devmode->dmPaperSize < facts::kFirstUserPaper && devmode->dmPaperSize != DMPAPER_USER;
    if (!isMatched || !hasName) SetFormName(devmode, OperatingSystem::UseEnglishPaperSizes() ? W("Letter") : W("A4"));
    return isMatched;
}

void XDevmode::SetFormName(DEVMODEW* devmode, const WCHAR* name) { SetNameField(devmode->dmFormName, name); }

void XDevmode::SetPaperDimensions(DEVMODEW* devmode, LONG width, LONG length) {
    using Limits = std::numeric_limits<SHORT>;
    devmode->dmPaperWidth = static_cast<SHORT>(std::clamp<LONG>(width, Limits::min(), Limits::max()));
    devmode->dmPaperLength = static_cast<SHORT>(std::clamp<LONG>(length, Limits::min(), Limits::max()));
}
