// Why a setting of a DEVMODE or a ticket is what it became.
#pragma once

#include "explanation.h"
#include "printerfacts.h"

// A conversion with its explanation: the DEVMODE's ticket, made of the core driver's document where one is given.
struct ExplainedTicket {
    PrintSession::Document ticket;
    Explanation explanation;
};
ExplainedTicket ConvertAndExplain(PrinterFacts& printer, const DevmodeBuffer& devmode,
                                  PrintSession::Document coreTicket);
// Applies the ticket to the DEVMODE and explains what became of it.
Explanation ApplyAndExplain(PrinterFacts& printer, IXMLDOMDocument2* ticket, DevmodeBuffer& devmode);

// What becomes of the DEVMODE in the ticket that the printer's session made of it; of the core driver's ticket as it
// was before, too, where one was given. Each operation throws what the session's conversions throw.
Explanation ExplainDevmode(PrinterFacts& printer, const DevmodeBuffer& devmode, IXMLDOMDocument2* ticket,
                           const SchemaSettings* coreTicket = nullptr);

// What becomes of the ticket in a DEVMODE: the settings of the ticket as it was before it was applied, the DEVMODE
// before and after.
Explanation ExplainTicket(PrinterFacts& printer, const SchemaSettings& ticket, const DevmodeBuffer& before,
                          const DevmodeBuffer& after);

// Whether the DEVMODE and the ticket agree.
Explanation ExplainAgreement(PrinterFacts& printer, const DevmodeBuffer& devmode, const SchemaSettings& ticket);
