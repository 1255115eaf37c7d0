// What --version prints.
#pragma once

#include <string>

// A line for the host, and one for each library of the driver beside it, with the version that the file carries.
std::string DescribeVersions();
