// OptionValues: the values that an option feature offers, in their order.
#pragma once

#include <windows.h>

#include <unordered_map>
#include <vector>

class OptionValues {
public:
    const std::vector<DWORD>& GetListed() const noexcept { return listed_; }
    bool Accepts(DWORD value) const { return accepted_.contains(value); }
    bool Lists(DWORD value) const {
        const auto found = accepted_.find(value);
        return found != accepted_.end() && found->second;
    }
    // One that is listed already is not listed again.
    void Add(DWORD value) {
        bool& isListed = accepted_[value];
        if (!isListed) listed_.push_back(value);
        isListed = true;
    }
    // Lists these values alone, and keeps those that are not shown.
    void Replace(const std::vector<DWORD>& values) {
        for (const DWORD value : listed_) accepted_.erase(value);
        listed_.clear();
        for (const DWORD value : values) Add(value);
    }
    // A value that may be set and is not shown among the others.
    void AddUnlisted(DWORD value) { accepted_.try_emplace(value, false); }

private:
    std::vector<DWORD> listed_;
    std::unordered_map<DWORD, bool> accepted_;  // whether it is listed
};
