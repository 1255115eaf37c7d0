// What the driver family does for the user when a job is printed: remembering the job's preferences for the next one.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "devmodefile.h"
#include "installedprinter.h"

// Plays the end of a job that was printed with that DEVMODE. Throws OperationError when the printer's driver has no
// workflow library, else what the maker's libraries throw.
void EndPrintedJob(const InstalledPrinter& printer, DevmodeBuffer& devmode);

// The user's preferences that the printer's next job starts with: feature and value, ascending by feature. Of a
// protected text its length alone is returned. Throws as above.
std::vector<std::pair<DWORD, std::string>> ReadJobPreferences(const InstalledPrinter& printer);
