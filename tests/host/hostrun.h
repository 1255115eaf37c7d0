// HostRun: commands of the host run in this process, over a store and files of the test's own.
#pragma once

#include <runhost.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <support/temporaryfolder.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

struct Outcome {
    int status = -1;
    std::string out, err;
};

class HostRun : public testing::Test {
protected:
    Outcome Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--store", File("store")});
        std::ostringstream out, err;
        Outcome outcome;
        outcome.status = RunHost(arguments, out, err);
        outcome.out = out.str();
        outcome.err = err.str();
        return outcome;
    }
    // Runs a command that has to succeed; its output.
    std::string Do(const std::vector<std::string>& arguments) const {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "");
        return outcome.out;
    }

    std::string File(const std::string& name) const { return PathToUtf8(folder_ / name); }
    std::string Read(const std::string& name) const { return ReadWholeFile(folder_ / name); }
    std::string Write(const std::string& name, std::string_view contents) const {
        return PathToUtf8(folder_.Write(name, contents));
    }
    bool Exists(const std::string& name) const { return std::filesystem::exists(folder_ / name); }
    std::size_t CountFiles() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder_.GetPath()), {}));
    }

private:
    const TemporaryFolder folder_;
};
