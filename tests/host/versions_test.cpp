// What the host says of itself and of the driver's files.
#include "hostrun.h"

#include <kitversion.h>
#include <subsystem/fileversion.h>

namespace {

class VersionsTest : public HostRun {};

TEST_F(VersionsTest, EveryFileOfTheDriverCarriesTheKitsVersion) {
    std::istringstream lines(Do({"--version"}));
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_NE((line + " ").find(" " MV_KIT_VERSION " "), std::string::npos) << line;
    EXPECT_EQ(count, 9);
    EXPECT_FALSE(ReadFileVersion(PathFromUtf8(Write("none.dll", "MZ of another maker"))));
    EXPECT_FALSE(ReadFileVersion(PathFromUtf8(File("missing.dll"))));
}

}  // namespace
