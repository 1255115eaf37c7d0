// The lists of documents for tests.
#include <support/sampledocuments.h>

#include <algorithm>

std::vector<std::filesystem::path> ListSampleDocuments(const std::string& folder, const std::string& start) {
    std::vector<std::filesystem::path> files;
    std::error_code absent;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(MV_SOURCE_FOLDER) / folder, absent))
        if (entry.path().extension() == ".xml" && entry.path().filename().string().starts_with(start))
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}
