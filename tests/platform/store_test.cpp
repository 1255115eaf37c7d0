// The store that stands in for the machine's and the user's registry.
#include <store.h>
#include <uniquehandle.h>
#include <widetext.h>

#include <gtest/gtest.h>

namespace {

LSTATUS Create(HKEY root, UniqueKey& key) {
    return RegCreateKeyExW(root, W("Software\\Morvane"), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                           key.Put(), nullptr);
}

TEST(Store, InMemoryKeepsBothHivesApartAndEndsWhenClosed) {
    OpenStore(":memory:");
    UniqueKey key;
    ASSERT_EQ(Create(HKEY_CURRENT_USER, key), ERROR_SUCCESS);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, W("Software\\Morvane"), 0, KEY_READ, key.Put()), ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(Create(HKEY_LOCAL_MACHINE, key), ERROR_SUCCESS);
    CloseStore();
    EXPECT_NE(RegSetValueExW(key.Get(), W("late"), 0, REG_NONE, nullptr, 0), ERROR_SUCCESS);
    key.Reset();

    OpenStore(":memory:");
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
        EXPECT_EQ(RegOpenKeyExW(root, W("Software\\Morvane"), 0, KEY_READ, key.Put()), ERROR_FILE_NOT_FOUND);
    CloseStore();
}

}  // namespace
