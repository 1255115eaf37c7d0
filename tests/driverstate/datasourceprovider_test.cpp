// Data-model state in the registry, and the stamp that tells whether it is current.
#include <datasourceprovider.h>
#include <support/printerfixture.h>

#include <mvutil/datacache.h>

#include <gtest/gtest.h>

#include <functional>

namespace {

class Provider final : public DataSourceProvider {
    void ProvideDataSources(std::vector<std::pair<DataSourceProviderTypes, DataSource*>>&) override {}
};

struct Item {
    const char* name;
    void (DataSourceProvider::*set)(HANDLE, const ByteBuffer&);
    LONG (DataSourceProvider::*isCurrent)(HANDLE);
    void (DataSourceProvider::*remove)(HANDLE);
    void (DataSourceProvider::*get)(HANDLE, ByteBuffer&);
};
constexpr Item kItems[] = {
    {"nuggets", &DataSourceProvider::SetDataModelInfoNuggets, &DataSourceProvider::IsDataModelInfoNuggetsCurrent,
     &DataSourceProvider::DeleteDataModelInfoNuggets, &DataSourceProvider::GetDataModelInfoNuggets},
    {"state", &DataSourceProvider::SetDataModelState, &DataSourceProvider::IsDataModelStateCurrent,
     &DataSourceProvider::DeleteDataModelState, &DataSourceProvider::GetDataModelState},
};

const ByteBuffer kBytes("some state", 10);

class DataSourceProviderTest : public testing::TestWithParam<int> {
protected:
    DataCache Cache(const TestPrinter& printer) {
        return DataCache(printer.GetHandle(), printer.GetCacheKey(), 0, true);
    }
    ByteBuffer Stored(DataSourceProvider& provider, const Item& item, const TestPrinter& printer) {
        ByteBuffer bytes("old", 3);
        (provider.*item.get)(printer.GetHandle(), bytes);
        return bytes;
    }

    TestStore store_;
};

TEST_P(DataSourceProviderTest, IsCurrentAsLongAsTheConfigurationStands) {
    const Item& item = kItems[GetParam()];
    const Item& other = kItems[1 - GetParam()];
    const TestPrinter printer(kPress);
    const HANDLE handle = printer.GetHandle();
    Provider provider;
    const auto isCurrent = [&](const Item& of) { return (provider.*of.isCurrent)(handle); };
    struct Step {
        const char* what;
        std::function<void()> action;
        LONG current;
        bool stored;
    };
    const Step steps[] = {
        {"nothing stored", [] {}, -1, false},
        {"stored", [&] { (provider.*item.set)(handle, kBytes); }, 1, true},
        {"configuration changed", [&] { Cache(printer).SetCachedValue(W("XAutoConfig"), kBytes, false); }, 0, true},
        {"stored again", [&] { (provider.*item.set)(handle, kBytes); }, 1, true},
        {"stamp -1", [&] { Cache(printer).SetCachedValue(W("XInstallableOptionsState"), LONG{-1}, false); }, -1, true},
        {"stored once more", [&] { (provider.*item.set)(handle, kBytes); }, 1, true},
        {"the other item deleted, and the stamp with it", [&] { (provider.*other.remove)(handle); }, -1, true},
        {"deleted", [&] { (provider.*item.remove)(handle); }, -1, false},
        {"stored empty", [&] { (provider.*item.set)(handle, ByteBuffer()); }, -1, false},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.what);
        step.action();
        EXPECT_EQ(isCurrent(item), step.current);
        EXPECT_EQ(isCurrent(other), -1) << "without bytes, whatever the stamp says";
        EXPECT_EQ(Stored(provider, item, printer), step.stored ? kBytes : ByteBuffer());
    }
}

TEST_P(DataSourceProviderTest, KeepsTheOldStampWithoutDeviceSettings) {
    const Item& item = kItems[GetParam()];
    const std::filesystem::path folder = ProgramFolder() / "lost products";
    std::filesystem::remove_all(folder);
    std::filesystem::copy(ProgramFolder() / "products", folder, std::filesystem::copy_options::recursive);
    const TestPrinter printer(W("Lost Product"), folder / kPress / ProductFile(kPress).filename());
    std::filesystem::remove_all(folder);

    Provider provider;
    (provider.*item.set)(printer.GetHandle(), kBytes);
    EXPECT_EQ(Stored(provider, item, printer), kBytes);
    EXPECT_FALSE(Cache(printer).DoesCacheExist(W("XInstallableOptionsState")));
    EXPECT_EQ((provider.*item.isCurrent)(printer.GetHandle()), -1);
    Cache(printer).SetCachedValue(W("XInstallableOptionsState"), LONG{5}, false);
    (provider.*item.set)(printer.GetHandle(), kBytes);
    EXPECT_EQ(Cache(printer).GetCachedLongValue(W("XInstallableOptionsState"), 0), 5);
}

TEST_P(DataSourceProviderTest, StaysWithThePlaceOfItsFirstOperation) {
    const Item& item = kItems[GetParam()];
    const TestPrinter printer(kPress);
    Provider keyed;
    (keyed.*item.set)(printer.GetHandle(), kBytes);
    Provider unkeyed;
    (unkeyed.*item.remove)(printer.GetHandle());
    EXPECT_EQ((keyed.*item.isCurrent)(printer.GetHandle()), 1) << "the delete went to another place";
    EXPECT_TRUE(Stored(unkeyed, item, printer).isEmpty());
    (unkeyed.*item.set)(printer.GetHandle(), ByteBuffer("b", 1));
    EXPECT_EQ(Stored(keyed, item, printer), kBytes);
}

INSTANTIATE_TEST_SUITE_P(BothItems, DataSourceProviderTest, testing::Values(0, 1),
                         [](const auto& test) { return std::string(kItems[test.param].name); });

TEST(DataSourceProviderCopyTest, CopiesNuggetsAndStampToTheCurrentUser) {
    const TestStore store;
    const TestPrinter printer(kPress);
    DataCache machine(printer.GetHandle(), HKEY_LOCAL_MACHINE, printer.GetCacheKey(), 0, true);
    machine.SetCachedValue(W("XDataModelInfoNuggets"), kBytes, false);
    machine.SetCachedValue(W("XInstallableOptionsState"), LONG{77}, false);
    Provider().CopyDataModelInfoNuggetsToCurrentUser(printer.GetHandle());

    const DataCache user(printer.GetHandle(), HKEY_CURRENT_USER, printer.GetCacheKey(), 0, false);
    ByteBuffer nuggets;
    EXPECT_TRUE(user.GetCachedBytesValue(W("XDataModelInfoNuggets"), nuggets));
    EXPECT_EQ(nuggets, kBytes);
    EXPECT_EQ(user.GetCachedLongValue(W("XInstallableOptionsState"), 0), 77);
}

}  // namespace
