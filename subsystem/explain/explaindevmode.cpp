// What becomes of a DEVMODE in a ticket.
#include <subsystem/devmodefields.h>
#include <subsystem/xmlfile.h>

#include <subsystem/driverdata.h>
#include "blockrows.h"
#include "devmodesettings.h"
#include "explain.h"
#include "featurereasons.h"

namespace {

class DevmodeRows {
public:
    DevmodeRows(PrinterFacts& printer, const DevmodeBuffer& devmode, IXMLDOMDocument2* ticket)
        : printer_(printer),
          devmode_(devmode),
          ticket_(ticket),
          fields_(devmode.CopyPublicPart()),
          readBack_(printer.MakeDefaultDevmode()) {
        printer_.GetSession().ApplyTicket(ticket, readBack_);
    }

    Explanation Make(const SchemaSettings& coreTicket) {
        printer_.AddMissingLibrary(rows_);
        for (const DevmodeSettingKind& kind : GetDevmodeSettingKinds()) AddPublicRow(kind);
        AddDriverRows();
        if (const SchemaSetting* job = ticket_.FindPrivate(SchemaSetting::Kind::Parameter, facts::kJobTicketParameter))
            rows_.push_back({NameSetting(*job), std::string(), DescribeSetting(*job), Verdict::Kept,
                             "made of the settings and put into the ticket"});
        AddCoreTicketRows(coreTicket);
        return std::move(rows_);
    }

private:
    std::string Describe(const DEVMODEW& devmode, const DevmodeSettingKind& kind) const {
        return DescribeDevmodeSetting(devmode, kind, printer_.GetPapers(), printer_.GetProduct());
    }

    const SchemaSetting* FindCarrier(const SchemaSettings& ticket, const DevmodeSettingKind& kind) const {
        if (!kind.carrier) return nullptr;
        using enum SchemaSetting::Kind;
        for (const SchemaSetting* carrier :
             {ticket.FindKeyword(Feature, kind.carrier), ticket.FindKeyword(Parameter, kind.carrier),
              ticket.FindPrivate(Parameter, kind.carrier)})
            if (carrier) return carrier;
        return nullptr;
    }

    void AddPublicRow(const DevmodeSettingKind& kind) {
        SettingVerdict row{kind.name, Describe(fields_, kind), Describe(readBack_.CopyPublicPart(), kind),
                           Verdict::Kept, std::string()};
        if (row.before.empty()) return;
        const SchemaSetting* carrier = FindCarrier(ticket_, kind);
        if (row.before == row.after) {
            row.reason = carrier ? "the ticket says " + carrier->name.local + ' ' + DescribeSetting(*carrier)
                                 : std::string("the driver's default, which the ticket need not tell");
        } else if (!carrier) {
            row.verdict = Verdict::Lost;
            row.reason = kind.carrier ? std::string("this printer's tickets hold no ") + kind.carrier
                                      : std::string("no feature of this printer's tickets carries ") + kind.field;
        } else {
            row.verdict = Verdict::Changed;
            row.reason = ExplainChange(kind, *carrier);
            if (IsUnknownPaper(kind)) row.verdict = Verdict::Lost;
        }
        rows_.push_back(std::move(row));
    }

    // A paper that the printer does not have, and for which the DEVMODE states no size.
    bool IsUnknownPaper(const DevmodeSettingKind& kind) const {
        const SelectedPaper paper = printer_.GetPapers().Select(fields_);
        return std::string_view(kind.field) == "dmPaperSize" && !paper.isListed &&
               (paper.width < 1 || paper.length < 1);
    }

    std::string ExplainChange(const DevmodeSettingKind& kind, const SchemaSetting& carrier) const {
        const std::string says = std::string("; the ticket says ") + kind.carrier + ' ' + DescribeSetting(carrier);
        if (IsUnknownPaper(kind)) return "this printer has no such paper, and the DEVMODE tells no size of it" + says;
        if (carrier.name.local == kMediaSizeKeyword) {
            const SelectedPaper wanted = printer_.GetPapers().Select(fields_);
            const SelectedPaper found = printer_.GetPapers().Select(readBack_.CopyPublicPart());
            if (!wanted.isListed && (wanted.width != found.width || wanted.length != found.length))
                return "this printer has no such paper, and took this one for it" + says;
            if (!wanted.isListed)
                return (found.isListed ? "this printer has no such paper; another paper of its size was taken"
                                       : "a custom size, since this printer does not list it") +
                       says;
            if (wanted.width == found.width && wanted.length == found.length)
                return "another paper of the same size" + says;
            return "this printer's papers do not hold it as the DEVMODE tells it" + says;
        }
        if (carrier.name.local == "PageResolution" && fields_.dmPrintQuality <= 0)
            return "a quality without a number: the printer's own resolution was taken" + says;
        return "a ticket cannot hold the number " +
               std::to_string(GetDevmodeNumber(fields_, GetDevmodeField(kind.field))) + " in " + kind.field + says;
    }

    void AddDriverRows() {
        const BYTE* block = FindBlock(devmode_);
        if (!block) {
            if (devmode_.GetExtraBytes() != 0)
                rows_.push_back({"Driver data", DescribeForeignDevmode(devmode_), std::string(), Verdict::Lost,
                                 "the DEVMODE has no private block of this driver: another driver made it, and what it "
                                 "kept there cannot be read"});
            return;
        }
        const SchemaSetting* data = ticket_.FindPrivate(SchemaSetting::Kind::Parameter, facts::kDriverDataParameter);
        const std::string fault = FindBlockFault(block);
        if (!fault.empty() || !data) {
            rows_.push_back({"Driver data", "the private block", std::string(), Verdict::Lost,
                             fault.empty() ? "the ticket carries no driver data; its report tells why" : fault});
            return;
        }
        rows_.push_back({NameSetting(*data), "the private block", std::string(), Verdict::Kept,
                         "whole in " + data->name.text + ", " + std::to_string(data->text.size()) + " characters"});
        AddBlockRows(block, FindBlock(readBack_),
                     {"in the driver data of the ticket", Verdict::Overruled,
                      "the driver data holds it, and a feature of the ticket that is read after it says otherwise"},
                     printer_, rows_);
    }

    // Settings of the core driver's ticket that the component replaced or took out.
    void AddCoreTicketRows(const SchemaSettings& coreTicket) {
        for (const SchemaSetting& setting : coreTicket.GetAll()) {
            const SchemaSetting* made = FindCounterpart(setting, ticket_);
            SettingVerdict row{NameSetting(setting), DescribeSetting(setting), made ? DescribeSetting(*made) : "",
                               Verdict::Overruled, "the core driver's ticket said so; the DEVMODE says otherwise"};
            if (made && SettingsAgree(setting, *made)) continue;
            if (!made && setting.kind == SchemaSetting::Kind::Parameter) {
                row.verdict = Verdict::Lost;
                row.reason =
                    "the core driver's ticket held it, and no scored property refers to it any more: parameters "
                    "that nothing refers to go when the paper size is replaced";
            } else if (!made) {
                row.verdict = Verdict::Lost;
                row.reason = "the core driver's ticket held it, and this printer's tickets do not";
            }
            rows_.push_back(std::move(row));
        }
    }

    PrinterFacts& printer_;
    const DevmodeBuffer& devmode_;
    const SchemaSettings ticket_;
    const DEVMODEW fields_;
    DevmodeBuffer readBack_;
    Explanation rows_;
};

}  // namespace

ExplainedTicket ConvertAndExplain(PrinterFacts& printer, const DevmodeBuffer& devmode,
                                  PrintSession::Document coreTicket) {
    const PrintSession& session = printer.GetSession();
    DevmodeBuffer converted = devmode;
    SchemaSettings coreSettings;
    if (coreTicket) {
        session.DeclareNamespaces(coreTicket.Get());
        coreSettings = SchemaSettings(coreTicket.Get());
    }
    ExplainedTicket result;
    result.ticket = session.MakeTicket(converted, std::move(coreTicket));
    // Applying a ticket may touch it, so it is a copy that is read back.
    const PrintSession::Document copy = ReadDocumentBytes(FormatDocument(result.ticket.Get()), "the ticket");
    result.explanation = DevmodeRows(printer, devmode, copy.Get()).Make(coreSettings);
    return result;
}
