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

}  // namespace
