// The media handler of one model: page sizes by value and by size, trays with their numbers.
#pragma once

#include <mvcore/mediahandler.h>

#include "valuenames.h"

#include <cstdint>
#include <deque>
#include <map>
#include <unordered_map>
#include <vector>

class ModelMediaHandler final : public MediaHandler {
public:
    // Values of page sizes that are not the product's: this one and the form's number, or that one and the MS id of the
    // user's custom size, so that a size keeps its value whatever other sizes come and go.
    static constexpr DWORD kFirstFormValue = 0x10000;
    static constexpr DWORD kFirstUserSizeValue = 0x20000;

    explicit ModelMediaHandler(ValueNames& names) : names_(names) {}
    // An empty handler starts with the sizes and trays of that one, which changes no more and outlives it.
    void Follow(const ModelMediaHandler& pattern) noexcept { pattern_ = &pattern; }

    void GetPageSizes(std::vector<PageSize*>& sizes) override;
    void GetPageSizes(const Dimension& width, const Dimension& length, std::vector<PageSize*>& sizes) override;
    bool AnyExist(const Dimension& width, const Dimension& length) const override;
    PageSize* GetPageSize(const ValueId& value) override;
    PageSize& AddNewMsForm(const Dimension& width, const Dimension& length, const ValueId& units, bool isUserForm,
                           WORD number, const CXString& name) override;
    WORD GetMsTrayId(const ValueId& tray) const override;
    void SetMsTrayId(const ValueId& tray, WORD id) override;

    // A page size of the product's; its value must be new.
    PageSize& AddPageSize(DWORD value, PageSizeTypeEnum type, LONG width, LONG length, DWORD units, WORD msId,
                          const CXString& name);
    // A custom size that the user made; the number is its MS id.
    PageSize& AddUserSize(LONG width, LONG length, DWORD units, WORD number, const CXString& name);

private:
    using SizeKey = std::uint64_t;
    static SizeKey GetSizeKey(const Dimension& width, const Dimension& length);
    DWORD GetFreeValue(DWORD wanted);
    void TakePatternsSizes();
    void Keep(const PageSize& size);

    ValueNames& names_;
    const ModelMediaHandler* pattern_ = nullptr;
    bool sizesAreTaken_ = false;  // from the pattern, when they are first asked for
    std::deque<PageSize> sizes_;
    std::unordered_map<DWORD, PageSize*> byValue_;
    std::unordered_map<SizeKey, std::vector<PageSize*>> bySize_;
    std::map<DWORD, WORD> trays_;
};
