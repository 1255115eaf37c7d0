// Text that is not well-formed, in each of the ways, and names whose cases differ.
#include <textcodec.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

TEST(TextCodec, DoesWithBadTextWhatItsCallerNames) {
    const WideString halves = {0xD800, 'a', 0xDC00, 0xD83D, 0xDE00};
    const std::string kept = Utf8FromWide(halves, BadText::Keep);
    EXPECT_EQ(kept, "\xED\xA0\x80\x61\xED\xB0\x80\xF0\x9F\x98\x80");
    EXPECT_EQ(WideFromUtf8(kept, BadText::Keep), halves);
    EXPECT_EQ(WideFromUtf8("\xED\xA0", BadText::Keep), W("\uFFFD\uFFFD"));
    EXPECT_FALSE(IsUtf8(kept));
    EXPECT_THROW(Utf8FromWide(halves, BadText::Refuse), std::range_error);
    EXPECT_THROW(WideFromUtf8(kept, BadText::Refuse), std::range_error);
    const WideString sound = W("A\u00E9\u20AC\U0001F5A8");
    EXPECT_EQ(WideFromUtf8(Utf8FromWide(sound, BadText::Refuse), BadText::Refuse), sound);
}

TEST(TextCodec, FoldsEachLetterOfANameAndTheAsciiOfAWord) {
    EXPECT_TRUE(EqualRegistryNames(W("Dru\u010Dke \u0416\u03B1"), W("DRU\u010CKE \u0436\u0391")));
    EXPECT_FALSE(EqualRegistryNames(W("\u212Aey"), W("key")));  // the sign of kelvins is no letter of ASCII
    EXPECT_LT(CompareRegistryNames(W("a"), W("AB")), 0);
    EXPECT_EQ(LowerSchemaWord("Utf-8 \xC3\x89"), "utf-8 \xC3\x89");
}

}  // namespace
