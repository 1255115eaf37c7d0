// Data-model state in the registry, and the stamp that tells whether it is current.
#include <datasourceprovider.h>
#include <support/printerfixture.h>

#include <mvutil/datacache.h>

#include <gtest/gtest.h>

namespace {

constexpr const WCHAR* kStamp = W("XInstallableOptionsState");
const ByteBuffer kNuggets("some nuggets", 12), kState("state", 5);

class Provider final : public DataSourceProvider {
    void ProvideDataSources(std::vector<std::pair<DataSourceProviderTypes, DataSource*>>&) override {}
};

DataCache CacheOf(const TestPrinter& printer) { return DataCache(printer.GetHandle(), printer.GetCacheKey(), 0, true); }

class DataSourceProviderTest : public testing::Test {
protected:
    ByteBuffer NuggetsOf(DataSourceProvider& provider) const {
        ByteBuffer nuggets("old", 3);
        provider.GetDataModelInfoNuggets(handle_, nuggets);
        return nuggets;
    }

    TestStore store_;
    TestPrinter printer_{kPress};
    HANDLE handle_ = printer_.GetHandle();
    Provider provider_;
};

TEST_F(DataSourceProviderTest, BothItemsAreCurrentAsLongAsTheConfigurationStands) {
    const auto expect = [&](const char* what, LONG nuggetsCurrent, LONG stateCurrent, bool hasNuggets, bool hasState) {
        SCOPED_TRACE(what);
        EXPECT_EQ(provider_.IsDataModelInfoNuggetsCurrent(handle_), nuggetsCurrent);
        EXPECT_EQ(provider_.IsDataModelStateCurrent(handle_), stateCurrent);
        EXPECT_EQ(NuggetsOf(provider_), hasNuggets ? kNuggets : ByteBuffer());
        ByteBuffer state("old", 3);
        provider_.GetDataModelState(handle_, state);
        EXPECT_EQ(state, hasState ? kState : ByteBuffer());
    };
    expect("nothing stored", -1, -1, false, false);
    provider_.SetDataModelInfoNuggets(handle_, kNuggets);
    expect("nuggets stored", 1, -1, true, false);
    provider_.SetDataModelState(handle_, kState);
    expect("state stored", 1, 1, true, true);
    CacheOf(printer_).SetCachedValue(W("XAutoConfig"), kState, false);
    expect("configured anew", 0, 0, true, true);
    provider_.SetDataModelState(handle_, kState);
    expect("state stored again: the stamp is both's", 1, 1, true, true);
    CacheOf(printer_).SetCachedValue(kStamp, LONG{-1}, false);
    expect("stamp -1", -1, -1, true, true);
    provider_.SetDataModelInfoNuggets(handle_, kNuggets);
    expect("nuggets stored again", 1, 1, true, true);
    provider_.DeleteDataModelInfoNuggets(handle_);
    expect("nuggets deleted, and the stamp with them", -1, -1, false, true);
    provider_.SetDataModelState(handle_, kState);
    expect("state stored once more", -1, 1, false, true);
    provider_.DeleteDataModelState(handle_);
    expect("state deleted", -1, -1, false, false);
}

TEST_F(DataSourceProviderTest, KeepsTheOldStampWithoutDeviceSettings) {
    const std::filesystem::path folder = ProgramFolder() / "lost products";
    std::filesystem::remove_all(folder);
    std::filesystem::copy(ProgramFolder() / "products", folder, std::filesystem::copy_options::recursive);
    const TestPrinter printer(W("Lost Product"), folder / kPress / ProductFile(kPress).filename());
    std::filesystem::remove_all(folder);
    CacheOf(printer).SetCachedValue(kStamp, LONG{5}, false);
    provider_.SetDataModelState(printer.GetHandle(), kState);
    EXPECT_TRUE(CacheOf(printer).DoesCacheExist(W("XDataModelState")));
    EXPECT_EQ(CacheOf(printer).GetCachedLongValue(kStamp, 0), 5);
    EXPECT_EQ(provider_.IsDataModelStateCurrent(printer.GetHandle()), -1);
}

TEST_F(DataSourceProviderTest, StaysWithThePlaceOfItsFirstOperation) {
    provider_.SetDataModelInfoNuggets(handle_, kNuggets);
    Provider unkeyed;
    unkeyed.DeleteDataModelInfoNuggets(handle_);
    EXPECT_EQ(NuggetsOf(provider_), kNuggets) << "the delete went to another place";
    unkeyed.SetDataModelInfoNuggets(handle_, kState);
    EXPECT_EQ(NuggetsOf(unkeyed), kState);
    EXPECT_EQ(NuggetsOf(provider_), kNuggets);
}

TEST_F(DataSourceProviderTest, CopiesNuggetsAndStampToTheCurrentUser) {
    DataCache machine(handle_, HKEY_LOCAL_MACHINE, printer_.GetCacheKey(), 0, true);
    machine.SetCachedValue(W("XDataModelInfoNuggets"), kNuggets, false);
    machine.SetCachedValue(kStamp, LONG{77}, false);
    provider_.CopyDataModelInfoNuggetsToCurrentUser(handle_);
    const DataCache user(handle_, HKEY_CURRENT_USER, printer_.GetCacheKey(), 0, false);
    ByteBuffer nuggets;
    user.GetCachedBytesValue(W("XDataModelInfoNuggets"), nuggets);
    EXPECT_EQ(nuggets, kNuggets);
    EXPECT_EQ(user.GetCachedLongValue(kStamp, 0), 77);
}

}  // namespace
