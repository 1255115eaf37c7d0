// The manual: its examples work, and it has every command.
#include "hostrun.h"

#include <manual/manualtexts.h>

#include <fstream>

namespace {

class ManualTest : public HostRun {
protected:
    ManualTest() { std::filesystem::current_path(PathFromUtf8(File(""))); }
    ~ManualTest() override { std::filesystem::current_path(before_); }

private:
    std::filesystem::path before_ = std::filesystem::current_path();
};

TEST_F(ManualTest, ItsExamplesWorkOneAfterTheOther) {
    for (const manual::Entry& example : manual::kExamples) {
        std::istringstream words(example.name);
        const Outcome outcome = Run({std::istream_iterator<std::string>(words), {}});
        EXPECT_EQ(outcome.status, 0) << example.name << '\n' << outcome.err;
    }
    EXPECT_TRUE(Exists("tickets/back.xml"));
    EXPECT_TRUE(Exists("job.html"));
}

TEST_F(ManualTest, HasEveryCommandAndEscapesWhatIsMoreThanText) {
    const std::string page = Do({"manual"});
    for (const char* part :
         {".SS printer customsize add\n", ".SS product pack\n", "\\fB\\-\\-to\\fR \\fIticket|devmode|",
          ".TP\n\\fB\\-\\-printer\\fR \\fIPRINTER\\fR\n", "\\(dqDefault DevMode\\(dq", "\\(ti/.config"})
        EXPECT_NE(page.find(part), std::string::npos) << part;
    EXPECT_EQ(page.find(".SS complete\n"), std::string::npos) << "it is hidden";
}

}  // namespace
