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

void PrinterFacts::AddMissingLibrary(Explanation& rows) const {
    if (session_.HasWorkflowLibrary()) return;
    rows.push_back(
        {"Workflow library", GetProduct().workflowLibrary, std::string(), Verdict::Lost,
         "the printer's workflow library cannot be loaded: without it the component has no product texts and "
         "leaves out what depends on the controller family; put the library beside the component"});
}

DevmodeBuffer PrinterFacts::MakeDefaultDevmode() const {
    return MakeDevmode(GetProduct(), session_.GetPrinter().GetName().AsWideString(), {});
}

SchemaSettings PrinterFacts::MakeTicketSettings(DevmodeBuffer devmode) const {
    return SchemaSettings(session_.MakeTicket(devmode).Get());
}
