// The bench itself: the reference provider passes every check, and each fault is caught by the check that is meant for
// it.
#include <host/runhost.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <support/temporaryfolder.h>
#include <windows.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <sstream>

namespace {

using Json = nlohmann::json;

std::string GetLibraryFile() { return PathToUtf8(GetProgramFolder() / "faultyprovider.dll"); }

struct Fault {
    std::string name, check;
};
void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

std::vector<Fault> ListFaults() {
    std::vector<Fault> faults;
    const HMODULE library = LoadLibraryA(GetLibraryFile().c_str());
    using List = void (*)(void (*add)(void*, const char*, const char*), void*);
    reinterpret_cast<List>(reinterpret_cast<void*>(GetProcAddress(library, "ListFaults")))(
        [](void* list, const char* fault, const char* check) {
            static_cast<std::vector<Fault>*>(list)->push_back({fault, check});
        },
        &faults);
    FreeLibrary(library);
    return faults;
}

void SetFault(const std::string& name) {
#ifdef _WIN32
    SetEnvironmentVariableA("MV_FAULT", name.c_str());
#else
    setenv("MV_FAULT", name.c_str(), 1);
#endif
}

class VerifyBench : public testing::TestWithParam<Fault> {
protected:
    ~VerifyBench() override { SetFault(""); }

    int Run(std::vector<std::string> arguments, Json* rows = nullptr) {
        arguments.insert(arguments.begin(), {"verify", "--provider", GetLibraryFile(), "--product", "press8434",
                                             "--gpd-like", "--json", "--keep", PathToUtf8(folder_ / "kept")});
        std::ostringstream out, err;
        const int status = RunHost(arguments, out, err);
        EXPECT_EQ(err.str(), "");
        if (rows) *rows = Json::parse(out.str());
        return status;
    }

    const TemporaryFolder folder_;
};

TEST_F(VerifyBench, TheReferencePassesEveryCheck) {
    Json rows;
    EXPECT_EQ(Run({}, &rows), 0);
    for (const Json& row : rows) EXPECT_NE(row["outcome"], "failed") << row.dump(2);
}

TEST_P(VerifyBench, CatchesTheFault) {
    SetFault(GetParam().name);
    Json rows;
    EXPECT_EQ(Run({"--only", GetParam().check, "--time", "3"}, &rows), 1);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0]["outcome"], "failed");
    EXPECT_NE(rows[0]["found"], "");
}

INSTANTIATE_TEST_SUITE_P(Faults, VerifyBench, testing::ValuesIn(ListFaults()));

}  // namespace
