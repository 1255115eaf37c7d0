// Wide text on both hosts: W("...") is a wchar_t literal where wchar_t has 16 bits, and a char16_t one elsewhere.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Two steps, so that W(__FILE__) works. MV_WIDE_PREFIX comes from the build.
#define MV_WIDE_PASTE(prefix, literal) prefix##literal
#define MV_WIDE_EXPAND(prefix, literal) MV_WIDE_PASTE(prefix, literal)
#define W(literal) MV_WIDE_EXPAND(MV_WIDE_PREFIX, literal)

// Of WCHAR, without the system's header.
using WideString = std::basic_string<decltype(W('a'))>;
using WideStringView = std::basic_string_view<decltype(W('a'))>;

// ASCII as wide text, for words that floors with either kind of text share: kWide<facts::kWord>.text.
template <std::size_t Units>
struct WideWord {
    explicit constexpr WideWord(const char (&ascii)[Units]) {
        for (std::size_t at = 0; at < Units; ++at) text[at] = static_cast<decltype(W('a'))>(ascii[at]);
    }
    decltype(W('a')) text[Units] = {};
};
template <const auto& Ascii>
inline constexpr auto kWide = WideWord(Ascii);
