// What is wrong with a product: its files, and what the component makes of them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "printsession.h"

// Where a product states margins: the kind of path of its margin file, else the settings for all papers, in hundredths
// of a millimetre: left, right, top, bottom.
inline constexpr int kMarginFile = 15;
inline constexpr DWORD kMarginSettings[] = {422, 423, 424, 425};

// Each "FILE:LINE: sentence", UTF-8, in the order in which they are found; empty when there are none.
using ProductFaults = std::vector<std::string>;

// The product file and the files that it names: all that its reader refuses, texts that no string table has, papers
// without a margin, lines of the margin file that are none. The rest is looked at once the reader refuses nothing.
ProductFaults CheckProductFiles(const std::filesystem::path& file);

// Papers that a PrintTicket cannot select: what the session's printer makes of each of its product's papers is applied
// to its default DEVMODE and has to give the paper again, or a custom size where the paper is the product's own. Throws
// what the session throws.
ProductFaults CheckProductPapers(const PrintSession& session);
