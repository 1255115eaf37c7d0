// CXString: formatting, edits, and the way to and from UTF-8.
#include <mvutil/morvaneutilities.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

template <class... Arguments>
std::string Formatted(const WCHAR* format, const Arguments&... arguments) {
    return MorvaneUtilities::SafeFormatString(format, arguments...).ToUtf8();
}

TEST(Formatting, WritesWhatPrintfWould) {
    EXPECT_EQ(Formatted(W("%d|%i|%5d|%-5d|%05d|%+d|% d|%.3d"), 7, -7, 42, 42, -42, 3, 3, 5),
              "7|-7|   42|42   |-0042|+3| 3|005");
    EXPECT_EQ(Formatted(W("%-05d|%9d|%10d|%.9d|%0+4d|%-+5d|%u"), 42, 7, 7, 7, 7, 7, std::int16_t{-1}),
              "42   |        7|         7|000000007|+007|+7   |65535");
    EXPECT_EQ(Formatted(W("%d %i %hd %ld"), std::int16_t{-1}, std::int8_t{-1}, 5, 6), "-1 -1 5 6");
    EXPECT_EQ(Formatted(W("%f|%.2f|%8.1f|%-8.1f|%08.3f|%.0f"), 1.5, 2.345, -0.25, 3.0, -1.5, 1e22),
              "1.500000|2.35|    -0.2|3.0     |-001.500|10000000000000000000000");
    EXPECT_EQ(Formatted(W("[%5s][%-5s][%.2s][%s]"), W("ab"), W("ab"), W("abc"), static_cast<const WCHAR*>(nullptr)),
              "[   ab][ab   ][ab][]");
    const WCHAR field[3] = {W('a'), W('b'), W('c')};  // without a terminator, as in fixed records
    EXPECT_EQ(Formatted(W("%.3s"), static_cast<const WCHAR*>(field)), "abc");
    // Integers show in their own width.
    EXPECT_EQ(Formatted(W("%08X %x %u"), static_cast<HRESULT>(0x80004005), std::int16_t{-1}, std::int8_t{-1}),
              "80004005 ffff 255");
    EXPECT_EQ(Formatted(W("%d %d %d"), DWORD{0xFFFFFFFF}, WORD{0xFFFF}, true), "-1 65535 1");
}

TEST(Formatting, RefusesWhatDoesNotFitAndKeepsTheText) {
    const FormatArgument integer(1);
    const FormatArgument real(1.0);
    const FormatArgument text(W("x"));
    const struct {
        const WCHAR* format;
        const FormatArgument& argument;
        std::size_t count;
    } cases[] = {{W("%s"), integer, 1},  {W("%d"), text, 1},       {W("%f"), integer, 1},   {W("%u"), real, 1},
                 {W("%p"), text, 1},     {W("%c"), text, 1},       {W("%d"), integer, 0},   {W("%d%d"), integer, 1},
                 {W("%"), integer, 1},   {W("%5"), integer, 1},    {W("%n"), integer, 1},   {W("%*d"), integer, 1},
                 {W("%4097d"), text, 1}, {W("%.99999f"), real, 1}, {W("%I32d"), integer, 1}};
    for (const auto& item : cases) {
        CXString kept(W("kept"));
        EXPECT_THROW(kept.FormatList(item.format, &item.argument, item.count), std::invalid_argument)
            << CXString(item.format).ToUtf8();
        EXPECT_EQ(kept.ToUtf8(), "kept");
    }
}

TEST(CXStringEdits, CutCountsToTheText) {
    const CXString text(W("abcabc"));
    EXPECT_EQ(text.Left(99) + text.Left(-1), text);
    EXPECT_EQ(text.Mid(4) + text.Mid(9) + text.Mid(-3, 1) + text.Mid(1, 2), W("bcabc"));
    CXString edited = text;
    EXPECT_EQ(edited.Replace(W("bc"), W("bcbc")), 2);
    EXPECT_EQ(edited.Replace(CXString(), W("x")), 0);
    EXPECT_EQ(edited.Delete(1, 4), 6);
    EXPECT_EQ(edited.Delete(4, 99), 4);
    edited.Format(W("<%s>"), edited);  // its own text as an argument
    EXPECT_EQ(edited + W('/') + W("x"), W("<aabc>/x"));
}

TEST(CXStringEdits, CompareAndFoldAsciiAndLatin1) {
    EXPECT_EQ(CXString(W("Excel.EXE\u00C9")).CompareNoCase(W("excel.exe\u00E9")), 0);
    EXPECT_NE(CXString(W("\u00D7")).CompareNoCase(W("\u00F7")), 0);  // the signs of multiplication and division
    EXPECT_FALSE(CXString(W("1\u0661")).IsContainNumericCharsOnly());
}

TEST(Utf8, GoesBothWaysAndReplacesWhatIsMalformed) {
    const CXString all(W("A\u00E9\u20AC\U0001F5A8"));
    EXPECT_EQ(all.ToUtf8(), "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x96\xA8");
    EXPECT_EQ(CXString::FromUtf8(all.ToUtf8()), all);
    const WCHAR lone[] = {0xD800, W('a'), 0xDC00, 0xD83D};
    EXPECT_EQ(CXString(lone, 4).ToUtf8(),
              "\xEF\xBF\xBD"
              "a"
              "\xEF\xBF\xBD\xEF\xBF\xBD");
    const struct {
        const char* bytes;
        const WCHAR* text;
    } malformed[] = {{"\xC0\xAF", W("\uFFFD\uFFFD")},            // overlong
                     {"\xED\xA0\x80", W("\uFFFD\uFFFD\uFFFD")},  // a surrogate
                     {"\xF4\x90\x80\x80", W("\uFFFD\uFFFD\uFFFD\uFFFD")},
                     {"\xE2\x82q", W("\uFFFDq")},  // cut short
                     {"\xF0\x9F\x96", W("\uFFFD")},
                     {"\xFF", W("\uFFFD")}};
    for (const auto& item : malformed) EXPECT_EQ(CXString::FromUtf8(item.bytes), item.text) << item.bytes;
}

}  // namespace
