// Bytes as numbers and texts: CRC, Base64, ByteBuffer; and lengths with their units.
#include <mvutil/bytebuffer.h>
#include <mvutil/crc32.h>
#include <mvutil/dimension.h>
#include <mvutil/morvaneutilities.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <utility>

namespace {

TEST(Crc, IsTheUsualOneAndContinues) { EXPECT_EQ(Crc32::GetCrc("6789", 4, Crc32::GetCrc("12345", 5)), 0xCBF43926u); }

// The decoded bytes, or "failed".
std::string Decoded(const CXString& text) {
    const int characters = static_cast<int>(text.GetLength());
    int length = MorvaneUtilities::Base64DecodeGetRequiredLength(characters);
    std::string bytes(static_cast<std::size_t>(length), '\0');
    const bool done = MorvaneUtilities::Base64Decode(text, characters, reinterpret_cast<BYTE*>(bytes.data()), &length);
    EXPECT_TRUE(done || length == 0);
    bytes.resize(static_cast<std::size_t>(length));
    return done ? bytes : "failed";
}

TEST(Base64, DecodesWholeGroupsAndNothingElse) {
    const struct {
        const char* text;
        const char* bytes;
    } cases[] = {{"", ""},
                 {"Zg==", "f"},
                 {"Zm8=", "fo"},
                 {"Zm9v", "foo"},
                 {"Zm9vYg==", "foob"},
                 {" Z\tm\r\n9 v\n", "foo"},
                 {"Zm9vY\ng = =", "foob"},
                 {"+/+/", "\xFB\xFF\xBF"}};
    for (const auto& item : cases) EXPECT_EQ(Decoded(item.text), item.bytes) << item.text;
    for (const char* bad : {"Zg", "Zg=", "Z===", "====", "Zg===", "Zg==Zg==", "Zm=v", "Zm9v=", "Zm9vZ",
                            "Zh==", "Zm9=", "Zm-_", "Zm9v\xA0", "Zm\v9v", "Zm9v!"})
        EXPECT_EQ(Decoded(bad), "failed") << bad;
    EXPECT_EQ(Decoded(W("Zm9v\u0141\u0142\u0143\u0144")), "failed");  // units whose low bytes are digits
}

TEST(Base64, RefusesBadBuffers) {
    const BYTE bytes[] = {1, 2, 3, 4};
    WCHAR text[8] = {};
    const auto encodes = [&](const BYTE* data, int count, int room, DWORD flags) {
        return MorvaneUtilities::Base64Encode(data, count, text, &room, flags);
    };
    EXPECT_FALSE(encodes(bytes, 4, 7, 2) || encodes(nullptr, 4, 8, 2) || encodes(bytes, -1, 8, 2) ||
                 encodes(bytes, 4, 8, 0));
    EXPECT_EQ(text[0], WCHAR());
    for (const int count : {INT_MAX, -1}) EXPECT_EQ(MorvaneUtilities::Base64EncodeGetRequiredLength(count, 2), 0);
    BYTE out[5] = {};
    const auto decodes = [&](const WCHAR* digits, int room) {
        return MorvaneUtilities::Base64Decode(digits, 8, out, &room);
    };
    EXPECT_FALSE(decodes(W("Zm9vZm9v"), 5) || decodes(W("Zm9vZg=="), 3) || decodes(nullptr, 5));
}

TEST(Buffers, MayBeCutAndTakePartsOfThemselves) {
    EXPECT_EQ(ByteBuffer("a\0b", 3).getAsStringValue(), W("a"));
    EXPECT_EQ(ByteBuffer("\xFE\xFF\xFF", 3).getAsLongValue(), 0);
    ByteBuffer buffer("ab", 2);
    buffer.append(buffer);
    buffer.appendAscii(W("\u00E9\u20AC\u0416\x80"));
    EXPECT_EQ(buffer, ByteBuffer("abab\xE9\x80??", 8));
    buffer.setWithLpbyte(buffer.getLpbyte() + 2, 2);
    EXPECT_EQ(buffer, ByteBuffer("ab", 2));
}

TEST(Lengths, ConvertAndRound) {
    const struct {
        double value;
        int from, to;
        LONG wanted;
    } cases[] = {{2100, 6, 8, 210000}, {8.5, 0, 6, 2159}, {842, 9, 5, 297}, {425, 11, 8, 4250}};
    for (const auto& item : cases)
        EXPECT_EQ(Dimension(item.value, item.from).GetValue(item.to).GetLongValue(0.499999), item.wanted);
    const std::pair<double, LONG> numbers[] = {{1.5, 1},        {1.51, 2},        {-1.5, -2},
                                               {1e30, INT_MAX}, {-1e30, INT_MIN}, {std::nan(""), 0}};
    for (const auto& [value, wanted] : numbers) EXPECT_EQ(Number(value).GetLongValue(0.499999), wanted) << value;
    EXPECT_TRUE(Dimension::IsEquivalent(Dimension(499, 9), Dimension(1760, 6), 5, 0, 0.499999));
    EXPECT_FALSE(Dimension::IsEquivalent(Dimension(499, 9), Dimension(1770, 6), 5, 0, 0.499999));
    EXPECT_FALSE(Dimension::IsEquivalent(Dimension(1e30, 8), Dimension(-1e30, 8), 8, INT_MAX, 0));
}

}  // namespace
