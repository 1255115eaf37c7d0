// CheckRunner: runs checks, each in a child process of its own, several at once.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "checkreport.h"

struct CheckRun {
    std::vector<std::string> arguments;  // of the child, before the check's own
    std::vector<Check> checks;
    unsigned seconds = 10;       // without a step after which a child counts as hanging
    std::filesystem::path keep;  // where inputs are kept that show a failure
    std::string subject;         // in the names of those files
};

// The options by which a child is given its check, the file of its note and that of its result.
inline constexpr const char* kChildOption = "--child";
inline constexpr const char* kNoteOption = "--note";
inline constexpr const char* kResultOption = "--result";

// The reports in the order of the checks; each is handed to the function in this order as soon as it is there. Throws
// InputError when no child could make its bench.
std::vector<CheckReport> RunChecks(const CheckRun& run, const std::function<void(const CheckReport&)>& finished);
