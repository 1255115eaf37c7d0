// What the host asks of the system it runs on; the one place where the two hosts differ.
#pragma once

#include <pathtext.h>

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The arguments behind the program's name, as UTF-8; also makes the standard streams carry bytes as they are.
std::vector<std::string> GetProgramArguments(int argc, char** argv);
// Whether the stream is the program's standard error and shows on a terminal.
bool IsTerminal(const std::ostream& stream);
// The variable's text as UTF-8; nothing when it is unset or empty.
std::optional<std::string> GetEnvironment(const char* name);
// The folder of the running program.
std::filesystem::path GetProgramFolder();
// The folder of the driver's files: that of the loaded mvprodC0.dll, in whatever program this is.
std::filesystem::path GetDriverFolder();
// What of the driver's code is linked into this program looks for the driver's other libraries in that folder from then
// on, and not beside the program. It must be there until the process ends.
void UseDriverFolder();
// The folders of a list as the environment has them: between colons, on Windows semicolons; empty ones count for
// nothing.
std::vector<std::filesystem::path> SplitPathList(std::string_view list);
// The folder where programs keep the user's own settings; nothing when the environment names none.
std::optional<std::filesystem::path> GetUserSettingsFolder();
// The folder where programs keep the user's own data; nothing when the environment names none.
std::optional<std::filesystem::path> GetUserDataFolder();
// A new, empty folder for temporary files, named from the prefix. Throws OperationError when it cannot be made.
std::filesystem::path MakeTemporaryFolder(const std::string& prefix);
