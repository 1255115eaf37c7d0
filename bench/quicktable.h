// The quick table: what a reader wants to know first of the conversions' cost, from a few seconds of benchmarks.
#pragma once

#include <iosfwd>

// Runs those of the registered benchmarks that the table needs and prints it: medians of the runs' ratios to libxml2,
// of the gain from a second thread, and the questions that each conversion asks. Returns the program's exit status.
int RunQuickTable(std::ostream& out);
