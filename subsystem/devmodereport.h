// What a DEVMODE holds, written as JSON or as text.
#pragma once

#include <iosfwd>
#include <string>

#include "devmodefile.h"

// Public fields by their Windows names, as far as the DEVMODE has them; the private block (null without one) with its
// header, the checksum stored and computed, entries, and attributes by namespace. Nothing in the block is taken on
// trust.
std::string FormatDevmodeAsJson(DevmodeBuffer& devmode);
// The same for a reader.
void PrintDevmodeDescription(DevmodeBuffer& devmode, std::ostream& out);
