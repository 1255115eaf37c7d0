// Data-model state in the registry, and the stamp that says whether it is current.
#include <datasourceprovider.h>
#include <support/printerfixture.h>

#include <mvutil/datacache.h>

#include <gtest/gtest.h>

namespace {

const ByteBuffer kNuggets("some nuggets", 12), kState("state", 5);

class Provider final : public DataSourceProvider {
    void ProvideDataSources(std::vector<std::pair<DataSourceProviderTypes, DataSource*>>&) override {}
};

class DataSourceProviderTest : public testing::Test {
protected:
    TestStore store_;
    TestPrinter printer_{kPress};
    HANDLE handle_ = printer_.GetHandle();
    TestPrinter other_{kPress, W("Other")};
};

TEST_F(DataSourceProviderTest, BothItemsAreCurrentAsLongAsTheConfigurationStands) {
    // Each call by an object of its own: what one stores or deletes, the next one sees.
    const auto expect = [&](const char* what, LONG nuggetsCurrent, LONG stateCurrent, bool hasNuggets, bool hasState) {
        SCOPED_TRACE(what);
        EXPECT_EQ(Provider().IsDataModelInfoNuggetsCurrent(handle_), nuggetsCurrent);
        EXPECT_EQ(Provider().IsDataModelStateCurrent(handle_), stateCurrent);
        ByteBuffer nuggets("old", 3), state("old", 3);
        Provider().GetDataModelInfoNuggets(handle_, nuggets);
        EXPECT_EQ(nuggets, hasNuggets ? kNuggets : ByteBuffer());
        Provider().GetDataModelState(handle_, state);
        EXPECT_EQ(state, hasState ? kState : ByteBuffer());
    };
    expect("nothing stored", -1, -1, false, false);
    Provider().SetDataModelInfoNuggets(handle_, kNuggets);
    expect("nuggets stored", 1, -1, true, false);
    Provider().SetDataModelState(handle_, kState);
    expect("state stored", 1, 1, true, true);
    DataCache(handle_, printer_.GetCacheKey(), 0, true).SetCachedValue(W("XAutoConfig"), kState, false);
    expect("configured anew", 0, 0, true, true);
    Provider().SetDataModelState(handle_, kState);
    expect("state stored again: the stamp is both's", 1, 1, true, true);
    Provider().DeleteDataModelInfoNuggets(handle_);
    expect("nuggets deleted, and the stamp with them", -1, -1, false, true);
    Provider().SetDataModelState(handle_, kState);
    expect("state stored once more", -1, 1, false, true);
    Provider().DeleteDataModelState(handle_);
    expect("state deleted", -1, -1, false, false);

    Provider().SetDataModelState(other_.GetHandle(), kNuggets);
    Provider deleting;  // makes its cache without a key, and keeps it
    deleting.DeleteDataModelState(handle_);
    deleting.SetDataModelState(handle_, kState);
    expect("stored behind a deletion", -1, 1, false, true);
    ByteBuffer others;
    Provider().GetDataModelState(other_.GetHandle(), others);
    EXPECT_EQ(others, kNuggets) << "another printer's";
}

TEST_F(DataSourceProviderTest, TheMachinesNuggetsAreCopiedToTheUser) {
    const auto stored = [&](HKEY hive, const WCHAR* name) {
        ByteBuffer value;
        DataCache(handle_, hive, printer_.GetCacheKey(), 0, true).GetCachedBytesValue(name, value);
        return value;
    };
    DataCache machine(handle_, HKEY_LOCAL_MACHINE, printer_.GetCacheKey(), 0, true);
    machine.SetCachedValue(W("XDataModelInfoNuggets"), kNuggets, false);
    machine.SetCachedValue(W("XInstallableOptionsState"), LONG{77}, false);
    Provider().CopyDataModelInfoNuggetsToCurrentUser(handle_);
    EXPECT_EQ(stored(HKEY_CURRENT_USER, W("XDataModelInfoNuggets")), kNuggets);
    EXPECT_EQ(stored(HKEY_CURRENT_USER, W("XInstallableOptionsState")).getAsLongValue(), 77);
    machine.SetCachedValue(W("XDataModelInfoNuggets"), kState, false);
    EXPECT_EQ(stored(HKEY_CURRENT_USER, W("XDataModelInfoNuggets")), kNuggets) << "a copy";
    EXPECT_EQ(stored(HKEY_LOCAL_MACHINE, W("XDataModelInfoNuggets")), kState);
}

}  // namespace
