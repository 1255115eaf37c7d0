// DomScope: what prefixes stand for while a tree is gone through, element by element.
#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

namespace dom {

// The prefixes' texts must outlive the scope.
template <class Meaning>
class DomScope {
public:
    void OpenElement() { marks_.push_back(declared_.size()); }
    // Declares for the element opened last, or for all.
    void Declare(std::string_view prefix, Meaning meaning) {
        std::vector<Meaning>& meanings = meanings_[prefix];
        declared_.push_back(&meanings);
        meanings.push_back(meaning);
    }
    void CloseElement() {
        for (; declared_.size() > marks_.back(); declared_.pop_back()) declared_.back()->pop_back();
        marks_.pop_back();
    }
    // Null for a prefix that is not declared.
    const Meaning* Find(std::string_view prefix) const {
        const auto found = meanings_.find(prefix);
        return found == meanings_.end() || found->second.empty() ? nullptr : &found->second.back();
    }

private:
    std::unordered_map<std::string_view, std::vector<Meaning>> meanings_;  // the innermost last
    std::vector<std::vector<Meaning>*> declared_;
    std::vector<std::size_t> marks_;
};

}  // namespace dom
