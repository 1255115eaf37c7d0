// Whether a DEVMODE and a ticket agree.
#include <subsystem/driverdata.h>
#include "blockrows.h"
#include "explain.h"
#include "featurereasons.h"

namespace {

bool IsDriverData(const SchemaSetting& setting) {
    return setting.name.isPrivate && setting.name.local == facts::kDriverDataParameter;
}

// A setting of the ticket under a name that the DEVMODE's own ticket does not have.
SettingVerdict JudgeTicketSetting(const SchemaSetting& setting, const AppliedTicket& applied) {
    const SchemaSetting* twin = FindCounterpart(setting, applied.made);
    SettingVerdict row{NameSetting(setting), twin ? DescribeSetting(*twin) : "", DescribeSetting(setting),
                       Verdict::Ignored, std::string()};
    if (twin) {
        const bool agree = SettingsAgree(setting, *twin);
        row.verdict = agree ? Verdict::Kept : Verdict::Changed;
        row.reason =
            agree ? "the DEVMODE and the ticket say the same" : "the DEVMODE and the ticket contradict each other";
    } else if (setting.kind == SchemaSetting::Kind::Parameter && setting.isReferenced) {
        row.verdict = Verdict::Changed;
        row.reason = "it belongs to the ticket's paper size, and the DEVMODE has another one";
    } else if (setting.kind == SchemaSetting::Kind::Feature) {
        row.reason = JudgeFeature(setting, nullptr, applied).reason;
    } else {
        row.reason = JudgeUnknownName(setting).reason;
    }
    return row;
}

}  // namespace

// The DEVMODE is taken as the ticket that it gives, so that both sides speak of the same names.
Explanation ExplainAgreement(PrinterFacts& printer, const DevmodeBuffer& devmode, const SchemaSettings& ticket) {
    const ExplainedTicket own = ConvertAndExplain(printer, devmode, nullptr);
    const SchemaSettings made(own.ticket.Get());
    Explanation rows;
    // What no ticket of this DEVMODE can say, no ticket agrees with.
    for (const SettingVerdict& row : own.explanation)
        if (row.verdict == Verdict::Lost) rows.push_back(row);
    for (const SchemaSetting& setting : made.GetAll()) {
        if (IsDriverData(setting)) continue;
        const SchemaSetting* other = FindCounterpart(setting, ticket);
        SettingVerdict row{NameSetting(setting), DescribeSetting(setting), other ? DescribeSetting(*other) : "",
                           Verdict::Kept, "the DEVMODE and the ticket say the same"};
        if (!other) {
            row.verdict = Verdict::Lost;
            row.reason = "the DEVMODE says it, and the ticket does not";
        } else if (!SettingsAgree(setting, *other)) {
            row.verdict = Verdict::Changed;
            row.reason = "the DEVMODE and the ticket contradict each other";
        }
        rows.push_back(std::move(row));
    }
    const AppliedTicket applied(ticket, made, devmode, printer);
    for (const SchemaSetting& setting : ticket.GetAll())
        if (!IsDriverData(setting) && !made.Find(setting.GetKey()))
            rows.push_back(JudgeTicketSetting(setting, applied));

    const BYTE* block = FindBlock(devmode);
    if (!block || !FindBlockFault(block).empty()) return rows;
    const SchemaSetting* data = ticket.FindPrivate(SchemaSetting::Kind::Parameter, facts::kDriverDataParameter);
    const DriverData driverData = data ? DecodeDriverData(data->text) : DriverData{"the ticket carries none", {}};
    if (!driverData.fault.empty()) {
        rows.push_back({"Driver data", "the private block", std::string(), Verdict::Lost, driverData.fault});
    } else {
        AddBlockRows(block, driverData.block.data(),
                     {"the private block and the ticket's driver data say the same", Verdict::Changed,
                      "the private block and the ticket's driver data contradict each other",
                      "the ticket's driver data says it, and the private block does not"},
                     printer, rows);
    }
    return rows;
}
