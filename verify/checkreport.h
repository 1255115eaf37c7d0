// CheckReport: how a check ended, and the forms in which that is handed on.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "check.h"

enum class CheckOutcome { Passed, Failed, NotApplicable };

// "passed", "failed", "not applicable".
const char* NameOfOutcome(CheckOutcome outcome);

struct CheckReport {
    Check check;
    CheckOutcome outcome = CheckOutcome::Passed;
    std::string found;               // where it failed; where it is not applicable, the reason
    std::string input;               // where it failed: a file with the input that shows it, else what was being done
    std::vector<std::string> notes;  // what was measured
    double seconds = 0;
};

// All checks of one printer.
struct VerifiedPrinter {
    std::string name;  // the product's or the printer's
    std::vector<CheckReport> reports;
};

// A line each, with what was found under it, and the counts.
void PrintReport(const CheckReport& report, std::ostream& out);
void PrintCounts(const VerifiedPrinter& printer, std::ostream& out);

// A JSON array of objects with the keys group, name, outcome, what and, where it failed, found and input; of several
// printers, the key printer too.
std::string FormatAsJson(const std::vector<VerifiedPrinter>& printers);
// JUnit's XML: a suite for each printer.
std::string FormatAsJunit(const std::vector<VerifiedPrinter>& printers);
