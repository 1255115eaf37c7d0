// Why a setting of a DEVMODE or a ticket is what it became.
#pragma once

#include "explanation.h"
#include "printerfacts.h"

// Each operation throws what the session's conversions throw.

// A conversion with its explanation: the DEVMODE's ticket, made of the core driver's document where one is given.
struct ExplainedTicket {
    PrintSession::Document ticket;
    Explanation explanation;
};
ExplainedTicket ConvertAndExplain(PrinterFacts& printer, const DevmodeBuffer& devmode,
                                  PrintSession::Document coreTicket);
// Applies the ticket to the DEVMODE and explains what became of it.
Explanation ApplyAndExplain(PrinterFacts& printer, IXMLDOMDocument2* ticket, DevmodeBuffer& devmode);

// Whether the DEVMODE and the ticket agree.
Explanation ExplainAgreement(PrinterFacts& printer, const DevmodeBuffer& devmode, const SchemaSettings& ticket);
