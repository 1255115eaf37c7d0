// Papers in words.
#include "paperwords.h"

#include <facts/units.h>
#include <mscacheddevicecapabilities.h>
#include <namefield.h>
#include <subsystem/devmodefields.h>
#include <subsystem/hosttext.h>

#include <algorithm>

namespace {

using facts::kMicrometresPerMillimetre, facts::kMicrometresPerTenth;

SelectedPaper FromRecord(const _tag_FormsInfoRec& record) {
    return {ToUtf8(GetNameField(record.name)), record.width * kMicrometresPerTenth,
            record.length * kMicrometresPerTenth, true};
}

}  // namespace

std::string DescribeMillimetres(LONG micrometres) {
    std::string text = std::to_string(micrometres / kMicrometresPerMillimetre);
    LONG rest = micrometres % kMicrometresPerMillimetre;
    if (rest == 0) return text;
    std::string digits = std::to_string(kMicrometresPerMillimetre + rest).substr(1);
    while (digits.ends_with('0')) digits.pop_back();
    return text + '.' + digits;
}

std::string DescribeSize(LONG width, LONG length) {
    return DescribeMillimetres(width) + " x " + DescribeMillimetres(length) + " mm";
}

std::string SelectedPaper::Describe() const {
    if (width <= 0 || length <= 0) return name;
    return (name.empty() ? "custom size" : name) + ", " + DescribeSize(width, length);
}

PrinterPapers::PrinterPapers(HANDLE printer)
    : records_(MsCachedDeviceCapabilities(nullptr).GetPaperDatabaseCachedDeviceCapabilitiesVector(printer)) {}

SelectedPaper PrinterPapers::Select(const DEVMODEW& devmode) const {
    const auto find = [this](const auto& matches) {
        const auto record = std::find_if(records_.begin(), records_.end(), matches);
        return record == records_.end() ? nullptr : &*record;
    };
    const bool hasNumber = (devmode.dmFields & DM_PAPERSIZE) != 0;
    if (hasNumber && devmode.dmPaperSize != DMPAPER_USER) {
        // Tabloid's own number stands for 11 x 17 inches, as the driver takes it.
        const WORD number =
            static_cast<WORD>(devmode.dmPaperSize == DMPAPER_TABLOID ? DMPAPER_11X17 : devmode.dmPaperSize);
        const _tag_FormsInfoRec* record =
            find([=](const _tag_FormsInfoRec& candidate) { return candidate.msPaperId == number; });
        if (record) return FromRecord(*record);
        return {"paper number " + std::to_string(number), devmode.dmPaperWidth * kMicrometresPerTenth,
                devmode.dmPaperLength * kMicrometresPerTenth, false};
    }
    if (!hasNumber && (devmode.dmFields & DM_FORMNAME) != 0)
        return {GetDevmodeText(devmode, GetDevmodeField("dmFormName")), 0, 0, false};
    const LONG shorter = std::min(devmode.dmPaperWidth, devmode.dmPaperLength);
    const LONG longer = std::max(devmode.dmPaperWidth, devmode.dmPaperLength);
    const _tag_FormsInfoRec* record = find([=](const _tag_FormsInfoRec& candidate) {
        return candidate.msPaperId != DMPAPER_USER && candidate.width == shorter && candidate.length == longer;
    });
    if (record) return FromRecord(*record);
    return {std::string(), shorter * kMicrometresPerTenth, longer * kMicrometresPerTenth, false};
}
