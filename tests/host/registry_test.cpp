// .reg files: their text in both directions, and the store behind them.
#include <subsystem/hosterror.h>
#include <subsystem/regfile.h>

#include "hostrun.h"

namespace {

constexpr const char* kHeader = "Windows Registry Editor Version 5.00\r\n\r\n";

RegFile Parse(const std::string& body) { return ParseRegFile(kHeader + body); }

TEST(RegistryFile, EveryKindOfValueIsRead) {
    const RegFile file = Parse(
        "; a comment\r\n"
        "[HKEY_LOCAL_MACHINE\\Software\\A b] ; with a blank\r\n"
        "@=\"d\" ; in quotes\r\n"
        "\"quo\\\"ted\\\\\"=\"\\\\\\\"\"\r\n"
        "\"d\"=dword:0000001F;31\r\n"
        "  \"b\" = hex:01,\\ ; and more\r\n"
        "  02,fF\r\n"
        "\"q\"=hex(b):01,00,00,00,00\r\n"
        "\"empty\"=hex(7):\r\n"
        "\"gone\"=- ; away\r\n"
        "[-HKCU\\Old]\n"
        "[hkey_current_user]");
    ASSERT_EQ(file.size(), 3u);
    EXPECT_EQ(file[0].hive, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(file[0].path, W("Software\\A b"));
    const struct {
        const WCHAR* name;
        DWORD type;
        std::vector<BYTE> data;
    } expected[] = {
        {W(""), REG_SZ, {'d', 0, 0, 0}},
        {W("quo\"ted\\"), REG_SZ, {'\\', 0, '"', 0, 0, 0}},
        {W("d"), REG_DWORD, {0x1F, 0, 0, 0}},
        {W("b"), REG_BINARY, {1, 2, 0xFF}},
        {W("q"), REG_QWORD, {1, 0, 0, 0, 0}},
        {W("empty"), REG_MULTI_SZ, {}},
        {W("gone"), REG_NONE, {}},
    };
    ASSERT_EQ(file[0].values.size(), std::size(expected));
    for (std::size_t index = 0; index < std::size(expected); ++index) {
        const RegFileValue& value = file[0].values[index];
        EXPECT_EQ(value.name, expected[index].name) << index;
        EXPECT_EQ(value.remove, value.type == REG_NONE) << index;
        EXPECT_EQ(value.type, expected[index].type) << index;
        EXPECT_EQ(value.data, expected[index].data) << index;
    }
    EXPECT_TRUE(file[1].remove);
    EXPECT_EQ(file[1].hive, HKEY_CURRENT_USER);
    EXPECT_TRUE(file[2].path.empty());

    // The text that the host writes reads back as the same, byte for byte.
    const std::string text = FormatRegFile(file);
    EXPECT_TRUE(text.starts_with("\xFF\xFE"));
    EXPECT_EQ(FormatRegFile(ParseRegFile(text)), text);
}

void ExpectBadLine(const std::string& file, int line) {
    try {
        ParseRegFile(file);
        ADD_FAILURE() << "accepted: " << file;
    } catch (const InputError& error) {
        EXPECT_NE(std::string(error.what()).find("line " + std::to_string(line) + " "), std::string::npos)
            << file << "\n"
            << error.what();
    }
}

TEST(RegistryFile, ABadLineIsNamed) {
    const std::pair<const char*, int> cases[] = {
        {"\"early\"=dword:1", 3}, {"[HKLM\\A", 3},    {"[HKEY_USERS\\A]", 3},    {"[-HKLM]", 3},
        {"[HKLM\\A\\\\B]", 3},    {"[HKLM\\A\\]", 3}, {"[-HKLM\\A]\n@=\"\"", 4}, {"[HKLM\\A]\n\"v\"", 4},
    };
    for (const auto& [body, line] : cases) ExpectBadLine(kHeader + std::string(body), line);
    ExpectBadLine("", 1);
    ExpectBadLine("REGEDIT4\r\n", 1);
    for (const char* value : {"=1", "=\"open", "=\"a\"b", "=\"\\n\"", "=dword:", "=dword:123456789", "=dword:-1",
                              "=hex:1g", "=hex:001", "=hex(:00", "=hex:00,", "=hex:00,\\", "\xC3=\"\""})
        ExpectBadLine(kHeader + std::string("[HKLM\\A]\r\n\"v\"") + value + "\r\n", 4);
    ExpectBadLine(kHeader + std::string("[HKLM\\A]\r\n@=hex:00,\\\r\n  zz\r\n"), 5);
}

TEST_F(HostRun, AnExportedStoreIsTheSameAfterItsImport) {
    Do({"printer", "add", "P", "--product", "press8434"});
    Do({"printer", "add", "Q", "--product", "office8430"});
    Do({"registry", "export", File("a.reg")});
    const std::string exported = Read("a.reg");

    Write("remove.reg", std::string(kHeader) + "[-HKLM\\SYSTEM\\CurrentControlSet\\Control\\Print]\r\n");
    Do({"registry", "import", File("remove.reg")});
    EXPECT_EQ(Run({"printer", "show", "P"}).status, 1);

    Do({"registry", "import", File("a.reg")});
    EXPECT_NE(Do({"printer", "show", "P"}).find("press8434.toml"), std::string::npos);
    Do({"registry", "export", File("b.reg")});
    EXPECT_EQ(Read("b.reg").size(), exported.size());
}

TEST_F(HostRun, ABadLastLineKeepsTheFirstOnesOut) {
    Do({"registry", "import", Write("none.reg", kHeader)});
    Write("half.reg", std::string(kHeader) + "[HKLM\\Software\\Half]\r\n\"a\"=dword:1\r\n\"b\"=dword:x\r\n");
    EXPECT_EQ(Run({"registry", "import", File("half.reg")}).status, 2);
    Do({"registry", "export", File("a.reg")});
    EXPECT_EQ(Read("a.reg").find(std::string("H\0a\0l\0f\0", 8)), std::string::npos);
}

}  // namespace
