// The capability caches, as the core driver reads them.
#include "cacheskey.h"
#include "capabilityanswers.h"
#include "spoolererror.h"
#include "spoolerregistry.h"

#include <namefield.h>

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

// CRC-32 of the bytes with the check word taken as zero.
DWORD ComputeCheck(const std::vector<BYTE>& blob, std::size_t checkOffset) {
    constexpr BYTE kZero[sizeof(DWORD)] = {};
    uLong crc = crc32_z(kCapabilityCacheCrcStart, blob.data(), checkOffset);
    crc = crc32_z(crc, kZero, sizeof kZero);
    const std::size_t rest = checkOffset + sizeof kZero;
    return static_cast<DWORD>(crc32_z(crc, blob.data() + rest, blob.size() - rest));
}

template <class Record>
Record RecordAt(const std::vector<BYTE>& blob, std::size_t offset) {
    Record record;
    std::memcpy(&record, blob.data() + offset, sizeof record);
    return record;
}

int PackExtent(SHORT width, SHORT length) { return static_cast<WORD>(width) | static_cast<WORD>(length) << 16; }

std::optional<int> PositiveNumber(DWORD number) {
    if (number > static_cast<DWORD>(std::numeric_limits<int>::max())) return std::nullopt;
    return static_cast<int>(number);
}

}  // namespace

CapabilityCaches::CapabilityCaches(const WideString& port) : path_(GetCachesKey(port)) {}

std::optional<CapabilityCaches::Blob> CapabilityCaches::ReadBlob(const WCHAR* name, std::size_t minimumBytes,
                                                                 std::size_t checkOffset) const {
    for (const HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        const UniqueKey key = OpenKey(path_, hive);
        auto value = key ? ReadValue(key, name) : std::nullopt;
        if (!value || value->type != REG_BINARY || value->bytes.size() < minimumBytes) continue;
        if (RecordAt<DWORD>(value->bytes, checkOffset) == ComputeCheck(value->bytes, checkOffset))
            return std::move(value->bytes);
    }
    return std::nullopt;
}

template <class Header, class Record>
std::optional<std::vector<Record>> CapabilityCaches::ReadRecords(const WCHAR* name) const {
    const auto blob = ReadBlob(name, sizeof(Header), offsetof(Header, check));
    if (!blob) return std::nullopt;
    const DWORD count = RecordAt<Header>(*blob, 0).count;
    if (count > (blob->size() - sizeof(Header)) / sizeof(Record)) return std::nullopt;
    std::vector<Record> records(count);
    if (count != 0) std::memcpy(records.data(), blob->data() + sizeof(Header), count * sizeof(Record));
    return records;
}

std::optional<std::vector<PaperAnswer>> CapabilityCaches::ReadPapers() const {
    const auto records = ReadRecords<PaperCapsHeader, _tag_FormsInfoRec>(kPaperCapsValue);
    if (!records) return std::nullopt;
    std::vector<PaperAnswer> papers;
    for (const _tag_FormsInfoRec& record : *records)
        papers.push_back({record.msPaperId, record.width, record.length, WideString(GetNameField(record.name))});
    return papers;
}

std::optional<std::vector<NumberedName>> CapabilityCaches::ReadBins() const {
    const auto records = ReadRecords<ListCapsHeader, BinCapsRecord>(kBinCapsValue);
    if (!records) return std::nullopt;
    std::vector<NumberedName> bins;
    for (const BinCapsRecord& record : *records) bins.push_back({record.number, WideString(GetNameField(record.name))});
    return bins;
}

std::optional<std::vector<NumberedName>> CapabilityCaches::ReadMediaTypes() const {
    const auto records = ReadRecords<ListCapsHeader, MediaCapsRecord>(kMediaCapsValue);
    if (!records) return std::nullopt;
    std::vector<NumberedName> types;
    for (const MediaCapsRecord& record : *records)
        types.push_back({record.number, WideString(GetNameField(record.name))});
    return types;
}

std::optional<std::vector<WideString>> CapabilityCaches::ReadPapersReady() const {
    const auto records = ReadRecords<ListCapsHeader, MediaReadyRecord>(kMediaReadyValue);
    if (!records) return std::nullopt;
    std::vector<WideString> names;
    for (const MediaReadyRecord& record : *records) names.emplace_back(GetNameField(record.paperName));
    return names;
}

std::optional<std::vector<WideString>> CapabilityCaches::ReadDependentFiles() const {
    const auto records = ReadRecords<ListCapsHeader, DependentFileRecord>(kDependentFilesValue);
    if (!records) return std::nullopt;
    std::vector<WideString> names;
    for (const DependentFileRecord& record : *records) names.emplace_back(GetNameField(record.name));
    return names;
}

std::optional<std::vector<ResolutionAnswer>> CapabilityCaches::ReadResolutions() const {
    const auto records = ReadRecords<ResolutionCapsHeader, _tag_ResolutionInfoRec>(kResolutionsValue);
    if (!records) return std::nullopt;
    std::vector<ResolutionAnswer> resolutions;
    for (const _tag_ResolutionInfoRec& record : *records) resolutions.push_back({record.crossFeed, record.feed});
    return resolutions;
}

LimitAnswers CapabilityCaches::ReadLimits() const {
    using Caps = DeviceLimitsCaps;
    LimitAnswers limits;
    const auto blob = ReadBlob(kDeviceLimitsValue, sizeof(Caps), offsetof(Caps, check));
    if (!blob) return limits;
    const auto caps = RecordAt<Caps>(*blob, 0);
    const auto isValid = [&](DWORD bit) { return (caps.valid & bit) != 0; };
    if (isValid(Caps::kCollate)) limits.collates = caps.collate != 0;
    if (isValid(Caps::kColor)) limits.printsColor = caps.color != 0;
    if (isValid(Caps::kDuplex)) limits.printsDuplex = caps.duplex != 0;
    if (isValid(Caps::kCopies)) limits.maximumCopies = PositiveNumber(caps.maximumCopies);
    if (isValid(Caps::kMemory)) limits.memory = PositiveNumber(caps.memory);
    if (isValid(Caps::kPagesPerMinute)) limits.pagesPerMinute = PositiveNumber(caps.pagesPerMinute);
    const bool hasSides = std::min({caps.minimumWidth, caps.minimumLength, caps.maximumWidth, caps.maximumLength}) > 0;
    if (isValid(Caps::kExtents) && hasSides) {
        limits.minimumExtent = PackExtent(caps.minimumWidth, caps.minimumLength);
        limits.maximumExtent = PackExtent(caps.maximumWidth, caps.maximumLength);
    }
    return limits;
}

std::optional<bool> CapabilityCaches::ReadStaples() const {
    const auto blob = ReadBlob(kStapleValue, sizeof(StapleCaps), offsetof(StapleCaps, check));
    if (!blob) return std::nullopt;
    return RecordAt<StapleCaps>(*blob, 0).staples != 0;
}
