// Drawings of papers, as data for the page.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <subsystem/explain/printerfacts.h>

// The printer's papers in groups of families, each with the drawings of its papers: those of the product, by name and
// family, and the user's own forms and custom sizes. The papers are an array as DescribeProduct makes it. Throws what
// the session throws.
nlohmann::ordered_json DrawPapers(PrinterFacts& printer, const nlohmann::ordered_json& papers);
