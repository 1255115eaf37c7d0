// Commands whose writing fails or is interrupted: the store is as it was, or as the whole command leaves it.
#include <runhost.h>
#include <store.h>
#include <subsystem/hostplatform.h>
#include <subsystem/regfile.h>
#include <subsystem/registryexchange.h>
#include <support/failingvfs.h>
#include <support/temporaryfolder.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;
using Fault = FailingVfs::Fault;

constexpr const char* kChanges =
    "Windows Registry Editor Version 5.00\r\n\r\n"
    "[-HKLM\\Software\\Morvane\\Printer Driver\\Printers]\r\n"
    "[HKLM\\Software\\New\\Newer]\r\n\"a\"=dword:1\r\n\"b\"=\"c\"\r\n";
constexpr int kKilled = -1;

class StoreFaults : public testing::TestWithParam<Arguments> {
protected:
    StoreFaults() {
        folder_.Write("changes.reg", kChanges);
        if (GetParam()[2] == "First") return;  // of a store that is not there yet
        Run({"printer", "add", "A", "--product", "office8430"});
        // Only without its caches, rebuilding them is a change.
        if (GetParam()[0] == "caches") Run({"registry", "import", "changes.reg"});
        fs::copy(store_, start_, fs::copy_options::recursive);
    }

    int Run(Arguments arguments) const {
        arguments.insert(arguments.begin(), {"--store", PathToUtf8(store_)});
        for (std::string& argument : arguments)
            if (argument.ends_with(".reg")) argument = PathToUtf8(folder_ / argument);
        std::ostringstream out, err;
        return RunHost(arguments, out, err);
    }
    // In a process that may be killed.
    int RunElsewhere(const Arguments& arguments) const {
        const pid_t process = fork();
        if (process == 0) _exit(Run(arguments));
        int status = 0;
        EXPECT_EQ(waitpid(process, &status, 0), process);
        return WIFEXITED(status) ? WEXITSTATUS(status) : kKilled;
    }
    void StartAnew() const {
        fs::remove_all(store_);
        if (fs::exists(start_)) fs::copy(start_, store_, fs::copy_options::recursive);
    }
    std::string Dump() const {
        OpenStore(store_.string());
        std::string text = FormatRegFile(ExportRegistry());
        CloseStore();
        return text;
    }

    const TemporaryFolder folder_;
    const fs::path store_ = folder_ / "store", start_ = folder_ / "start";
    const FailingVfs vfs_;
};

TEST_P(StoreFaults, LeaveTheStoreBeforeOrAfterTheCommand) {
    const std::string before = Dump();
    ASSERT_EQ(Run(GetParam()), 0);
    const std::string after = Dump();
    ASSERT_NE(before, after);
    for (const auto& [fault, name] :
         {std::pair{Fault::DiskFull, "full"}, {Fault::InputOutput, "failing"}, {Fault::Kill, "killed"}}) {
        int number = 0;
        for (bool isReached = true; isReached;) {
            SCOPED_TRACE(std::string(name) + " at " + std::to_string(++number));
            StartAnew();
            FailingVfs::FailAt(fault, number);
            const int status = fault == Fault::Kill ? RunElsewhere(GetParam()) : Run(GetParam());
            isReached = fault == Fault::Kill ? status == kKilled : FailingVfs::HasFailed();
            FailingVfs::Rest();
            const std::string found = Dump();
            EXPECT_TRUE(found == before || found == after);
            EXPECT_TRUE(status == kKilled || (status != 0) == (found == before)) << status;
            EXPECT_TRUE(isReached || status == 0) << status;
        }
        EXPECT_GT(number, 5);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Commands, StoreFaults,
    testing::Values(Arguments{"printer", "add", "First", "--product", "script8432"},
                    Arguments{"printer", "add", "B", "--product", "script8432"}, Arguments{"printer", "remove", "A"},
                    Arguments{"printer", "form", "add", "F", "--printer", "A", "--width", "100", "--length", "200"},
                    Arguments{"printer", "customsize", "add", "C", "--width", "100", "--length", "200"},
                    Arguments{"caches", "rebuild", "--printer", "A"}, Arguments{"registry", "import", "changes.reg"}));

}  // namespace
