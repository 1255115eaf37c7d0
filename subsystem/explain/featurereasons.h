// Why a driver did not take a feature, an option or a parameter of a ticket as it stands there.
#pragma once

#include "explanation.h"
#include "printerfacts.h"
#include "settingwords.h"

struct Judgement {
    Verdict verdict;
    std::string reason;
};

// What a ticket was applied to, and what came of it.
class AppliedTicket {
public:
    AppliedTicket(const SchemaSettings& appliedTicket, const SchemaSettings& madeTicket, const DevmodeBuffer& devmode,
                  PrinterFacts& facts)
        : ticket(appliedTicket), made(madeTicket), before(devmode), printer(facts) {}

    const SchemaSettings& ticket;
    const SchemaSettings& made;   // the ticket that the DEVMODE gives now
    const DevmodeBuffer& before;  // the DEVMODE that it was applied to
    PrinterFacts& printer;

    const SchemaSettings& GetUnchanged() const;  // the ticket that the DEVMODE gave before; made when first needed

private:
    mutable std::optional<SchemaSettings> unchanged_;
};

// The setting of the other ticket that says what this one says; null when there is none. A nested feature is found in
// the root; the core driver's parameter, which goes with a replaced paper size, in the driver's own of that name, and
// that in the core driver's.
const SchemaSetting* FindCounterpart(const SchemaSetting& setting, const SchemaSettings& other);
// A setting whose name the printer's tickets and capabilities do not have.
Judgement JudgeUnknownName(const SchemaSetting& setting);
// A feature that has an option; "made" is what the DEVMODE makes of it, null when that is nothing.
Judgement JudgeFeature(const SchemaSetting& feature, const SchemaSetting* made, const AppliedTicket& applied);
// A parameter of that name in the DEVMODE's ticket says something else.
Judgement JudgeChangedParameter(const SchemaSetting& parameter, const SchemaSetting& made,
                                const AppliedTicket& applied);
