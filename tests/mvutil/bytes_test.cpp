// Bytes as numbers and texts: CRC, Base64, ByteBuffer; and lengths with their units.
#include <mvutil/bytebuffer.h>
#include <mvutil/crc32.h>
#include <mvutil/dimension.h>
#include <mvutil/morvaneutilities.h>

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <stdexcept>

namespace {

TEST(Crc, IsTheUsualOneAndContinues) {
    EXPECT_EQ(Crc32::GetCrc("123456789", 9), 0xCBF43926u);
    EXPECT_EQ(Crc32::GetCrc("6789", 4, Crc32::GetCrc("12345", 5)), 0xCBF43926u);
    EXPECT_EQ(Crc32::GetCrc(nullptr, 0, 0x534B47B9), 0x534B47B9u);
}

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
                 {"+/+/", "\xFB\xFF\xBF"},
                 {"Zg", "failed"},
                 {"Zg=", "failed"},
                 {"Z===", "failed"},
                 {"====", "failed"},
                 {"Zg===", "failed"},
                 {"Zg==Zg==", "failed"},
                 {"Zm=v", "failed"},
                 {"Zm9v=", "failed"},
                 {"Zm9vZ", "failed"},
                 {"Zh==", "failed"},
                 {"Zm9=", "failed"},
                 {"Zm-_", "failed"},
                 {"Zm9v\xA0", "failed"},
                 {"Zm\v9v", "failed"},
                 {"Zm9v!", "failed"}};
    for (const auto& item : cases) EXPECT_EQ(Decoded(item.text), item.bytes) << item.text;
    EXPECT_EQ(Decoded(W("Zm9v\u0141\u0142\u0143\u0144")), "failed");  // units whose low bytes are digits
}

TEST(Base64, GivesBackWhatWasEncoded) {
    std::string bytes;
    for (int length = 0; length <= 260; ++length) {
        int characters = MorvaneUtilities::Base64EncodeGetRequiredLength(length, 2);
        ASSERT_EQ(characters, (length + 2) / 3 * 4);
        WideString text(static_cast<std::size_t>(characters) + 8, W('*'));
        int written = static_cast<int>(text.size());
        ASSERT_TRUE(MorvaneUtilities::Base64Encode(reinterpret_cast<const BYTE*>(bytes.c_str()), length, text.data(),
                                                   &written, 2));
        ASSERT_EQ(written, characters);
        ASSERT_EQ(text.substr(static_cast<std::size_t>(written)), WideString(8, W('*')));
        text.resize(static_cast<std::size_t>(written));
        ASSERT_EQ(Decoded(text), bytes);
        bytes += static_cast<char>(length * 7);
    }
}

TEST(Base64, RefusesBadBuffers) {
    const BYTE bytes[] = {1, 2, 3, 4};
    WCHAR text[8] = {};
    int room = 7;
    EXPECT_FALSE(MorvaneUtilities::Base64Encode(bytes, 4, text, &room, 2));
    EXPECT_EQ(room, 7);
    EXPECT_EQ(text[0], WCHAR());
    EXPECT_FALSE(MorvaneUtilities::Base64Encode(nullptr, 4, text, &room, 2));
    EXPECT_FALSE(MorvaneUtilities::Base64Encode(bytes, -1, text, &room, 2));
    room = 8;
    EXPECT_FALSE(MorvaneUtilities::Base64Encode(bytes, 4, text, &room, 0));
    EXPECT_EQ(MorvaneUtilities::Base64EncodeGetRequiredLength(INT_MAX, 2), 0);
    EXPECT_EQ(MorvaneUtilities::Base64EncodeGetRequiredLength(-1, 2), 0);
    EXPECT_EQ(MorvaneUtilities::Base64DecodeGetRequiredLength(-1), 0);
    BYTE out[5] = {};
    int length = 5;
    EXPECT_FALSE(MorvaneUtilities::Base64Decode(W("Zm9vZm9v"), 8, out, &length));
    length = 3;
    EXPECT_FALSE(MorvaneUtilities::Base64Decode(W("Zm9vZg=="), 8, out, &length));
    EXPECT_FALSE(MorvaneUtilities::Base64Decode(nullptr, 4, out, &length));
}

TEST(Buffers, HoldTextsAndNumbers) {
    ByteBuffer buffer("a\0b\0\0\0c\0x", 9);
    EXPECT_EQ(buffer.getAsStringValue(), W("ab"));
    EXPECT_EQ(ByteBuffer("a\0b", 3).getAsStringValue(), W("a"));
    EXPECT_EQ(ByteBuffer("\x41\x80\x81\x9F\xE9\0z", 7).getAsStringValueFromAnsiBuffer(),
              W("A\u20AC\u0081\u0178\u00E9"));
    EXPECT_EQ(ByteBuffer("\xFE\xFF\xFF\xFF\x01", 5).getAsLongValue(), -2);
    EXPECT_EQ(ByteBuffer("\xFE\xFF\xFF", 3).getAsLongValue(), 0);
    buffer.createFromLongValue(-123456789);
    EXPECT_EQ(buffer.getAsLongValue(), -123456789);
    buffer.createFromStringValue(W("hi"));
    EXPECT_EQ(buffer, ByteBuffer("h\0i\0\0", 6));
    buffer.setWithLpbyte("ab", 2);
    buffer.append(buffer);
    buffer.appendAscii(W("\u00E9\u20AC"));
    EXPECT_EQ(buffer, ByteBuffer("abab\xE9?", 6));
    buffer.setWithLpbyte(buffer.getLpbyte() + 2, 2);
    EXPECT_EQ(buffer, ByteBuffer("ab", 2));
    buffer.setWithLpbyte(nullptr, 5);
    EXPECT_TRUE(buffer.isEmpty());
}

TEST(Lengths, ConvertAndRound) {
    EXPECT_EQ(Dimension(2100, 6).GetValue(8).GetLongValue(0), 210000);
    EXPECT_EQ(Dimension(8.5, 0).GetValue(6).GetLongValue(0.499999), 2159);
    EXPECT_EQ(Dimension(842, 9).GetValue(5).GetLongValue(0.499999), 297);
    EXPECT_EQ(Dimension(425, 11).GetValue(8).GetIntValue(0.499999), 4250);
    EXPECT_EQ(Number(1.5).GetLongValue(0.499999), 1);
    EXPECT_EQ(Number(1.51).GetLongValue(0.499999), 2);
    EXPECT_EQ(Number(-1.5).GetLongValue(0.499999), -2);
    EXPECT_EQ(Number(1e30).GetLongValue(0), INT_MAX);
    EXPECT_EQ(Number(-1e30).GetLongValue(0), INT_MIN);
    EXPECT_EQ(Number(std::numeric_limits<double>::quiet_NaN()).GetLongValue(0), 0);
    EXPECT_TRUE(Dimension::IsEquivalent(Dimension(499, 9), Dimension(1760, 6), 5, 0, 0.499999));
    EXPECT_FALSE(Dimension::IsEquivalent(Dimension(499, 9), Dimension(1770, 6), 5, 0, 0.499999));
    EXPECT_FALSE(Dimension::IsEquivalent(Dimension(1e30, 8), Dimension(-1e30, 8), 8, INT_MAX, 0));
    EXPECT_THROW(Dimension(1, 7), std::invalid_argument);
    EXPECT_THROW(Dimension(1, 5).GetValue(-1), std::invalid_argument);
}

}  // namespace
