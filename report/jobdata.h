// What becomes of a job, as data for the page.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <subsystem/explain/printerfacts.h>

// The explained settings: those that are not kept, lost and ignored ones first, then the kept ones, with how many there
// are of each verdict.
nlohmann::ordered_json DescribeVerdicts(Explanation explanation);

// The sheet as the DEVMODE's settings bring it out. Throws what the session throws.
nlohmann::ordered_json DrawSheet(PrinterFacts& printer, const DEVMODEW& devmode);
