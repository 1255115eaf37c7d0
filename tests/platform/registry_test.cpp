// The registry functions over a store in memory.
#include <store.h>
#include <uniquehandle.h>
#include <widetext.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Text = std::basic_string<WCHAR>;
using Bytes = std::vector<BYTE>;

class Registry : public testing::Test {
protected:
    void SetUp() override { OpenStore(":memory:"); }
    void TearDown() override { CloseStore(); }

    static LSTATUS Create(HKEY parent, const Text& path, UniqueKey& key, DWORD* disposition = nullptr) {
        return RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.Put(), disposition);
    }
    static LSTATUS Open(HKEY parent, const Text& path, UniqueKey& key, REGSAM access = KEY_ALL_ACCESS) {
        return RegOpenKeyExW(parent, path.c_str(), 0, access, key.Put());
    }
    static LSTATUS Set(HKEY key, const Text& name, const Bytes& data = {}, DWORD type = REG_BINARY) {
        return RegSetValueExW(key, name.c_str(), 0, type, data.data(), static_cast<DWORD>(data.size()));
    }
    static std::vector<Text> Names(HKEY key, bool ofValues) {
        std::vector<Text> names;
        for (DWORD index = 0;; ++index) {
            WCHAR name[256];
            DWORD characters = 256;
            const LSTATUS status =
                ofValues ? RegEnumValueW(key, index, name, &characters, nullptr, nullptr, nullptr, nullptr)
                         : RegEnumKeyExW(key, index, name, &characters, nullptr, nullptr, nullptr, nullptr);
            if (status != ERROR_SUCCESS) {
                EXPECT_EQ(status, ERROR_NO_MORE_ITEMS);
                return names;
            }
            names.emplace_back(name, characters);
        }
    }
};

TEST_F(Registry, FindsNamesWithoutRegardToCaseAndKeepsTheirs) {
    UniqueKey key;
    DWORD disposition = 0;
    ASSERT_EQ(Create(HKEY_LOCAL_MACHINE, W("Software\\M\u00F6rvane\\Qx"), key, &disposition), ERROR_SUCCESS);
    EXPECT_EQ(disposition, DWORD{REG_CREATED_NEW_KEY});
    ASSERT_EQ(Create(HKEY_LOCAL_MACHINE, W("SOFTWARE\\m\u00D6RVANE\\qX\\"), key, &disposition), ERROR_SUCCESS);
    EXPECT_EQ(disposition, DWORD{REG_OPENED_EXISTING_KEY});
    ASSERT_EQ(Open(HKEY_LOCAL_MACHINE, W("software\\M\u00D6rvane"), key), ERROR_SUCCESS);
    EXPECT_EQ(Names(key.Get(), false), std::vector<Text>{W("Qx")});

    ASSERT_EQ(Set(key.Get(), W("First"), {1}), ERROR_SUCCESS);
    ASSERT_EQ(Set(key.Get(), W("FIRST"), {2, 3}), ERROR_SUCCESS);
    EXPECT_EQ(Names(key.Get(), true), std::vector<Text>{W("First")});
}

TEST_F(Registry, ListsKeysByAlphabetAndValuesAsWritten) {
    UniqueKey key, child;
    ASSERT_EQ(Create(HKEY_CURRENT_USER, W("a"), key), ERROR_SUCCESS);
    const Text outside = W("z\xD83D\xDE00");         // beyond the basic plane
    const Text lone = Text(W("z")) + WCHAR{0xD800};  // half a character
    for (const Text& name : {Text(W("b")), Text(W("C")), outside, Text(W("a")), lone})
        ASSERT_EQ(Create(key.Get(), name, child), ERROR_SUCCESS);
    EXPECT_EQ(Names(key.Get(), false), (std::vector<Text>{W("a"), W("b"), W("C"), lone, outside}));

    for (const Text& name : {Text(W("z")), lone, Text(W("")), Text(W("a")), Text(W("z"))})
        ASSERT_EQ(Set(key.Get(), name), ERROR_SUCCESS);
    EXPECT_EQ(Names(key.Get(), true), (std::vector<Text>{W("z"), lone, W(""), W("a")}));
    ASSERT_EQ(RegDeleteValueW(key.Get(), W("Z")), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueW(key.Get(), W("z")), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, HandsOutDataByTheSizeProtocol) {
    UniqueKey key;
    ASSERT_EQ(Create(HKEY_CURRENT_USER, W("a"), key), ERROR_SUCCESS);
    ASSERT_EQ(Set(key.Get(), W("v"), {7, 0, 8}, REG_SZ), ERROR_SUCCESS);
    struct {
        bool withBuffer;
        DWORD room;
        LSTATUS status;
        Bytes data;
    } const cases[] = {
        {false, 0, ERROR_SUCCESS, {9, 9, 9, 9}},
        {true, 2, ERROR_MORE_DATA, {9, 9, 9, 9}},
        {true, 3, ERROR_SUCCESS, {7, 0, 8, 9}},
        {true, 4, ERROR_SUCCESS, {7, 0, 8, 9}},
    };
    for (const auto& c : cases) {
        Bytes buffer(4, 9);
        DWORD type = 0, bytes = c.room;
        EXPECT_EQ(RegQueryValueExW(key.Get(), W("V"), nullptr, &type, c.withBuffer ? buffer.data() : nullptr, &bytes),
                  c.status);
        EXPECT_EQ(type, DWORD{REG_SZ});
        EXPECT_EQ(bytes, 3u);
        EXPECT_EQ(buffer, c.data);
    }
    EXPECT_EQ(RegQueryValueExW(key.Get(), nullptr, nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, HandsOutNamesThatFitWithTheirEnd) {
    UniqueKey key, child;
    ASSERT_EQ(Create(HKEY_CURRENT_USER, W("a"), key), ERROR_SUCCESS);
    ASSERT_EQ(Create(key.Get(), W("abc"), child), ERROR_SUCCESS);
    ASSERT_EQ(Set(key.Get(), W("abc"), {1, 2}, REG_DWORD), ERROR_SUCCESS);
    for (const DWORD room : {0u, 3u, 4u}) {
        WCHAR name[5] = {W('#'), W('#'), W('#'), W('#'), W('#')};
        DWORD characters = room, type = 0, bytes = 2;
        const LSTATUS status = room > 3 ? ERROR_SUCCESS : ERROR_MORE_DATA;
        EXPECT_EQ(RegEnumKeyExW(key.Get(), 0, name, &characters, nullptr, nullptr, nullptr, nullptr), status) << room;
        EXPECT_EQ(Text(name, 5), room > 3 ? Text(W("abc\0#"), 5) : Text(5, W('#')));
        EXPECT_EQ(characters, room > 3 ? 3 : room);
        BYTE data[3] = {9, 9, 9};
        characters = room;
        EXPECT_EQ(RegEnumValueW(key.Get(), 0, name, &characters, nullptr, &type, data, &bytes), status) << room;
        if (room <= 3) continue;
        EXPECT_EQ(type, DWORD{REG_DWORD});
        EXPECT_EQ(bytes, 2u);
        EXPECT_TRUE(data[0] == 1 && data[1] == 2 && data[2] == 9);
        bytes = 1;
        characters = room;
        EXPECT_EQ(RegEnumValueW(key.Get(), 0, name, &characters, nullptr, &type, data, &bytes), ERROR_MORE_DATA);
        EXPECT_EQ(RegEnumValueW(key.Get(), 1, name, &characters, nullptr, &type, data, &bytes), ERROR_NO_MORE_ITEMS);
    }
}

TEST_F(Registry, RefusesArgumentsThatItCannotHonour) {
    UniqueKey key;
    ASSERT_EQ(Create(HKEY_CURRENT_USER, W("a"), key), ERROR_SUCCESS);
    const HKEY open = key.Get();
    HKEY result = nullptr;
    WCHAR name[8] = {};
    DWORD number = 8, bytes = 0;
    BYTE data[8];
    FILETIME time;
    SECURITY_ATTRIBUTES* const security = reinterpret_cast<SECURITY_ATTRIBUTES*>(data);
    const auto create = [&](LPCWSTR path, DWORD reserved, LPWSTR keyClass, DWORD options, SECURITY_ATTRIBUTES* rights,
                            PHKEY to) {
        return RegCreateKeyExW(open, path, reserved, keyClass, options, KEY_READ, rights, to, nullptr);
    };
    const std::pair<LSTATUS, LSTATUS> answers[] = {
        {create(nullptr, 0, nullptr, 0, nullptr, &result), ERROR_INVALID_PARAMETER},
        {create(W("b"), 1, nullptr, 0, nullptr, &result), ERROR_INVALID_PARAMETER},
        {create(W("b"), 0, nullptr, 1, nullptr, &result), ERROR_INVALID_PARAMETER},
        {create(W("b"), 0, nullptr, 0, nullptr, nullptr), ERROR_INVALID_PARAMETER},
        {create(W("b"), 0, name, 0, nullptr, &result), ERROR_NOT_SUPPORTED},
        {create(W("b"), 0, nullptr, 0, security, &result), ERROR_NOT_SUPPORTED},
        {RegOpenKeyExW(open, W(""), 0, KEY_READ, nullptr), ERROR_INVALID_PARAMETER},
        {RegOpenKeyExW(open, W(""), 1, KEY_READ, &result), ERROR_INVALID_PARAMETER},
        {RegQueryValueExW(open, name, &number, nullptr, nullptr, nullptr), ERROR_INVALID_PARAMETER},
        {RegQueryValueExW(open, name, nullptr, nullptr, data, nullptr), ERROR_INVALID_PARAMETER},
        {RegSetValueExW(open, name, 1, REG_BINARY, data, 1), ERROR_INVALID_PARAMETER},
        {RegSetValueExW(open, name, 0, REG_BINARY, nullptr, 1), ERROR_INVALID_PARAMETER},
        {RegEnumKeyExW(open, 0, nullptr, &number, nullptr, nullptr, nullptr, nullptr), ERROR_INVALID_PARAMETER},
        {RegEnumKeyExW(open, 0, name, nullptr, nullptr, nullptr, nullptr, nullptr), ERROR_INVALID_PARAMETER},
        {RegEnumKeyExW(open, 0, name, &number, &number, nullptr, nullptr, nullptr), ERROR_INVALID_PARAMETER},
        {RegEnumKeyExW(open, 0, name, &number, nullptr, name, nullptr, nullptr), ERROR_NOT_SUPPORTED},
        {RegEnumKeyExW(open, 0, name, &number, nullptr, nullptr, &bytes, nullptr), ERROR_NOT_SUPPORTED},
        {RegEnumKeyExW(open, 0, name, &number, nullptr, nullptr, nullptr, &time), ERROR_NOT_SUPPORTED},
        {RegEnumValueW(open, 0, nullptr, &number, nullptr, nullptr, nullptr, nullptr), ERROR_INVALID_PARAMETER},
        {RegEnumValueW(open, 0, name, nullptr, nullptr, nullptr, nullptr, nullptr), ERROR_INVALID_PARAMETER},
        {RegEnumValueW(open, 0, name, &number, &number, nullptr, nullptr, nullptr), ERROR_INVALID_PARAMETER},
        {RegEnumValueW(open, 0, name, &number, nullptr, nullptr, data, nullptr), ERROR_INVALID_PARAMETER},
    };
    for (std::size_t index = 0; index < std::size(answers); ++index)
        EXPECT_EQ(answers[index].first, answers[index].second) << index;
    EXPECT_EQ(Names(open, false), std::vector<Text>{}) << "nothing was made";
    EXPECT_EQ(Names(open, true), std::vector<Text>{});
}

TEST_F(Registry, AnswersForTheUsersConventions) {
    WCHAR text[3] = {W('#'), W('#'), W('#')};
    EXPECT_EQ(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IMEASURE, text, 0), 2);
    EXPECT_EQ(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IMEASURE, text, 1), 0);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IMEASURE, text, 2), 2);
    EXPECT_EQ(Text(text, 3), Text(W("0\0#"), 3));
    DWORD number = 7;
    EXPECT_EQ(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IPAPERSIZE | LOCALE_RETURN_NUMBER,
                             reinterpret_cast<LPWSTR>(&number), 2),
              2);
    EXPECT_EQ(number, 9u);
    EXPECT_EQ(GetLocaleInfoW(LOCALE_USER_DEFAULT, 1, text, 3), 0);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_FLAGS});
    for (const int characters : {-1, 3}) {
        EXPECT_EQ(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IMEASURE, nullptr, characters), 0);
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    }
    UniqueKey key;
    ASSERT_EQ(Create(HKEY_CURRENT_USER, W("Control Panel\\International"), key), ERROR_SUCCESS);
    for (const Bytes& bad : {Bytes{'x', 0, 0, 0}, Bytes{}, Bytes{'1', 0, '2', 0, '3', 0, '4', 0, '5', 0, 0, 0},
                             Bytes{'/', 0, 0, 0}, Bytes{':', 0, 0, 0}}) {
        ASSERT_EQ(Set(key.Get(), W("iMeasure"), bad, REG_SZ), ERROR_SUCCESS);
        EXPECT_EQ(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IMEASURE, text, 3), 2);
        EXPECT_EQ(text[0], W('0'));
    }
    ASSERT_EQ(Set(key.Get(), W("iMeasure"), {'1', 0, '2', 0, 0, 0}, REG_SZ), ERROR_SUCCESS);
    EXPECT_EQ(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IMEASURE | LOCALE_RETURN_NUMBER,
                             reinterpret_cast<LPWSTR>(&number), 2),
              2);
    EXPECT_EQ(number, 12u);
}

TEST_F(Registry, DeletesTreesAndTheirOpenKeysKnowIt) {
    UniqueKey top, branch, leaf, same;
    ASSERT_EQ(Create(HKEY_CURRENT_USER, W("top"), top), ERROR_SUCCESS);
    ASSERT_EQ(Create(top.Get(), W("branch"), branch), ERROR_SUCCESS);
    ASSERT_EQ(Create(branch.Get(), W("leaf"), leaf), ERROR_SUCCESS);
    ASSERT_EQ(Set(leaf.Get(), W("v")), ERROR_SUCCESS);
    ASSERT_EQ(RegDeleteTreeW(top.Get(), W("BRANCH")), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteTreeW(top.Get(), W("branch")), ERROR_FILE_NOT_FOUND);

    // A key made anew in the same place is another key.
    ASSERT_EQ(Create(top.Get(), W("branch\\leaf"), same), ERROR_SUCCESS);
    EXPECT_EQ(Set(leaf.Get(), W("v")), ERROR_KEY_DELETED);
    EXPECT_EQ(RegQueryValueExW(leaf.Get(), W("v"), nullptr, nullptr, nullptr, nullptr), ERROR_KEY_DELETED);
    EXPECT_EQ(RegDeleteValueW(leaf.Get(), W("v")), ERROR_KEY_DELETED);
    EXPECT_EQ(RegDeleteTreeW(branch.Get(), nullptr), ERROR_KEY_DELETED);
    UniqueKey none;
    EXPECT_EQ(Create(branch.Get(), W("leaf"), none), ERROR_KEY_DELETED);

    ASSERT_EQ(Set(top.Get(), W("v")), ERROR_SUCCESS);
    ASSERT_EQ(RegDeleteTreeW(top.Get(), nullptr), ERROR_SUCCESS);
    EXPECT_TRUE(Names(top.Get(), false).empty() && Names(top.Get(), true).empty());
    EXPECT_EQ(Set(same.Get(), W("v")), ERROR_KEY_DELETED);
    EXPECT_EQ(Set(top.Get(), W("v")), ERROR_SUCCESS);
}

TEST_F(Registry, RefusesBadHandlesPathsAndRights) {
    UniqueKey key;
    for (const std::uintptr_t number : {std::uintptr_t{0}, std::uintptr_t{0x7FFC}, std::uintptr_t{0x80000009}}) {
        const auto handle = reinterpret_cast<HKEY>(number);  // NOLINT(performance-no-int-to-ptr): a handle is a number
        EXPECT_EQ(Open(handle, W("a"), key), ERROR_INVALID_HANDLE);
    }
    ASSERT_EQ(Create(HKEY_CURRENT_USER, W("a"), key), ERROR_SUCCESS);
    const HKEY closed = key.Get();
    key.Reset();
    EXPECT_EQ(RegCloseKey(closed), ERROR_INVALID_HANDLE);
    EXPECT_EQ(Set(closed, W("v")), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);

    const struct {
        Text path;
        LSTATUS status;
    } cases[] = {
        {W("\\a"), ERROR_BAD_PATHNAME},      {W("a\\\\b"), ERROR_BAD_PATHNAME},
        {W("a\\b\\\\"), ERROR_BAD_PATHNAME}, {Text(256, W('x')), ERROR_INVALID_PARAMETER},
        {Text(255, W('x')), ERROR_SUCCESS},  {W("a/b"), ERROR_SUCCESS},
    };
    for (const auto& c : cases) EXPECT_EQ(Create(HKEY_CURRENT_USER, c.path, key), c.status);
    EXPECT_EQ(Set(HKEY_CURRENT_USER, Text(16384, W('x'))), ERROR_INVALID_PARAMETER);

    ASSERT_EQ(Open(HKEY_CURRENT_USER, W("a"), key, KEY_READ), ERROR_SUCCESS);
    EXPECT_EQ(Set(key.Get(), W("v")), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteTreeW(key.Get(), nullptr), ERROR_ACCESS_DENIED);
    ASSERT_EQ(Open(HKEY_CURRENT_USER, W("a"), key, KEY_WRITE), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExW(key.Get(), W("v"), nullptr, nullptr, nullptr, nullptr), ERROR_ACCESS_DENIED);
}

}  // namespace
