// PrinterFacts: what explanations ask of a printer, each thing once.
#include "printerfacts.h"

#include <subsystem/devmodemaker.h>

PrinterFacts::PrinterFacts(const PrintSession& session) : session_(session) {}

const PrinterPapers& PrinterFacts::GetPapers() {
    if (!papers_) papers_.emplace(session_.GetPrinter().GetHandle());
    return *papers_;
}

const SchemaSettings& PrinterFacts::GetOffered() {
    if (!offered_) offered_.emplace(session_.MakeCapabilities().Get());
    return *offered_;
}

DevmodeBuffer PrinterFacts::MakeDefaultDevmode() const {
    return MakeDevmode(GetProduct(), session_.GetPrinter().GetName().AsWideString(), {});
}

SchemaSettings PrinterFacts::MakeTicketSettings(DevmodeBuffer devmode) const {
    return SchemaSettings(session_.MakeTicket(devmode).Get());
}
