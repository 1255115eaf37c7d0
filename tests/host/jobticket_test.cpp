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
    make("78=Caf\xC3\xA9 & Bar", "477/210/175=6890");
    const std::string text = Do(command);
    EXPECT_TRUE(text.starts_with("%MVNbegin: 001.0300\n%MVNtitle: Caf\xC3\xA9 & Bar\n")) << text;
    EXPECT_NE(text.find("\n%MVNpaperType-preFinish: Preprinted 0 0\n"), std::string::npos) << text;

    make("286=false", "144=6254");
    const Outcome none = Run(command);
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.out, "");
    EXPECT_NE(none.err.find("286=true"), std::string::npos) << none.err;
}

TEST_F(JobTicketRun, APrintedJobIsRememberedForTheUsersNextOne) {
    Do({"printer", "add", "Press", "--product", "press8434"});
    const std::vector<std::string> ask = {"job", "preferences", "--printer", "Press"};
    EXPECT_TRUE(Do(ask).starts_with("PIN: none\n")) << Do(ask);
    Do({"devmode", "new", "--printer", "Press", "-o", File("d.bin"), "--attribute", "42=271828"});
    Do({"job", "printed", "--printer", "Press", "--devmode", File("d.bin")});
    EXPECT_TRUE(Do(ask).starts_with("PIN: 6 characters, not shown\n")) << Do(ask);
}

}  // namespace
