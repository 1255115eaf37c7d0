// .reg files: their text in both directions, and the store behind them.
#include <hosterror.h>
#include <regfile.h>

#include "hostrun.h"

namespace {

constexpr const char* kHeader = "Windows Registry Editor Version 5.00\r\n\r\n";

RegFile Parse(const std::string& body) { return ParseRegFile(kHeader + body); }

TEST(RegistryFile, EveryKindOfValueIsRead) {
    const RegFile file = Parse(
        "; a comment\r\n"
        "[HKEY_LOCAL_MACHINE\\Software\\A b]\r\n"
        "@=\"default\"\r\n"
        "\"quo\\\"ted\\\\\"=\"\\\\\\\"\"\r\n"
        "\"d\"=dword:0000001F\r\n"
        "  \"b\" = hex:01,\\\r\n"
        "  02,fF\r\n"
        "\"q\"=hex(b):01,00,00,00,00,00,00,00\r\n"
        "\"empty\"=hex(7):\r\n"
        "\"gone\"=-\r\n"
        "[-HKCU\\Old]\n"
        "[hkey_current_user]");
    ASSERT_EQ(file.size(), 3u);
    EXPECT_EQ(file[0].hive, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(file[0].path, W("Software\\A b"));
    using Bytes = std::vector<BYTE>;
    const struct {
        WideString name;
        bool remove;
        DWORD type;
        Bytes data;
    } expected[] = {
        {W(""), false, REG_SZ, {'d', 0, 'e', 0, 'f', 0, 'a', 0, 'u', 0, 'l', 0, 't', 0, 0, 0}},
        {W("quo\"ted\\"), false, REG_SZ, {'\\', 0, '"', 0, 0, 0}},
        {W("d"), false, REG_DWORD, {0x1F, 0, 0, 0}},
        {W("b"), false, REG_BINARY, {1, 2, 0xFF}},
        {W("q"), false, REG_QWORD, {1, 0, 0, 0, 0, 0, 0, 0}},
        {W("empty"), false, REG_MULTI_SZ, {}},
        {W("gone"), true, REG_NONE, {}},
    };
    ASSERT_EQ(file[0].values.size(), std::size(expected));
    for (std::size_t index = 0; index < std::size(expected); ++index) {
        const RegFileValue& value = file[0].values[index];
        EXPECT_EQ(value.name, expected[index].name) << index;
        EXPECT_EQ(value.remove, expected[index].remove) << index;
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

TEST(RegistryFile, ABadLineIsNamed) {
    const std::string key = "[HKLM\\A]\r\n";
    const struct {
        std::string file;
        int line;
    } cases[] = {
        {"", 1},
        {"REGEDIT4\r\n", 1},
        {kHeader + std::string("\"early\"=dword:1\r\n"), 3},
        {kHeader + std::string("[HKLM\\A\r\n"), 3},
        {kHeader + std::string("[HKEY_USERS\\A]\r\n"), 3},
        {kHeader + std::string("[-HKLM]\r\n"), 3},
        {kHeader + std::string("[HKLM\\A\\\\B]\r\n"), 3},
        {kHeader + std::string("[HKLM\\A\\]\r\n"), 3},
        {kHeader + std::string("[-HKLM\\A]\r\n\"v\"=\"\"\r\n"), 4},
        {kHeader + key + "\"v\"\r\n", 4},
        {kHeader + key + "\"v=1\r\n", 4},
        {kHeader + key + "\"v\"=\"open\r\n", 4},
        {kHeader + key + "\"v\"=\"a\"b\r\n", 4},
        {kHeader + key + "\"v\"=\"\\n\"\r\n", 4},
        {kHeader + key + "\"v\"=dword:\r\n", 4},
        {kHeader + key + "\"v\"=dword:123456789\r\n", 4},
        {kHeader + key + "\"v\"=dword:-1\r\n", 4},
        {kHeader + key + "\"v\"=hex:1g\r\n", 4},
        {kHeader + key + "\"v\"=hex:001\r\n", 4},
        {kHeader + key + "\"v\"=hex(:00\r\n", 4},
        {kHeader + key + "\"v\"=hex:00,\r\n", 4},
        {kHeader + key + "\"v\"=hex:00,\\\r\n", 4},
        {kHeader + key + "\"v\"=hex:00,\\\r\n  zz\r\n", 5},
        {kHeader + key + "\"v\xC3\"=\"\"\r\n", 4},
    };
    for (const auto& c : cases) {
        try {
            ParseRegFile(c.file);
            ADD_FAILURE() << "accepted: " << c.file;
        } catch (const InputError& error) {
            EXPECT_NE(std::string(error.what()).find("line " + std::to_string(c.line) + " "), std::string::npos)
                << c.file << "\n"
                << error.what();
        }
    }
}

TEST_F(HostRun, AnExportedStoreIsTheSameAfterItsImport) {
    Do({"printer", "add", "P", "--product", "press8434"});
    Do({"printer", "add", "Q", "--product", "office8430"});
    Do({"registry", "export", File("a.reg")});
    const std::string exported = Read("a.reg");

    Write("remove.reg", std::string(kHeader) + "[-HKLM\\SYSTEM\\CurrentControlSet\\Control\\Print]\r\n");
    Do({"registry", "import", File("remove.reg")});
    EXPECT_EQ(Run({"printer", "show", "P"}).status, 2);

    Do({"registry", "import", File("a.reg")});
    EXPECT_NE(Do({"printer", "show", "P"}).find("press8434.toml"), std::string::npos);
    Do({"registry", "export", File("b.reg")});
    EXPECT_EQ(Read("b.reg").size(), exported.size());
}

TEST_F(HostRun, ABadLastLineKeepsTheFirstOnesOut) {
    Write("half.reg", std::string(kHeader) + "[HKLM\\Software\\Half]\r\n\"a\"=dword:1\r\n\"b\"=dword:x\r\n");
    EXPECT_EQ(Run({"registry", "import", File("half.reg")}).status, 2);
    Do({"registry", "export", File("a.reg")});
    EXPECT_EQ(Read("a.reg").find(std::string("H\0a\0l\0f\0", 8)), std::string::npos);
}

}  // namespace
