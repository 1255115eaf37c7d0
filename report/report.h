// A page that shows what a printer offers and, of a job, what becomes of it: one HTML file, without scripts, that
// fetches nothing.
#pragma once

#include <optional>
#include <string>

#include <subsystem/explain/printerfacts.h>

// A job: its settings as explained, and the DEVMODE that they end as.
struct ReportedJob {
    Explanation explanation;
    DEVMODEW devmode;  // the public part
};

// Of the printer that the facts are of; the title names it, the name its product. UTF-8. Throws what the session
// throws.
std::string MakeReport(PrinterFacts& printer, const std::string& title, const std::string& product,
                       const std::optional<ReportedJob>& job);
