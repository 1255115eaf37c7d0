// What the registry's store has answered, for as long as nothing in it changes.
#include "answercache.h"

#include <textcodec.h>

#include <algorithm>

namespace mvplatform {
namespace {

constexpr std::size_t mostBytes = std::size_t{16} << 20;
constexpr std::size_t bytesOfEntry = 128;  // beside its texts and data, more or less

std::size_t SizeOf(WideStringView text) { return text.size() * sizeof(WCHAR) + bytesOfEntry; }

}  // namespace

KeyValues::KeyValues(std::vector<RegistryValue> values) : values_(std::move(values)), bytes_(bytesOfEntry) {
    byName_.reserve(values_.size());
    for (const RegistryValue& value : values_) {
        byName_.emplace(value.name, &value);
        bytes_ += SizeOf(value.name) + value.data.size();
    }
}

const RegistryValue* KeyValues::Find(WideStringView name) const {
    if (const auto found = byName_.find(name); found != byName_.end()) return found->second;
    const auto found = std::find_if(values_.begin(), values_.end(), [&](const RegistryValue& value) {
        return value.name.size() == name.size() && EqualRegistryNames(value.name, name);
    });
    return found == values_.end() ? nullptr : &*found;
}

void AnswerCache::Clear() noexcept {
    paths_.clear();
    missing_.clear();
    values_.clear();
    children_.clear();
    bytes_ = 0;
}

void AnswerCache::ForgetWhatIsMissing() noexcept {
    missing_.clear();
    children_.clear();
}

void AnswerCache::MakeRoom(std::size_t bytes) {
    if (bytes_ + bytes > mostBytes) Clear();
    bytes_ += bytes;
}

std::optional<KeyId> AnswerCache::FindKey(AnswerSource& source, KeyId key, WideStringView path) {
    if (const auto known = paths_.find(PathView(key, path)); known != paths_.end()) return known->second;
    if (missing_.contains(PathView(key, path))) return std::nullopt;
    const KeyPath names = ParseKeyPath(path);
    // What is asked for most often lies beside what was asked for before.
    const std::size_t parentEnd = names.size() < 2 ? 0 : path.rfind(W('\\'), path.size() - 2);
    const std::optional<KeyId> parent = parentEnd == 0 ? key : FindKey(source, key, path.substr(0, parentEnd));
    std::optional<KeyId> id;
    if (parent) {
        source.Ask([&](RegistryStore& store) {
            if (names.empty()) {
                store.RequireKey(*parent);
                id = parent;
            } else {
                id = store.FindChild(*parent, names.back());
            }
        });
    }
    MakeRoom(SizeOf(path));
    if (id) {
        paths_.emplace(Path(key, path), *id);
    } else {
        missing_.emplace(key, path);
    }
    return id;
}

const KeyValues& AnswerCache::GetValues(AnswerSource& source, KeyId key) {
    if (const auto known = values_.find(key); known != values_.end()) return known->second;
    std::vector<RegistryValue> values;
    source.Ask([&](RegistryStore& store) { values = store.ReadValues(key); });
    KeyValues read(std::move(values));
    MakeRoom(read.CountBytes());
    return values_.emplace(key, std::move(read)).first->second;
}

const std::vector<WideString>& AnswerCache::GetChildren(AnswerSource& source, KeyId key) {
    if (const auto known = children_.find(key); known != children_.end()) return known->second;
    std::vector<WideString> names;
    source.Ask([&](RegistryStore& store) { names = store.ReadChildNames(key); });
    std::size_t bytes = bytesOfEntry;
    for (const WideString& name : names) bytes += SizeOf(name);
    MakeRoom(bytes);
    return children_.emplace(key, std::move(names)).first->second;
}

}  // namespace mvplatform
