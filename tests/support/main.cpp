// The tests' main program: after every test, no BSTR and no DOM object that the test made may be left.
#include <livecounts.h>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>

namespace {

class LeakListener final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        bstrs_ = LiveBstrCount();
        nodes_ = LiveDomObjectCount();
    }
    void OnTestEnd(const testing::TestInfo&) override {
        EXPECT_EQ(LiveBstrCount(), bstrs_) << "BSTRs leak";
        EXPECT_EQ(LiveDomObjectCount(), nodes_) << "DOM objects leak";
    }

    long bstrs_ = 0;
    long nodes_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    // A program that loads the driver may have any locale.
    if (!std::setlocale(LC_ALL, "")) std::fprintf(stderr, "the environment names a locale that this machine lacks\n");
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new LeakListener);
    return RUN_ALL_TESTS();
}
