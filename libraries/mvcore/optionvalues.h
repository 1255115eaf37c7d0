// OptionValues: the values that an option feature offers, in their order.
#pragma once

#include <windows.h>

#include <unordered_map>
#include <vector>

class OptionValues {
public:
    const std::vector<DWORD>& GetListed() const noexcept { return listed_; }
    bool Accepts(DWORD value) const { return accepted_.contains(value); }
    // Whether the value was not listed yet.
    bool Add(DWORD value) {
        bool& isListed = accepted_[value];
        if (isListed) return false;
        isListed = true;
        listed_.push_back(value);
        return true;
    }
    // Lists these values alone, and keeps those that are not shown. Whether that changes anything.
    bool Replace(const std::vector<DWORD>& values) {
        if (values == listed_) return false;
        for (const DWORD value : listed_) accepted_.erase(value);
        listed_.clear();
        for (const DWORD value : values) Add(value);
        return true;
    }
    // A value that may be set and is not shown among the others.
    void AddUnlisted(DWORD value) { accepted_.try_emplace(value, false); }

private:
    std::vector<DWORD> listed_;
    std::unordered_map<DWORD, bool> accepted_;  // whether it is listed
};
