// BSTRs and VARIANTs.
#include <bstr.h>
#include <livecounts.h>
#include <widetext.h>

#include <gtest/gtest.h>

#include <cstring>

namespace {

using View = std::basic_string_view<WCHAR>;

TEST(Bstr, CarriesItsLengthInBytesAndEndsWithNul) {
    const View texts[] = {W(""), W("A4"), View(W("a\0b"), 3), W("\xD83D\xDE00"), View(W("\xD800"), 1)};
    for (const View text : texts) {
        const Bstr bstr(text);
        UINT bytes = 0;
        std::memcpy(&bytes, reinterpret_cast<const char*>(bstr.Get()) - 4, 4);
        EXPECT_EQ(bytes, text.size() * 2);
        EXPECT_EQ(bstr.View(), text);
        EXPECT_EQ(bstr.Get()[text.size()], 0);
    }
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
}

TEST(Variant, CopyOwnsItsText) {
    Variant copy;
    {
        const Variant original(View(W("a\0b"), 3));
        VARIANT source = original.Get();
        ASSERT_EQ(VariantCopy(copy.Put(), &source), S_OK);
        EXPECT_NE(copy.Get().bstrVal, source.bstrVal);
    }
    EXPECT_EQ(copy.Text(), View(W("a\0b"), 3));
    VARIANT empty;
    VariantInit(&empty);
    ASSERT_EQ(VariantCopy(copy.Put(), &empty), S_OK);
    EXPECT_EQ(copy.Get().vt, VT_EMPTY);
}

}  // namespace
