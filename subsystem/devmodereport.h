// What a DEVMODE holds, written as JSON or as text.
#pragma once

#include <nlohmann/json.hpp>

#include <ostream>

#include "devmodefile.h"

// Public fields by their Windows names, as far as the DEVMODE has them; the private block (null without one) with its
// header, the checksum stored and computed, entries, and attributes by namespace. Nothing in the block is taken on
// trust.
nlohmann::ordered_json DescribeDevmode(DevmodeBuffer& devmode);
// The description for a reader.
void PrintDevmodeDescription(const nlohmann::ordered_json& description, std::ostream& out);
