// A printer of a product in the store in memory, for commands that need none of the user's.
#pragma once

#include <mvutil/cxstring.h>

#include <filesystem>

#include "commands.h"

// Opens the store in memory, with which all other printers go, and installs the product under its model's name,
// complete with its caches. Throws what LoadProduct throws.
CXString InstallThrowawayPrinter(HostContext& context, const std::filesystem::path& productFile);
