// Where cached values lie, how they come back, and which hive holds them.
#include <support/printerfixture.h>
#include <support/userpapers.h>

#include <mvutil/cachelocation.h>
#include <mvutil/crc32.h>
#include <mvutil/datacache.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/user.h>

#include <gtest/gtest.h>

#include <utility>

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
    const ByteBuffer large(std::string(100000, 'x').data(), 100000);
    EXPECT_TRUE(cache.SetCachedValue(W("XBytes"), large, false));
    EXPECT_TRUE(cache.SetCachedValue(W("XLong"), LONG(-2), false));
    ByteBuffer value;
    EXPECT_TRUE(cache.GetCachedBytesValue(W("xbytes"), value)) << "names compare without regard to case";
    EXPECT_EQ(value, large);
    EXPECT_EQ(cache.GetCachedLongValue(W("XBytes"), 5), 5) << "not four bytes";
    EXPECT_TRUE(cache.GetCachedBytesValue(W("XLong"), value));
    EXPECT_TRUE(cache.SetCachedValue(W("XCopy"), value, false));
    EXPECT_EQ(cache.GetCachedLongValue(W("XCopy"), 5), -2) << "a number copied as bytes is that number";
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
    DataCache unkeyed(handle_, HKEY_CURRENT_USER, 0, true);
    EXPECT_EQ(unkeyed.GetCachedLongValue(W("X"), 7), 7);
    EXPECT_TRUE(unkeyed.SetCachedValue(W("X"), LONG(3), false));
    EXPECT_EQ(DataCache(handle_, HKEY_CURRENT_USER, printer_.GetCacheKey(), 0, true).GetCachedLongValue(W("X"), 7), 3);
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
    const WideString longest(255, W('p'));
    const std::pair<CXString, CXString> names[] = {
        {W("\\\\server\\queue"), W("__server_queue")}, {W("LPT1:"), W("LPT1:")}, {W(""), W("_")}, {longest, longest}};
    for (const auto& [port, name] : names) EXPECT_EQ(convert(port), name);
    const CXString one = convert(longest + W("1"));
    EXPECT_NE(one, convert(longest + W("2")));
    EXPECT_TRUE(DataCache(handle_, one, 0, true).SetCachedValue(W("X"), LONG(1), false));
}

TEST_F(CachesTest, AUsersValueOfAnotherSizeIsNone) {
    AddCustomSize(W("Card"), 85000, 0);
    const CXString card = CXString(kCustomSizesKey) + W("\\Card");
    EXPECT_TRUE(User::StoreUserDataBytesInRegistry(card, kCustomSizeWidthValue, ByteBuffer("cut", 3)));
    EXPECT_EQ(User::GetUserDataLongFromRegistry(card, kCustomSizeWidthValue, 3), 3);
}

}  // namespace
