// PersistentAttributes: attribute lists by namespace as one byte image.
//
// The image, little-endian: "MVAS", version (u16), unpacked length (u32), then a zlib stream and nothing more.
// Unpacked: the number of namespaces (u32), then for each, in ascending order, its id (u32), the length of its list
// (u32), the list.
#include <mvutil/persistentattributes.h>

#include "bytereader.h"

#include <cstring>
#include <memory>
#include <stdexcept>

#include <zlib.h>

namespace {

constexpr BYTE kHead[] = {'M', 'V', 'A', 'S', 1, 0};  // the mark and the version
constexpr std::size_t kHeaderBytes = sizeof(kHead) + 4;

constexpr DWORD kDataModelDocPropNameSpace = 1;
constexpr DWORD kMsDeviceCapabilitiesNameSpace = 2;

ByteBuffer Pack(const AttributeBytesNameSpaces& nameSpaces) {
    ByteBuffer unpacked;
    WriteDword(unpacked, static_cast<DWORD>(nameSpaces.GetNameSpaces().size()));
    for (const auto& [id, list] : nameSpaces.GetNameSpaces()) {
        ByteBuffer bytes;
        list.Encode(bytes);
        WriteDword(unpacked, id);
        WriteDword(unpacked, bytes.getDword());
        unpacked.append(bytes);
    }
    return unpacked;
}

bool ReadNameSpaces(ByteReader reader, AttributeBytesNameSpaces& nameSpaces) {
    DWORD count = 0;
    if (!reader.ReadDword(count)) return false;
    for (; count > 0; --count) {
        DWORD id = 0;
        DWORD length = 0;
        const BYTE* bytes = nullptr;
        AttributeBytesRawList list;
        if (!reader.ReadDword(id) || !reader.ReadDword(length) || !reader.ReadBytes(length, bytes)) return false;
        const auto& known = nameSpaces.GetNameSpaces();
        if (!known.empty() && id <= known.rbegin()->first) return false;
        if (!list.Decode(bytes, length)) return false;
        nameSpaces.SetNameSpaceAttributes(id, list);
    }
    return reader.GetLeft() == 0;
}

// The lists of an image; none at all when any byte of it is not as it must be.
AttributeBytesNameSpaces ReadImage(const ByteBuffer& image) {
    ByteReader reader(image.getLpbyte(), image.getDword());
    const BYTE* head = nullptr;
    DWORD unpackedLength = 0;
    if (!reader.ReadBytes(sizeof(kHead), head) || std::memcmp(head, kHead, sizeof(kHead)) != 0 ||
        !reader.ReadDword(unpackedLength)) {
        return {};
    }
    // No stream is empty (the count is always there), and zlib makes at most 1032 bytes of one.
    if (unpackedLength == 0 || unpackedLength > PersistentAttributes::kMaximumUnpackedBytes ||
        unpackedLength / 1032 > reader.GetLeft()) {
        return {};
    }
    const auto unpacked = std::make_unique_for_overwrite<BYTE[]>(unpackedLength);
    uLongf length = unpackedLength;
    auto packedLength = static_cast<uLong>(reader.GetLeft());
    if (uncompress2(unpacked.get(), &length, image.getLpbyte() + kHeaderBytes, &packedLength) != Z_OK ||
        length != unpackedLength || packedLength != reader.GetLeft()) {
        return {};
    }
    AttributeBytesNameSpaces nameSpaces;
    if (!ReadNameSpaces(ByteReader(unpacked.get(), unpackedLength), nameSpaces)) return {};
    return nameSpaces;
}

}  // namespace

PersistentAttributes::PersistentAttributes(const ByteBuffer& image, bool /*checkDriverVersion*/,
                                           const CXString* /*driverVersion*/)
    : nameSpaces_(ReadImage(image)) {}

DWORD PersistentAttributes::GetDataModelDocPropNameSpaceId() noexcept { return kDataModelDocPropNameSpace; }
DWORD PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId() noexcept { return kMsDeviceCapabilitiesNameSpace; }

void PersistentAttributes::GetAttributeBytesListForNameSpace(DWORD namespaceId, AttributeBytesRawList& list) const {
    const auto found = nameSpaces_.GetNameSpaces().find(namespaceId);
    list = found == nameSpaces_.GetNameSpaces().end() ? AttributeBytesRawList() : found->second;
}

void PersistentAttributes::SetAttributeBytesNameSpaces(const AttributeBytesNameSpaces& nameSpaces) {
    nameSpaces_ = nameSpaces;
}

void PersistentAttributes::GetPersistentAttributesState(ByteBuffer& image) const {
    const ByteBuffer unpacked = Pack(nameSpaces_);
    if (unpacked.getDword() > kMaximumUnpackedBytes)
        throw std::length_error("the attribute lists are too large to keep");
    ByteBuffer state(kHead, sizeof(kHead));
    WriteDword(state, unpacked.getDword());
    uLongf packedLength = compressBound(unpacked.getDword());
    state.resize(kHeaderBytes + packedLength);
    // The private block is small: the tightest packing pays.
    if (compress2(state.getLpbyte() + kHeaderBytes, &packedLength, unpacked.getLpbyte(), unpacked.getDword(),
                  Z_BEST_COMPRESSION) != Z_OK) {
        throw std::bad_alloc();
    }
    state.resize(kHeaderBytes + packedLength);
    image = std::move(state);
}

ByteBuffer PersistentAttributes::MakeState(DWORD namespaceId, const AttributeBytesRawList& list) {
    PersistentAttributes attributes(ByteBuffer(), false, nullptr);
    attributes.nameSpaces_.SetNameSpaceAttributes(namespaceId, list);
    ByteBuffer image;
    attributes.GetPersistentAttributesState(image);
    return image;
}
