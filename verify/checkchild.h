// The child's side of a check: it runs in a process of its own and leaves its result in a file.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "checkreport.h"
#include "testbench.h"

// How the function of a check ended. Nothing could be tried when the bench itself could not be made: then there is only
// the sentence that says why.
struct ChildResult {
    bool hasBench = true;
    CheckOutcome outcome = CheckOutcome::Passed;
    std::string found;
    std::vector<std::string> notes;
};

// Runs the check of that name over the bench that the function makes, and writes the result to the file. Throws
// InputError when there is no such check.
void RunCheckHere(const std::string& name, const std::function<TestBench()>& makeBench,
                  const std::filesystem::path& resultFile);

// Nothing when the child left none.
std::optional<ChildResult> ReadChildResult(const std::filesystem::path& resultFile);
