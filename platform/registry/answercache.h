// What the registry's store has answered, for as long as nothing in it changes.
#pragma once

#include <widetext.h>
#include "registrystore.h"

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace mvplatform {

// Where an answer comes from that is not known yet.
class AnswerSource {
public:
    virtual void Ask(const std::function<void(RegistryStore&)>& question) = 0;

protected:
    ~AnswerSource() = default;
};

// All values of a key, in the order in which they were first written.
class KeyValues {
public:
    explicit KeyValues(std::vector<RegistryValue> values);
    KeyValues(KeyValues&&) = default;  // the values stay where they are
    KeyValues& operator=(KeyValues&&) = default;

    const RegistryValue* Find(WideStringView name) const;  // null when there is none
    const RegistryValue* At(std::size_t index) const { return index < values_.size() ? &values_[index] : nullptr; }
    std::size_t CountBytes() const noexcept { return bytes_; }

private:
    std::vector<RegistryValue> values_;
    std::unordered_map<WideStringView, const RegistryValue*> byName_;  // as they are written
    std::size_t bytes_ = 0;
};

// Used by one thread at a time. What is returned by reference lives until the next call.
class AnswerCache {
public:
    // The key at the end of the path (the key itself when that is empty), or nothing. Throws RegistryError.
    std::optional<KeyId> FindKey(AnswerSource& source, KeyId key, WideStringView path);
    const KeyValues& GetValues(AnswerSource& source, KeyId key);
    // The names of the keys below, by alphabet.
    const std::vector<WideString>& GetChildren(AnswerSource& source, KeyId key);

    void Clear() noexcept;
    void ForgetValues(KeyId key) { values_.erase(key); }
    void ForgetWhatIsMissing() noexcept;  // of the keys

private:
    using Path = std::pair<KeyId, WideString>;
    using PathView = std::pair<KeyId, WideStringView>;
    struct PathHash {
        using is_transparent = void;
        std::size_t operator()(const PathView& path) const noexcept {
            return std::hash<WideStringView>()(path.second) * 31 + static_cast<std::size_t>(path.first);
        }
        std::size_t operator()(const Path& path) const noexcept { return (*this)(PathView(path)); }
    };
    struct PathEqual {
        using is_transparent = void;
        bool operator()(const auto& left, const auto& right) const noexcept {
            return left.first == right.first && WideStringView(left.second) == WideStringView(right.second);
        }
    };

    void MakeRoom(std::size_t bytes);

    std::unordered_map<Path, KeyId, PathHash, PathEqual> paths_;
    std::unordered_set<Path, PathHash, PathEqual> missing_;
    std::unordered_map<KeyId, KeyValues> values_;
    std::unordered_map<KeyId, std::vector<WideString>> children_;
    std::size_t bytes_ = 0;
};

}  // namespace mvplatform
