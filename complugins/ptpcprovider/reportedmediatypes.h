// Reading the media types that the core driver reports for a printer.
#pragma once

#include <mvutil/formatting.h>

#include <wingdi.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <vector>

struct ReportedMediaType {
    DWORD number;
    CXString name;  // at most 64 characters
};

// The items of an answer, in an array with more room than they were announced to need.
template <class Item>
struct ReportedItems {
    static constexpr int kSpareItems = 10;
    static constexpr int kLeastRoom = 1024;

    // Asks for the announced items; the number of those that there are, 0 or less for none.
    template <class Ask>
    int Read(Ask ask, WORD capability, int announced) {
        if (announced <= 0) return 0;
        room = std::max(announced + kSpareItems, kLeastRoom);
        items = std::make_unique_for_overwrite<Item[]>(static_cast<std::size_t>(room));
        return ask(capability, reinterpret_cast<WCHAR*>(items.get()));
    }

    std::unique_ptr<Item[]> items;
    int room = 0;
};

// Asks for DC_MEDIATYPES and DC_MEDIATYPENAMES. ask(capability, output) answers as DeviceCapabilitiesW does: the number
// of items, which it writes to the output unless that is null; 0 or -1 for none. An answer can be another than the one
// before it, as the caches behind it are rebuilt at any time, and no call says how much room there is: each array is
// made for what the answer just before announced, and for many more. Empty when the two lists do not agree, also when
// asked once more.
template <class Ask>
std::vector<ReportedMediaType> ReadReportedMediaTypes(Ask ask) {
    ReportedItems<DWORD> numbers;
    ReportedItems<std::array<WCHAR, 64>> names;
    int numberCount = numbers.Read(ask, DC_MEDIATYPES, ask(DC_MEDIATYPES, nullptr));
    int nameCount = names.Read(ask, DC_MEDIATYPENAMES, numberCount);
    if (nameCount > 0 && nameCount != numberCount && nameCount <= numberCount + names.kSpareItems) {
        numberCount = numbers.Read(ask, DC_MEDIATYPES, nameCount);
        nameCount = names.Read(ask, DC_MEDIATYPENAMES, numberCount);
    }
    if (numberCount <= 0 || nameCount != numberCount) return {};
    if (numberCount > numbers.room || numberCount > names.room) return {};

    std::vector<ReportedMediaType> types(static_cast<std::size_t>(numberCount));
    for (std::size_t index = 0; index < types.size(); ++index) {
        types[index].number = numbers.items[index];
        types[index].name.Format(W("%.64s"), names.items[index].data());
    }
    return types;
}
