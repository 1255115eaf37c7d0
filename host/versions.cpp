// What --version prints.
#include "versions.h"

#include <kitversion.h>
#include <products/reader/productdescription.h>

#include <subsystem/fileversion.h>
#include <subsystem/hostplatform.h>
#include <subsystem/providerlibrary.h>

std::string DescribeVersions() {
    std::string text = "mvpthost " MV_KIT_VERSION " (" MV_KIT_DATE ")\n";
    std::vector<const char*> files = {kComponent, kOwnPlugin, "mvprodC0.dll", "mvutilC0.dll", "mvcoreC0.dll"};
    files.insert(files.end(), kWorkflowLibraries.begin(), kWorkflowLibraries.end());
    for (const char* name : files) {
        const std::filesystem::path file = GetDriverFolder() / name;
        std::error_code error;
        text.append(name).append(" ").append(
            ReadFileVersion(file).value_or(std::filesystem::exists(file, error) ? "carries no version" : "is missing"));
        text += '\n';
    }
    return text;
}
