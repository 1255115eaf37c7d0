// Reading the media types that the core driver reports for a printer.
#pragma once

#include <mvutil/formatting.h>

#include <wingdi.h>

#include <array>
#include <cstddef>
#include <vector>

struct ReportedMediaType {
    DWORD number;
    CXString name;  // at most 64 characters
};

// Asks for DC_MEDIATYPES and DC_MEDIATYPENAMES. ask(capability, output) answers as DeviceCapabilitiesW does: the number
// of items, which it writes to the output unless that is null; 0 or -1 for none. An answer can be another than the one
// before it, as the caches behind it are rebuilt at any time: each array is made for what was announced just before,
// with room for ten more items. Empty when the two lists do not agree, also when asked once more.
template <class Ask>
std::vector<ReportedMediaType> ReadReportedMediaTypes(Ask ask) {
    constexpr int kSpareItems = 10;
    constexpr int kNameLength = 64;
    std::vector<DWORD> numbers;
    std::vector<std::array<WCHAR, kNameLength>> names;
    // The number of items that the array then holds; 0 or less for none.
    const auto fill = [&](WORD capability, auto& items) {
        const int announced = ask(capability, nullptr);
        if (announced <= 0) return 0;
        items.assign(static_cast<std::size_t>(announced) + kSpareItems, {});
        return ask(capability, reinterpret_cast<WCHAR*>(items.data()));
    };
    int numberCount = fill(DC_MEDIATYPES, numbers);
    if (numberCount <= 0) return {};
    int nameCount = fill(DC_MEDIATYPENAMES, names);
    if (nameCount > 0 && nameCount != numberCount && nameCount <= numberCount + kSpareItems) {
        numberCount = fill(DC_MEDIATYPES, numbers);
        nameCount = fill(DC_MEDIATYPENAMES, names);
    }
    if (numberCount <= 0 || nameCount != numberCount) return {};
    const std::size_t count = static_cast<std::size_t>(numberCount);
    if (count > numbers.size() || count > names.size()) return {};

    std::vector<ReportedMediaType> types(count);
    for (std::size_t index = 0; index < count; ++index) {
        types[index].number = numbers[index];
        types[index].name.Format(W("%.64s"), names[index].data());
    }
    return types;
}
