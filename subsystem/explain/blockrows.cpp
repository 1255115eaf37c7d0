// Rows about the driver's own settings.
#include "blockrows.h"

#include <privateblock.h>
#include <subsystem/devmodefields.h>
#include <subsystem/driversettings.h>
#include <subsystem/settingnames.h>
#include <xdevmode.h>

#include <algorithm>

namespace {

// Whether user or driver chose an option is no part of its value.
bool HasSameValue(const DriverSetting& a, const DriverSetting& b) {
    using Kind = AttributeBytesValue::Kind;
    if (a.value.GetKind() == Kind::Option && b.value.GetKind() == Kind::Option)
        return a.value.GetOption() == b.value.GetOption();
    if (a.value.GetKind() == Kind::NewOption && b.value.GetKind() == Kind::NewOption)
        return a.value.GetText() == b.value.GetText();
    return a.value == b.value;
}

using Settings = std::vector<DriverSetting>;

const DriverSetting* FindPath(const Settings& settings, const std::string& path) {
    const auto found = std::find_if(settings.begin(), settings.end(),
                                    [&](const DriverSetting& setting) { return setting.path == path; });
    return found == settings.end() ? nullptr : &*found;
}

std::string NameRow(const DriverSetting& setting) { return NameFeature(setting.feature) + " (driver setting)"; }

}  // namespace

const BYTE* FindBlock(const DevmodeBuffer& devmode) {
    // The search only reads.
    return XDevmode::GetOemDevmodeFromDevmode(const_cast<DevmodeBuffer&>(devmode).Get());
}

std::string DescribeForeignDevmode(const DevmodeBuffer& devmode) {
    return "'" + GetDevmodeText(devmode.CopyPublicPart(), GetDevmodeField("dmDeviceName")) + "' with " +
           std::to_string(devmode.GetExtraBytes()) + " bytes of another driver's";
}

void AddBlockRows(const BYTE* before, const BYTE* after, const BlockReasons& reasons, const PrinterFacts& printer,
                  Explanation& rows) {
    const Settings settings = ReadDriverSettings(before);
    const Settings results = after ? ReadDriverSettings(after) : Settings();
    const ProductDescription& product = printer.GetProduct();
    for (const DriverSetting& setting : settings) {
        const DriverSetting* result = FindPath(results, setting.path);
        SettingVerdict row{NameRow(setting), DescribeDriverValue(setting, product), std::string(), Verdict::Lost,
                           "the DEVMODE's private block has no such setting any more"};
        if (result) {
            row.after = DescribeDriverValue(*result, product);
            const bool same = HasSameValue(setting, *result);
            row.verdict = same ? Verdict::Kept : reasons.difference;
            row.reason = same ? reasons.same : reasons.differs;
        }
        rows.push_back(std::move(row));
    }
    for (const DriverSetting& result : results)
        if (!reasons.onlyAfter.empty() && !FindPath(settings, result.path))
            rows.push_back({NameRow(result), std::string(), DescribeDriverValue(result, product), reasons.difference,
                            reasons.onlyAfter});
}
