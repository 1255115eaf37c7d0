// KnownNames: one place for all names that fall on it, the last one's.
#include "domknownnames.h"

#include <cstring>

namespace dom {
namespace {

constexpr std::size_t kPlaces = 64;

// Names of one document differ in their length or their last letters.
std::size_t PlaceOf(LONG type, WideStringView name) noexcept {
    return (static_cast<std::size_t>(type) + 2 * name.size() + 31 * std::size_t{name.back()}) % kPlaces;
}

bool IsSame(WideStringView a, WideStringView b) noexcept {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(WCHAR)) == 0);
}

}  // namespace

const KnownName* KnownNames::Find(LONG type, WideStringView name, WideStringView uri) const noexcept {
    if (places_.empty() || name.empty()) return nullptr;
    const KnownName& known = places_[PlaceOf(type, name)];
    return known.type == type && IsSame(known.name, name) && IsSame(known.uri, uri) ? &known : nullptr;
}

void KnownNames::Keep(KnownName name) {
    if (places_.empty()) places_.resize(kPlaces);
    KnownName& place = places_[PlaceOf(name.type, name.name)];
    place = std::move(name);
}

}  // namespace dom
