// DevmodeCorruptor: damage to a DEVMODE as lists of small edits, of which a failing one can be made shorter.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using DevmodeBytes = std::vector<BYTE>;

struct DevmodeEdit {
    std::string what;                         // "dmSize becomes 0xFFFF"
    std::function<void(DevmodeBytes&)> make;  // of bytes of any size
};
using DevmodeEdits = std::vector<DevmodeEdit>;

DevmodeBytes MakeDamaged(std::string_view devmode, const DevmodeEdits& edits);

// What it knows of this driver family's private block makes nastier damage; a DEVMODE without one is damaged as well.
class DevmodeCorruptor {
public:
    DevmodeCorruptor(std::string_view devmode, std::mt19937_64& random);

    // Every public field but the sizes at its edges, together with the flags of all fields.
    std::vector<DevmodeEdits> ListPublicEdges() const;
    // dmSize and dmDriverExtra that lie, and fewer or more bytes than they say.
    std::vector<DevmodeEdits> ListSizes() const;
    // Where the private block lies, its size, signature, version and checksum, the number of its entries, their keys
    // and lengths; what a checksum covers with the checksum repaired and not.
    std::vector<DevmodeEdits> ListHeaders() const;
    // Every byte of the private part changed, one at a time, beginning anywhere; as many as asked for.
    std::vector<DevmodeEdits> ListPrivateFlips(std::size_t count) const;
    // The block's attributes replaced by odd ones, which are as they must be in form.
    std::vector<DevmodeEdits> ListOddAttributes(std::size_t count) const;
    // A handful of edits of any kind.
    DevmodeEdits MakeRandom() const;

private:
    struct Place {
        std::string name;
        std::size_t at;
        std::size_t bytes;  // 2 or 4
    };

    std::size_t Choose(std::size_t count) const { return count ? static_cast<std::size_t>(random_() % count) : 0; }
    std::vector<Place> ListHeaderPlaces() const;
    DevmodeEdit MakeNumber(const Place& place, DWORD number) const;
    DevmodeEdit MakeRandomNumber() const;
    DevmodeEdit MakeRandomRun() const;
    DevmodeEdit MakeSwap() const;
    DevmodeEdit MakeSwappedEntries() const;
    DevmodeEdit MakeSize(std::size_t bytes) const;
    DevmodeEdit MakeOddAttributes() const;
    DevmodeEdit MakeRepairedChecksum() const;

    std::string devmode_;
    std::mt19937_64& random_;
    std::size_t publicBytes_;
    std::optional<std::size_t> block_;  // where it begins
    std::vector<std::size_t> entries_;  // where each begins, and where the last one ends
};
