// The command that prints a job ticket.
#include "hostrun.h"

namespace {

using JobTicketRun = HostRun;

TEST_F(JobTicketRun, PrintsTheTextAloneOrSaysWhyThereIsNone) {
    Do({"printer", "add", "Press", "--product", "press8434"});
    const auto make = [&](const std::string& setting, const std::string& another) {
        Do({"devmode", "new", "--printer", "Press", "-o", File("d.bin"), "--attribute", setting, "--attribute",
            another});
    };
    const std::vector<std::string> command = {"jobticket", "--printer", "Press", "--devmode", File("d.bin")};
    make("78=Caf\xC3\xA9 & Bar", "144=6254");
    const std::string text = Do(command);
    EXPECT_TRUE(text.starts_with("%MVNbegin: 001.0300\n%MVNtitle: Caf\xC3\xA9 & Bar\n")) << text;
    EXPECT_NE(text.find("\n%MVNedgeStitching: SinglePortrait\n"), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with("%MVNpaperType-weight: 90\n")) << text;

    make("286=false", "144=6254");
    const Outcome none = Run(command);
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.out, "");
    EXPECT_NE(none.err.find("286=true"), std::string::npos) << none.err;

    make("146=6320", "208/145=6310");
    EXPECT_NE(Do(command).find("%MVNoutputLocation: FinishingBypass Stacker\n"), std::string::npos);
}

}  // namespace
