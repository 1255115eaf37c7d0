// Sections of profile files.
#include <support/temporaryfolder.h>
#include <widetext.h>
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Text = std::basic_string<WCHAR>;

std::string Utf16(const Text& text) {
    std::string bytes = "\xFF\xFE";
    for (const WCHAR unit : text) (bytes += static_cast<char>(unit & 0xFF)) += static_cast<char>(unit >> 8);
    return bytes;
}

class Profile : public testing::Test {
protected:
    void Write(const std::string& bytes) { folder_.Write("margins.ini", bytes); }
    // The section with its NULs, as a buffer of that many characters takes it; '#' stands where nothing was written.
    Text Read(LPCWSTR section, DWORD characters, DWORD& length, WCHAR slash = W('/')) const {
        Text path;
        for (const char unit : (folder_ / "margins.ini").string())
            path += unit == '/' ? slash : static_cast<WCHAR>(unit);
        Text buffer(characters, W('#'));
        length = GetPrivateProfileSectionW(section, buffer.data(), characters, path.c_str());
        return buffer;
    }

    const TemporaryFolder folder_;
};

TEST_F(Profile, ReadsEveryEncoding) {
    const Text wide = W("[A]\r\nn=\x00E9\xD83D\xDE00\r\n");
    const std::string utf8 = "[A]\nn=\xC3\xA9\xF0\x9F\x98\x80\n";
    const Text expected = Text(W("n=\x00E9\xD83D\xDE00")) + W('\0') + W('\0');
    for (const std::string& bytes : {Utf16(wide), utf8, "\xEF\xBB\xBF" + utf8}) {
        Write(bytes);
        DWORD length = 0;
        EXPECT_EQ(Read(W("A"), 7, length), expected);
        EXPECT_EQ(length, 6u);
        EXPECT_EQ(Read(W("a"), 7, length, W('\\')), expected);
    }
    DWORD length = 0;
    Write("[A]\nn=\xC3(\n");
    EXPECT_EQ(Read(W("A"), 6, length), Text(W("n=\xFFFD(\0\0"), 6));
}

TEST_F(Profile, ListsTheLinesOfTheFirstSectionOfThatName) {
    Write("x=0\n[Other]\ny=1\n [PostScript] ; sizes\n; no line\n\n  a = 1\t\r b;c=2\r\n[next]\nd=3\n[PostScript]\ne=4");
    DWORD length = 0;
    EXPECT_EQ(Read(W("postscript"), 14, length), Text(W("a = 1\0b;c=2\0\0#"), 14));
    EXPECT_EQ(length, 12u);
}

TEST_F(Profile, CutsASectionThatIsTooLong) {
    Write("[A]\nab=1\ncd=2\n");
    const struct {
        DWORD characters;
        DWORD length;
        Text buffer;
    } cases[] = {
        {11, 10, Text(W("ab=1\0cd=2\0\0"), 11)},
        {10, 8, Text(W("ab=1\0cd=\0\0"), 10)},
        {1, 0, Text(W("\0"), 1)},
    };
    for (const auto& c : cases) {
        DWORD length = 99;
        EXPECT_EQ(Read(W("A"), c.characters, length), c.buffer);
        EXPECT_EQ(length, c.length);
    }
}

TEST_F(Profile, AnswersNothingForWhatIsNotThere) {
    DWORD length = 99;
    EXPECT_EQ(Read(W("A"), 3, length), Text(W("\0\0#"), 3)) << "no file";
    EXPECT_EQ(length, 0u);
    Write("[AB]\nx=1\n[]\n");
    EXPECT_EQ(Read(W("A"), 3, length), Text(W("\0\0#"), 3));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
}

}  // namespace
