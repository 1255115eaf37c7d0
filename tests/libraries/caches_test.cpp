// Where cached values lie, how they come back, and which hive holds them.
#include <support/printerfixture.h>

#include <mvutil/cachelocation.h>
#include <mvutil/crc32.h>
#include <mvutil/datacache.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/operatingsystem.h>
#include <mvutil/user.h>

#include <gtest/gtest.h>

namespace {

class CachesTest : public testing::Test {
protected:
    TestStore store_;
    TestPrinter printer_{kOffice};
    const HANDLE handle_ = printer_.GetHandle();
};

bool KeyExists(HKEY hive, const CXString& path) {
    UniqueKey key;
    return RegOpenKeyExW(hive, path, 0, KEY_READ, key.Put()) == ERROR_SUCCESS;
}

TEST_F(CachesTest, ValuesComeBackInEitherType) {
    DataCache cache(handle_, W("A Port"), 0, true);
    EXPECT_FALSE(cache.DoesCacheExist(W("XBytes")));
    const ByteBuffer large(std::string(100000, 'x').data(), 100000);
    EXPECT_TRUE(cache.SetCachedValue(W("XBytes"), large, false));
    EXPECT_TRUE(cache.SetCachedValue(W("XEmpty"), ByteBuffer(), false));
    EXPECT_TRUE(cache.SetCachedValue(W("XLong"), LONG(-2), false));
    ByteBuffer value;
    EXPECT_TRUE(cache.GetCachedBytesValue(W("xbytes"), value)) << "names compare without regard to case";
    EXPECT_EQ(value, large);
    EXPECT_TRUE(cache.GetCachedBytesValue(W("XEmpty"), value));
    EXPECT_TRUE(value.isEmpty());
    EXPECT_FALSE(cache.GetCachedBytesValue(W("XNone"), value));
    EXPECT_EQ(cache.GetCachedLongValue(W("XLong"), 5), -2);
    EXPECT_EQ(cache.GetCachedLongValue(W("XBytes"), 5), 5) << "not four bytes";
    EXPECT_TRUE(cache.GetCachedBytesValue(W("XLong"), value));
    EXPECT_TRUE(cache.SetCachedValue(W("XCopy"), value, false));
    EXPECT_EQ(cache.GetCachedLongValue(W("XCopy"), 5), -2) << "a number copied as bytes is that number";
    EXPECT_TRUE(cache.DeleteCache(W("XLong"), false));
    EXPECT_FALSE(cache.DeleteCache(W("XLong"), false));
}

TEST_F(CachesTest, AVolatileValueIsTheObjectsOwn) {
    DataCache cache(handle_, W("A Port"), 0, true);
    EXPECT_TRUE(cache.SetCachedValue(W("X"), LONG(1), false));
    EXPECT_TRUE(cache.SetCachedValue(W("X"), LONG(2), true));
    EXPECT_EQ(cache.GetCachedLongValue(W("X"), 0), 2);
    EXPECT_EQ(DataCache(handle_, W("A Port"), 0, true).GetCachedLongValue(W("X"), 0), 1);
    EXPECT_TRUE(cache.DeleteCache(W("X"), true));
    EXPECT_EQ(cache.GetCachedLongValue(W("X"), 0), 1);
}

TEST_F(CachesTest, TheKeyIsMadeByTheFirstWriteOnlyWhenAskedFor) {
    const CXString path = CXString(kPrinterCachesKey) + W("\\New Port");
    DataCache reading(handle_, HKEY_CURRENT_USER, W("New Port"), 0, false);
    EXPECT_FALSE(reading.SetCachedValue(W("X"), LONG(1), false));
    DataCache writing(handle_, HKEY_CURRENT_USER, W("New Port"), 0, true);
    EXPECT_EQ(writing.GetCachedLongValue(W("X"), 7), 7);
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, path));
    EXPECT_TRUE(writing.SetCachedValue(W("X"), LONG(1), false));
    EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, path));
    EXPECT_TRUE(reading.SetCachedValue(W("X"), LONG(2), false));
    EXPECT_EQ(writing.GetCachedLongValue(W("X"), 7), 2);
    EXPECT_EQ(DataCache(handle_, HKEY_CURRENT_USER, 0, true).GetCachedLongValue(W("X"), 7), 7) << "the common key's";
    writing.SetHKEY(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(writing.GetCachedLongValue(W("X"), 7), 7);
}

TEST_F(CachesTest, TheCrcIsThatOfThePrintersName) {
    const CXString& name = printer_.GetName();
    const DWORD crc = Crc32::GetCrc(name.GetString(), name.GetLength() * sizeof(WCHAR), 0x534B47B9);
    EXPECT_EQ(DataCache(handle_, 0x534B47B9, true).GetCurrentCRC(), crc);
    for (const HANDLE bad : {HANDLE(), INVALID_HANDLE_VALUE})
        EXPECT_THROW(DataCache(bad, W("A Port"), 0, true), ExceptionDataCacheFailure);
    EXPECT_THROW(DataCache(reinterpret_cast<HANDLE>(0x7FFF), 0, true), ExceptionPrinterFailure);
}

TEST_F(CachesTest, EveryPortHasAKeyNameOfItsOwn) {
    const auto convert = [](const CXString& port) { return MorvaneUtilities::ConvertPortNameToRegistryKey(port); };
    EXPECT_EQ(convert(W("\\\\server\\queue")), W("__server_queue"));
    EXPECT_EQ(convert(W("LPT1:")), W("LPT1:"));
    EXPECT_EQ(convert(W("")), W("_"));
    const WideString longest(255, W('p'));
    EXPECT_EQ(convert(longest), CXString(longest));
    const CXString one = convert(longest + W("1"));
    const CXString two = convert(longest + W("2"));
    EXPECT_EQ(one.GetLength(), 255u);
    EXPECT_NE(one, two);
    EXPECT_TRUE(DataCache(handle_, one, 0, true).SetCachedValue(W("X"), LONG(1), false));
}

TEST_F(CachesTest, TheHiveIsTheMachinesWhereItMayBeWritten) {
    for (const WCHAR* program : {W("spoolsv.exe"), W("PrintFilterPipelineSvc.exe"), W("notepad.exe")}) {
        Application::SetExecutableName(program);
        EXPECT_EQ(DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext(), CXString(program) != W("notepad.exe"));
        EXPECT_EQ(MorvaneUtilities::GetRegistryHiveByContext(), HKEY_LOCAL_MACHINE);
    }
    Application::SetExecutableName(CXString());
    EXPECT_NE(Application::GetExecutableName().Find(W("libraries_test")), -1);
}

TEST_F(CachesTest, UserKeysAreListedAndRead) {
    const CXString sizes = W("Morvane Custom Paper Sizes");
    EXPECT_TRUE(User::EnumUserKeyNames(sizes).empty());
    for (const WCHAR* name : {W("Card"), W("Banner")}) {
        UniqueKey key;
        const CXString path = CXString(kDriverFamilyKey) + W("\\") + sizes + W("\\") + name;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_WRITE, nullptr, key.Put(), nullptr), 0);
        const DWORD width = 85000;
        RegSetValueExW(key.Get(), W("Width"), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&width), sizeof width);
        RegSetValueExW(key.Get(), W("Cut"), 0, REG_BINARY, reinterpret_cast<const BYTE*>(&width), 3);
    }
    EXPECT_EQ(User::EnumUserKeyNames(sizes).size(), 2u);
    const CXString card = sizes + W("\\Card");
    EXPECT_EQ(User::GetUserDataLongFromRegistry(card, W("Width"), 0), 85000);
    EXPECT_EQ(User::GetUserDataLongFromRegistry(card, W("Cut"), 3), 3);
    EXPECT_EQ(User::GetUserDataLongFromRegistry(card, W("Length"), 4), 4);
    EXPECT_TRUE(User::GetUserDataBooleanFromRegistry(card, W("Width"), false));
    EXPECT_TRUE(User::GetUserDataBooleanFromRegistry(card, W("IsMetricUnits"), true));
}

}  // namespace
