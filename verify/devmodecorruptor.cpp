// Damage to a DEVMODE: the places worth damaging, and what they become.
#include "devmodecorruptor.h"

#include <mvutil/persistentattributes.h>
#include <privateblock.h>
#include <subsystem/devmodefields.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

using namespace privateblock;

namespace {

constexpr DWORD kEdges[] = {0,      1,      2,      0x7F,       0x80,       0xFF,       0x100,     0x7FFF,
                            0x8000, 0xFFFE, 0xFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
constexpr std::size_t kMostRandomEdits = 5;
constexpr std::size_t kLongestRun = 64;

std::string Hex(DWORD number) {
    char digits[8];
    const auto end = std::to_chars(digits, std::end(digits), number, 16).ptr;
    return "0x" + std::string(digits, end);
}

// As much of it as there are bytes for.
void Write(DevmodeBytes& bytes, std::size_t at, const void* data, std::size_t count) {
    if (at >= bytes.size()) return;
    std::copy_n(static_cast<const BYTE*>(data), std::min(count, bytes.size() - at),
                bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

// The number's low bytes, as many as the place has.
bool Fits(DWORD number, std::size_t bytes) { return bytes >= sizeof(DWORD) || number <= 0xFFFF; }

// Where this driver family's private block begins.
std::optional<std::size_t> FindBlock(const BYTE* devmode, std::size_t bytes, std::size_t publicBytes) {
    for (const Locator& locator : kLocators) {
        if (publicBytes + locator.areaMinimum >= bytes) continue;
        const std::size_t at = publicBytes + ReadWord(devmode + publicBytes + locator.wordOffset);
        if (at > publicBytes && at + kBytes <= bytes && ReadDword(devmode + at + kSignatureOffset) == kSignature)
            return at;
    }
    return std::nullopt;
}

}  // namespace

DevmodeBytes MakeDamaged(std::string_view devmode, const DevmodeEdits& edits) {
    DevmodeBytes bytes(devmode.begin(), devmode.end());
    for (const DevmodeEdit& edit : edits) edit.make(bytes);
    return bytes;
}

DevmodeCorruptor::DevmodeCorruptor(std::string_view devmode, std::mt19937_64& random)
    : devmode_(devmode), random_(random) {
    const auto* const bytes = reinterpret_cast<const BYTE*>(devmode_.data());
    publicBytes_ = ReadWord(bytes + offsetof(DEVMODEW, dmSize));
    block_ = FindBlock(bytes, devmode_.size(), publicBytes_);
    if (!block_) return;
    entries_.push_back(*block_ + kEntriesOffset);
    WalkEntries(bytes + *block_,
                [&](const Entry& entry) { entries_.push_back(entries_.back() + kEntryHeaderBytes + entry.length); });
}

std::vector<DevmodeEdits> DevmodeCorruptor::ListPublicEdges() const {
    const Place flags{"dmFields", offsetof(DEVMODEW, dmFields), sizeof(DWORD)};
    std::vector<DevmodeEdits> list;
    for (const DevmodeField& field : GetDevmodeFields()) {
        if (field.offset == offsetof(DEVMODEW, dmSize) || field.offset == offsetof(DEVMODEW, dmDriverExtra)) continue;
        if (field.kind == DevmodeFieldKind::Text) {
            for (const BYTE filler : {BYTE{0}, BYTE{0x41}, BYTE{0xD8}, BYTE{0xFF}}) {  // 0xD8D8: half a character
                const std::string text(field.GetBytes(), static_cast<char>(filler));
                list.push_back(
                    {{field.name + std::string(" is filled with ") + Hex(filler),
                      [text, at = field.offset](DevmodeBytes& bytes) { Write(bytes, at, text.data(), text.size()); }},
                     MakeNumber(flags, 0xFFFFFFFF)});
            }
            continue;
        }
        const Place place{field.name, field.offset, field.GetBytes()};
        for (const DWORD edge : kEdges)
            if (Fits(edge, place.bytes)) list.push_back({MakeNumber(place, edge), MakeNumber(flags, 0xFFFFFFFF)});
    }
    return list;
}

std::vector<DevmodeEdits> DevmodeCorruptor::ListSizes() const {
    const Place size{"dmSize", offsetof(DEVMODEW, dmSize), sizeof(WORD)};
    const Place extra{"dmDriverExtra", offsetof(DEVMODEW, dmDriverExtra), sizeof(WORD)};
    const DWORD whole = static_cast<DWORD>(devmode_.size()), extraBytes = whole - static_cast<DWORD>(publicBytes_);
    std::vector<DevmodeEdits> list;
    for (const DWORD lie : std::initializer_list<DWORD>{0, 1, 68, 71, 72, 75, 76, 188, 195, 196, 212, 219, 221, 224,
                                                        whole - 1, whole, whole + 1, 0x7FFF, 0xFFFF})
        list.push_back({MakeNumber(size, lie)});
    for (const DWORD lie : std::initializer_list<DWORD>{0, 1, 8, 9, 10, 11, 114, 116, 117, extraBytes - 1,
                                                        extraBytes + 1, extraBytes + 0x100, 0x7FFF, 0x8000, 0xFFFF})
        list.push_back({MakeNumber(extra, lie & 0xFFFF)});
    for (const std::size_t bytes : std::initializer_list<std::size_t>{
             0,   1,   64,  68,  70,  72,  76,        100,       195,       196,       219,         220,
             221, 230, 231, 334, 336, 337, whole / 2, whole - 4, whole - 1, whole + 1, whole + 4000}) {
        list.push_back({MakeSize(bytes)});
        if (bytes < offsetof(DEVMODEW, dmFields)) continue;
        // The same, but its sizes say so.
        const auto publicBytes = static_cast<DWORD>(std::min(bytes, publicBytes_));
        list.push_back({MakeSize(bytes), MakeNumber(size, publicBytes),
                        MakeNumber(extra, static_cast<DWORD>(bytes) - publicBytes)});
    }
    list.push_back({MakeNumber(size, 0xFFFF), MakeNumber(extra, 0xFFFF)});
    list.push_back({MakeNumber(size, 0), MakeNumber(extra, 0)});
    return list;
}

std::vector<DevmodeCorruptor::Place> DevmodeCorruptor::ListHeaderPlaces() const {
    std::vector<Place> places;
    for (const Locator& locator : kLocators)
        places.push_back({"the block's place", publicBytes_ + locator.wordOffset, sizeof(WORD)});
    if (!block_) return places;
    places.push_back({"the block's size", *block_ + kSizeOffset, sizeof(DWORD)});
    places.push_back({"the block's signature", *block_ + kSignatureOffset, sizeof(DWORD)});
    places.push_back({"the block's version", *block_ + kVersionOffset, sizeof(DWORD)});
    places.push_back({"the block's checksum", *block_ + kChecksumOffset, sizeof(DWORD)});
    places.push_back({"the number of entries", *block_ + kEntryCountOffset, sizeof(WORD)});
    for (std::size_t index = 0; index + 1 < entries_.size(); ++index) {
        const std::string entry = " of entry " + std::to_string(index);
        places.push_back({"the key" + entry, entries_[index], sizeof(WORD)});
        places.push_back({"the length" + entry, entries_[index] + 2, sizeof(WORD)});
        // A value may begin with marks, versions and lengths of its own.
        for (std::size_t at = 0; at < 16; at += sizeof(DWORD))
            places.push_back({"byte " + std::to_string(at) + entry, entries_[index] + kEntryHeaderBytes + at, 4});
    }
    return places;
}

std::vector<DevmodeEdits> DevmodeCorruptor::ListHeaders() const {
    std::vector<DevmodeEdits> list;
    for (const Place& place : ListHeaderPlaces())
        for (const DWORD edge : kEdges) {
            if (!Fits(edge, place.bytes)) continue;
            list.push_back({MakeNumber(place, edge)});
            if (block_) list.push_back({MakeNumber(place, edge), MakeRepairedChecksum()});
        }
    return list;
}

std::vector<DevmodeEdits> DevmodeCorruptor::ListPrivateFlips(std::size_t count) const {
    std::vector<DevmodeEdits> list;
    const std::size_t bytes = devmode_.size() - publicBytes_;
    if (bytes == 0) return list;
    count = std::min(count, bytes);
    for (std::size_t index = 0, first = Choose(bytes); index < count; ++index) {
        const std::size_t at = publicBytes_ + (first + index * bytes / count) % bytes;
        const BYTE changed = static_cast<BYTE>(~devmode_[at]);
        const DevmodeEdit edit{"byte " + std::to_string(at) + " becomes " + Hex(changed),
                               [at, changed](DevmodeBytes& devmode) { Write(devmode, at, &changed, 1); }};
        if (block_ && index % 2) {
            list.push_back({edit, MakeRepairedChecksum()});
        } else {
            list.push_back({edit});
        }
    }
    return list;
}

std::vector<DevmodeEdits> DevmodeCorruptor::ListOddAttributes(std::size_t count) const {
    std::vector<DevmodeEdits> list;
    for (; block_ && count > 0; --count) list.push_back({MakeOddAttributes(), MakeRepairedChecksum()});
    return list;
}

DevmodeEdits DevmodeCorruptor::MakeRandom() const {
    DevmodeEdits edits;
    for (std::size_t left = 1 + Choose(kMostRandomEdits); left > 0; --left) {
        switch (Choose(block_ ? 8 : 5)) {
            case 0: {
                const std::vector<Place> places = ListHeaderPlaces();
                edits.push_back(MakeNumber(places[Choose(places.size())], static_cast<DWORD>(random_())));
                break;
            }
            case 1:
                edits.push_back(MakeRandomRun());
                break;
            case 2:
                edits.push_back(MakeSwap());
                break;
            case 3:
                if (Choose(4) == 0) edits.push_back(MakeSize(Choose(devmode_.size() * 2)));
                [[fallthrough]];
            case 4:
                edits.push_back(MakeRandomNumber());
                break;
            case 5:
                edits.push_back(MakeSwappedEntries());
                break;
            case 6:
                edits.push_back(MakeOddAttributes());
                break;
            default:
                edits.push_back(MakeRepairedChecksum());
        }
    }
    if (block_ && Choose(3)) edits.push_back(MakeRepairedChecksum());
    return edits;
}

DevmodeEdit DevmodeCorruptor::MakeNumber(const Place& place, DWORD number) const {
    std::array<BYTE, sizeof(DWORD)> bytes;
    WriteDword(bytes.data(), number);
    if (place.bytes < sizeof(DWORD)) number &= 0xFFFF;
    return {place.name + " becomes " + Hex(number),
            [place, bytes](DevmodeBytes& devmode) { Write(devmode, place.at, bytes.data(), place.bytes); }};
}

DevmodeEdit DevmodeCorruptor::MakeRandomNumber() const {
    const std::size_t at = Choose(devmode_.size()), bytes = Choose(2) ? sizeof(DWORD) : sizeof(WORD);
    const DWORD number = Choose(2) ? kEdges[Choose(std::size(kEdges))] : static_cast<DWORD>(random_());
    return MakeNumber({"the number at byte " + std::to_string(at), at, bytes}, number);
}

DevmodeEdit DevmodeCorruptor::MakeRandomRun() const {
    const std::size_t at = Choose(devmode_.size());
    std::string run(1 + Choose(kLongestRun), '\0');
    const std::size_t kind = Choose(3);
    for (char& byte : run) byte = static_cast<char>(kind == 0 ? 0 : kind == 1 ? 0xFF : random_());
    return {std::to_string(run.size()) + " bytes at byte " + std::to_string(at) + " are overwritten",
            [at, run](DevmodeBytes& bytes) { Write(bytes, at, run.data(), run.size()); }};
}

DevmodeEdit DevmodeCorruptor::MakeSwap() const {
    const std::size_t length = 1 + Choose(kLongestRun);
    const std::size_t first = Choose(devmode_.size()), second = Choose(devmode_.size());
    return {std::to_string(length) + " bytes at byte " + std::to_string(first) + " and at " + std::to_string(second) +
                " change places",
            [first, second, length](DevmodeBytes& bytes) {
                for (std::size_t i = 0; i < length && std::max(first, second) + i < bytes.size(); ++i)
                    std::swap(bytes[first + i], bytes[second + i]);
            }};
}

DevmodeEdit DevmodeCorruptor::MakeSwappedEntries() const {
    if (entries_.size() < 3) return MakeSwap();
    const std::size_t index = Choose(entries_.size() - 2);
    return {"entries " + std::to_string(index) + " and " + std::to_string(index + 1) + " change places",
            [first = entries_[index], second = entries_[index + 1], end = entries_[index + 2]](DevmodeBytes& bytes) {
                if (end <= bytes.size())
                    std::rotate(bytes.begin() + static_cast<std::ptrdiff_t>(first),
                                bytes.begin() + static_cast<std::ptrdiff_t>(second),
                                bytes.begin() + static_cast<std::ptrdiff_t>(end));
            }};
}

DevmodeEdit DevmodeCorruptor::MakeSize(std::size_t bytes) const {
    return {"there are " + std::to_string(bytes) + " bytes of it",
            [bytes](DevmodeBytes& devmode) { devmode.resize(bytes, BYTE{0xCD}); }};
}

// A block of this one entry, of attributes of any feature, kind and value.
DevmodeEdit DevmodeCorruptor::MakeOddAttributes() const {
    AttributeBytesRawList list;
    const std::size_t count = 1 + Choose(20);
    for (std::size_t left = count; left > 0; --left) {
        const AttributeBytesFeatureId feature(static_cast<DWORD>(Choose(10) ? Choose(700) : random_()));
        const DWORD number = kEdges[Choose(std::size(kEdges))];
        switch (Choose(5)) {
            case 0:
                list.Append(feature, AttributeBytesBooleanValue(Choose(2) == 1));
                break;
            case 1:
                list.Append(feature, AttributeBytesOptionValue(AttributeBytesValueId(number), Choose(2) == 1));
                break;
            case 2:
                list.Append(feature, AttributeBytesStringValue(
                                         CXString(WideString(Choose(300), static_cast<WCHAR>(random_())))));
                break;
            case 3:
                list.Append(feature, AttributeBytesDataBlobValue(ByteBuffer(devmode_.data(), Choose(200))));
                break;
            default:
                list.Append(feature, AttributeBytesIntegerValue(static_cast<LONG>(number)));
        }
    }
    const ByteBuffer state =
        PersistentAttributes::MakeState(PersistentAttributes::GetDataModelDocPropNameSpaceId(), list);
    DevmodeBytes entry(sizeof(WORD) + kEntryHeaderBytes);
    WriteWord(entry.data(), 1);
    WriteWord(entry.data() + 2, kAttributeStateKey);
    WriteWord(entry.data() + 4, static_cast<WORD>(state.getDword()));
    entry.insert(entry.end(), state.getLpbyte(), state.getLpbyte() + state.getDword());
    return {"the block holds " + std::to_string(count) + " odd attributes",
            [at = *block_ + kEntryCountOffset, entry](DevmodeBytes& bytes) {
                Write(bytes, at, entry.data(), std::min(entry.size(), kBytes - kEntryCountOffset));
            }};
}

DevmodeEdit DevmodeCorruptor::MakeRepairedChecksum() const {
    return {"the checksum is repaired", [at = *block_](DevmodeBytes& bytes) {
                if (at + kBytes > bytes.size()) return;
                WriteDword(bytes.data() + at + kChecksumOffset, ComputeChecksum(bytes.data() + at));
            }};
}
