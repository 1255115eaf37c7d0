// What becomes of a ticket in a DEVMODE.
#include <subsystem/inputs/devmodeinput.h>

#include <set>

#include <subsystem/driverdata.h>
#include "blockrows.h"
#include "explain.h"
#include "featurereasons.h"

namespace {

constexpr std::size_t kMostFurtherOptions = 10;  // that get a row each

class TicketRows {
public:
    TicketRows(const AppliedTicket& applied, const DevmodeBuffer& devmode) : applied_(applied), devmode_(devmode) {
        for (const SchemaSetting& setting : applied.ticket.GetAll()) parents_.insert(setting.parents);
    }

    Explanation Make() {
        applied_.printer.AddMissingLibrary(rows_);
        for (const SchemaSetting& setting : applied_.ticket.GetAll()) {
            if (!seen_.insert(setting.GetKey()).second) {
                Add(setting, nullptr, {Verdict::Ignored, "it stands in the ticket twice; the first one counts"});
            } else if (setting.kind == SchemaSetting::Kind::Feature) {
                AddFeature(setting);
            } else if (setting.kind == SchemaSetting::Kind::Parameter) {
                AddParameter(setting);
            } else {
                Add(setting, nullptr, {Verdict::Ignored, "a property selects nothing"});
            }
        }
        return std::move(rows_);
    }

private:
    void Add(const SchemaSetting& setting, const SchemaSetting* made, const Judgement& judgement) {
        rows_.push_back({NameSetting(setting), DescribeSetting(setting), made ? DescribeSetting(*made) : "",
                         judgement.verdict, judgement.reason});
    }

    void AddFeature(const SchemaSetting& feature) {
        const SchemaSetting* made = FindCounterpart(feature, applied_.made);
        Add(feature, made, JudgeFeature(feature, made, applied_));
        // A feature that only holds others has no row of its own to lose.
        if (feature.options.empty() && HoldsFeatures(feature)) rows_.pop_back();
        for (std::size_t index = 1; index < feature.options.size(); ++index) {
            const std::size_t left = feature.options.size() - index;
            const bool isLast = index == kMostFurtherOptions && left > 1;
            rows_.push_back(
                {NameSetting(feature),
                 isLast ? std::to_string(left) + " more options" : DescribeOption(feature, feature.options[index]),
                 made ? DescribeSetting(*made) : "", Verdict::Ignored,
                 "a feature selects one option, and the first one counts: " + DescribeSetting(feature)});
            if (isLast) return;
        }
    }

    bool HoldsFeatures(const SchemaSetting& feature) const {
        return parents_.contains(feature.parents + feature.name.local + "/");
    }

    void AddParameter(const SchemaSetting& parameter) {
        if (parameter.name.local == facts::kDriverDataParameter) return AddDriverData(parameter);
        const SchemaSetting* made = FindCounterpart(parameter, applied_.made);
        if (made && SettingsAgree(parameter, *made)) return Add(parameter, made, {Verdict::Kept, TellWhere(parameter)});
        if (made) return Add(parameter, made, JudgeChangedParameter(parameter, *made, applied_));
        if (parameter.isReferenced)
            return Add(parameter, nullptr,
                       {Verdict::Changed,
                        "the paper size that it belongs to became " + TellPaper() + ", which needs no such number"});
        if (const std::optional<DevmodeBuffer> foreign = FindDevmode(DecodeBase64(parameter.text)))
            return Add(parameter, nullptr,
                       {Verdict::Lost,
                        "it holds " + DescribeForeignDevmode(*foreign) + " settings, which only that driver can read"});
        if (parameter.name.isPrivate && parameter.name.local == facts::kJobTicketParameter)
            return Add(parameter, nullptr,
                       {Verdict::Ignored, "the settings give no job ticket here, and a ticket's own is never read"});
        Judgement judgement = JudgeUnknownName(parameter);
        if (applied_.printer.GetOffered().Find(parameter.GetKey()))
            judgement.reason = "no scored property of the ticket refers to it";
        Add(parameter, nullptr, judgement);
    }

    static std::string TellWhere(const SchemaSetting& parameter) {
        if (parameter.name.local == facts::kJobTicketParameter) return "the settings give the same job ticket";
        return parameter.isReferenced ? "in the paper's size" : "in dmCopies";
    }

    std::string TellPaper() const {
        const SchemaSetting* paper = applied_.made.FindKeyword(SchemaSetting::Kind::Feature, kMediaSizeKeyword);
        return paper ? DescribeSetting(*paper) : "none";
    }

    // The driver data as a whole, then each setting in it.
    void AddDriverData(const SchemaSetting& parameter) {
        const auto lose = [&](const std::string& reason) { Add(parameter, nullptr, {Verdict::Lost, reason}); };
        if (!parameter.name.isPrivate)
            return lose("the name is the driver's, and its prefix stands for another namespace" +
                        (parameter.name.uri.empty() ? std::string() : " (" + parameter.name.uri + ")"));
        const DriverData data = DecodeDriverData(parameter.text);
        if (data.block.empty()) return lose(data.fault + "; the DEVMODE keeps its own settings");
        const BYTE* block = FindBlock(devmode_);
        if (!block) return lose("the DEVMODE has no private block that could take it: another driver made it");
        if (!data.fault.empty()) return lose(data.fault);
        Add(parameter, nullptr, {Verdict::Kept, "restored whole into the private block"});
        AddBlockRows(
            data.block.data(), block,
            {"restored with the driver data", Verdict::Overruled,
             "the driver data was restored first; a feature of the ticket, read after it, replaced the setting"},
            applied_.printer, rows_);
    }

    const AppliedTicket applied_;
    const DevmodeBuffer& devmode_;
    std::set<std::string> seen_, parents_;
    Explanation rows_;
};

}  // namespace

Explanation ApplyAndExplain(PrinterFacts& printer, IXMLDOMDocument2* ticket, DevmodeBuffer& devmode) {
    const PrintSession& session = printer.GetSession();
    session.DeclareNamespaces(ticket);
    const SchemaSettings settings(ticket);
    const DevmodeBuffer before = devmode;
    session.ApplyTicket(ticket, devmode);
    const SchemaSettings made = printer.MakeTicketSettings(devmode);
    return TicketRows({settings, made, before, printer}, devmode).Make();
}
