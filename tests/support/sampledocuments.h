// Documents as other software writes them: each one in tests/documents has a peculiarity of its own; a folder of real
// ones may lie beside the checkout.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

// Each of these names a folder.
inline const std::string kOwnDocuments = "tests/documents";
inline const std::string kRealDocuments = "../shared/documents";

// The folder's XML files whose names start so, by name; empty when the folder is not there.
std::vector<std::filesystem::path> ListSampleDocuments(const std::string& folder, const std::string& start = "");

// At the start of a test of the documents: skips it where they are absent, and fails it where the project's own are.
#define REQUIRE_SAMPLE_DOCUMENTS(folder, documents)                                                    \
    if ((documents).empty() && (folder) == kRealDocuments) GTEST_SKIP() << "there is no " << (folder); \
    ASSERT_FALSE((documents).empty()) << "there are no documents in " << (folder)
