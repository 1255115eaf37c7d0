// ValueNames: what the values of one model are called.
#pragma once

#include <mvcore/datamodelids.h>
#include <mvutil/textresources.h>

#include <string>
#include <unordered_map>

class ValueNames final : public MvValueNames {
public:
    explicit ValueNames(const ProductStringLoader& loader) : loader_(loader) {}

    // Page sizes, trays and media types bear the name that the model was given; other values the product's text of
    // their number; one without either its number.
    CXString GetDisplayString(DWORD value) const override;
    // The Print Schema keyword of a page size; else the letters and digits of the display string.
    CXString GetValueName(DWORD value) const override;

    void Add(DWORD value, const CXString& name) {  // the first name stays
        if (!pattern_ || !pattern_->names_.contains(value)) names_.try_emplace(value, name);
    }
    // Starts with the names that were given to those, which change no more and outlive these.
    void Follow(const ValueNames& pattern) noexcept { pattern_ = &pattern; }

private:
    const CXString* FindGiven(DWORD value) const;

    const ProductStringLoader& loader_;
    const ValueNames* pattern_ = nullptr;
    std::unordered_map<DWORD, CXString> names_;
};
