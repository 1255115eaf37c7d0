// The dictionary of page sizes: entries made once from the table, shared by all dictionaries.
#include "schemapagesizes.h"

#include <facts/units.h>
#include <products/pagesizes.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace {

// Sizes are the same when they are equal in whole millimetres.
LONG WholeMillimetres(const Dimension& dimension) {
    return dimension.GetValue(Dimension::Millimetres).GetLongValue(facts::kToNearest);
}

// A side in whole millimetres. Paper databases keep tenths of a millimetre, which can lead to another whole number than
// the side itself (263.525, kept as 263.5): the size is the same by either.
class WholeSide {
public:
    explicit WholeSide(LONG micrometres)
        : exact_(WholeMillimetres(Dimension(micrometres, Dimension::Micrometres))),
          fromTenths_(WholeMillimetres(Dimension(Dimension(micrometres, Dimension::Micrometres)
                                                     .GetValue(Dimension::TenthsOfMillimetre)
                                                     .GetLongValue(facts::kToNearest),
                                                 Dimension::TenthsOfMillimetre))) {}
    bool Is(LONG whole) const noexcept { return exact_ == whole || fromTenths_ == whole; }

private:
    LONG exact_;
    LONG fromTenths_;
};

class DictionaryEntry final : public PageSizeDictionaryEntry {
public:
    explicit DictionaryEntry(const PageSizeRow& row)
        : row_(&row), name_(row.name.begin(), row.name.end()), width_(row.width), length_(row.length) {}

    const WCHAR* GetMsPageMediaSizeOptionName() const override { return name_.c_str(); }
    bool IsPredefinedMsOptionName() const override { return true; }  // the table holds keywords only
    ValueId GetValueId() const override { return ValueId(row_->value); }
    PageSizeTypeEnum GetPageSizeType() const override { return row_->GetType(); }

    bool IsOfSize(LONG wholeWidth, LONG wholeLength) const noexcept {
        return !row_->IsCustom() && width_.Is(wholeWidth) && length_.Is(wholeLength);
    }

private:
    const PageSizeRow* row_;
    WideString name_;
    WholeSide width_;
    WholeSide length_;
};

const std::vector<DictionaryEntry>& SharedEntries() {
    static const std::vector<DictionaryEntry> entries(GetPageSizeTable().begin(), GetPageSizeTable().end());
    return entries;
}

class Dictionary final : public MvPageSizeDictionary {
public:
    void Destroy() noexcept override { std::default_delete<Dictionary>()(this); }
    std::size_t GetCount() const override { return entries_.size(); }
    const PageSizeDictionaryEntry* GetEntry(std::size_t index) const override {
        return index < entries_.size() ? &entries_[index] : nullptr;
    }
    std::size_t FindSize(const Dimension& width, const Dimension& length, std::size_t from) const override {
        const LONG wholeWidth = WholeMillimetres(width);
        const LONG wholeLength = WholeMillimetres(length);
        return Find(from, [&](const DictionaryEntry& entry) { return entry.IsOfSize(wholeWidth, wholeLength); });
    }
    std::size_t FindType(PageSizeTypeEnum type, std::size_t from) const override {
        return Find(from, [&](const DictionaryEntry& entry) { return entry.GetPageSizeType() == type; });
    }

private:
    template <class Predicate>
    std::size_t Find(std::size_t from, Predicate matches) const {
        const auto begin = entries_.begin() + static_cast<std::ptrdiff_t>(std::min(from, entries_.size()));
        return static_cast<std::size_t>(std::find_if(begin, entries_.end(), matches) - entries_.begin());
    }

    const std::vector<DictionaryEntry>& entries_ = SharedEntries();
};

}  // namespace

MvPageSizeDictionary* MakePageSizeDictionary() { return std::make_unique<Dictionary>().release(); }
