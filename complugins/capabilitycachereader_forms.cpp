// CapabilityCacheReader: the check values over the printer's forms and the user's custom paper sizes.
#include <capabilitycachereader.h>

#include <caughtexception.h>

#include <mvcore/pagesizedictionary.h>
#include <mvutil/cforms.h>
#include <mvutil/crc32.h>
#include <mvutil/customsizes.h>
#include <mvutil/user.h>
#include <namefield.h>

namespace {

// The record that stands for a custom size in the check value; its sizes are in thousandths of a millimetre.
_tag_FormsInfoRec MakeCustomSizeRecord(const CXString& name) {
    const CXString key = CXString(kCustomSizesKey) + W("\\") + name;
    const DWORD paperId = PageSizeDictionary::GetCustomSizeMsId(name);
    const bool isMetric = User::GetUserDataBooleanFromRegistry(key, kCustomSizeIsMetricValue, false);
    _tag_FormsInfoRec record{};
    // A 32-bit value over the first two fields.
    record.msPaperId = static_cast<WORD>(paperId);
    record.formIndex = static_cast<WORD>(paperId >> 16);
    record.width = User::GetUserDataLongFromRegistry(key, kCustomSizeWidthValue, 0);
    record.length = User::GetUserDataLongFromRegistry(key, kCustomSizeLengthValue, 0);
    record.displayUnits = isMetric ? DataModelIds::kUnitsMillimetres : DataModelIds::kUnitsInches;
    record.pageSizeType = static_cast<DWORD>(PageSizeTypeEnum::DriverCustom);
    SetNameField(record.name, name.AsWideString());
    return record;
}

}  // namespace

DWORD CapabilityCacheReader::ComputeFormsDatabaseCRC() const {
    const CForms forms(printer_, true);
    const std::vector<_MVN_FORM_INFO>& list = forms.GetForms();
    return Crc32::GetCrc(list.data(), list.size() * sizeof(_MVN_FORM_INFO), kCapabilityCacheCrcStart);
}

DWORD CapabilityCacheReader::GetCustomFormsCRC() {
    customFormsCrc_ = kCapabilityCacheCrcStart;
    if (isInSpooler_) return customFormsCrc_;
    try {
        for (const CXString& name : User::EnumUserKeyNames(kCustomSizesKey)) {
            const _tag_FormsInfoRec record = MakeCustomSizeRecord(name);
            customFormsCrc_ = Crc32::GetCrc(&record, sizeof record, customFormsCrc_);
        }
    } catch (...) {
        ReportCaughtException(W("MSDeviceCapabilities::GetCustomFormsCRC"), W("complugins/msdevicecapabilities"));
    }
    return customFormsCrc_;
}
