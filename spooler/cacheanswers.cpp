// The capability caches, as the core driver reads them.
#include "cacheskey.h"
#include "capabilityanswers.h"
#include "keptanswers.h"
#include "questioncount.h"
#include "spoolererror.h"
#include "spoolerregistry.h"

#include <namefield.h>

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <span>

namespace {

WideString NameOf(std::span<const WCHAR> field) { return WideString(GetNameField(field)); }

// CRC-32 of the bytes with the check word taken as zero.
DWORD ComputeCheck(const std::vector<BYTE>& blob, std::size_t checkOffset) {
    constexpr BYTE kZero[sizeof(DWORD)] = {};
    uLong crc = crc32_z(kCapabilityCacheCrcStart, blob.data(), checkOffset);
    crc = crc32_z(crc, kZero, sizeof kZero);
    const std::size_t rest = checkOffset + sizeof kZero;
    return static_cast<DWORD>(crc32_z(crc, blob.data() + rest, blob.size() - rest));
}

// Empty when there is none.
std::vector<BYTE> ReadBlob(HKEY hive, const WideString& path, const WCHAR* name) {
    const UniqueKey key = OpenKey(path, hive);
    if (!key) return {};
    CountQuestion(SpoolerQuestion::CacheRead);
    auto value = ReadValue(key, name, SizedBytes::kBytesOfCache);
    return value && value->type == REG_BINARY ? std::move(value->bytes) : std::vector<BYTE>();
}

template <class Record>
Record RecordAt(const std::vector<BYTE>& blob, std::size_t offset) {
    Record record;
    std::memcpy(&record, blob.data() + offset, sizeof record);
    return record;
}

bool IsWhole(const std::vector<BYTE>& blob, std::size_t minimumBytes, std::size_t checkOffset) {
    return blob.size() >= minimumBytes && RecordAt<DWORD>(blob, checkOffset) == ComputeCheck(blob, checkOffset);
}

int PackExtent(SHORT width, SHORT length) { return static_cast<WORD>(width) | static_cast<WORD>(length) << 16; }

std::optional<int> PositiveNumber(DWORD number) {
    if (number > static_cast<DWORD>(std::numeric_limits<int>::max())) return std::nullopt;
    return static_cast<int>(number);
}

}  // namespace

CapabilityCaches::CapabilityCaches(const WideString& port, StoreState state)
    : path_(GetCachesKey(port)), state_(state) {}

// Null when there is none.
std::shared_ptr<const CapabilityCaches::Blob> CapabilityCaches::GetBlob(const WCHAR* name, std::size_t minimumBytes,
                                                                        std::size_t checkOffset) const {
    static KeptAnswers<Blob, 64> kept;
    const auto blob = kept.Get(path_ + W("\\") + name, state_, [&](const WideString&) {
        for (const HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
            if (Blob found = ReadBlob(hive, path_, name); IsWhole(found, minimumBytes, checkOffset)) return found;
        return Blob();
    });
    return blob->empty() ? nullptr : blob;
}

// The cache's records, each made into an answer; none when the cache has none or counts more records than it holds.
template <class Header, class Record, class Convert>
auto CapabilityCaches::ReadAnswers(const WCHAR* name, Convert convert) const {
    std::optional<std::vector<decltype(convert(Record()))>> answers;
    const auto blob = GetBlob(name, sizeof(Header), offsetof(Header, check));
    if (!blob) return answers;
    const DWORD count = RecordAt<Header>(*blob, 0).count;
    if (count > (blob->size() - sizeof(Header)) / sizeof(Record)) return answers;
    answers.emplace();
    for (DWORD index = 0; index < count; ++index)
        answers->push_back(convert(RecordAt<Record>(*blob, sizeof(Header) + index * sizeof(Record))));
    return answers;
}

std::optional<std::vector<PaperAnswer>> CapabilityCaches::ReadPapers() const {
    return ReadAnswers<PaperCapsHeader, _tag_FormsInfoRec>(kPaperCapsValue, [](const _tag_FormsInfoRec& record) {
        return PaperAnswer{record.msPaperId, record.width, record.length, NameOf(record.name)};
    });
}

std::optional<std::vector<NumberedName>> CapabilityCaches::ReadBins() const {
    return ReadAnswers<ListCapsHeader, BinCapsRecord>(kBinCapsValue, [](const BinCapsRecord& record) {
        return NumberedName{record.number, NameOf(record.name)};
    });
}

std::optional<std::vector<NumberedName>> CapabilityCaches::ReadMediaTypes() const {
    return ReadAnswers<ListCapsHeader, MediaCapsRecord>(kMediaCapsValue, [](const MediaCapsRecord& record) {
        return NumberedName{record.number, NameOf(record.name)};
    });
}

std::optional<std::vector<WideString>> CapabilityCaches::ReadPapersReady() const {
    return ReadAnswers<ListCapsHeader, MediaReadyRecord>(
        kMediaReadyValue, [](const MediaReadyRecord& record) { return NameOf(record.paperName); });
}

std::optional<std::vector<WideString>> CapabilityCaches::ReadDependentFiles() const {
    return ReadAnswers<ListCapsHeader, DependentFileRecord>(
        kDependentFilesValue, [](const DependentFileRecord& record) { return NameOf(record.name); });
}

std::optional<std::vector<ResolutionAnswer>> CapabilityCaches::ReadResolutions() const {
    return ReadAnswers<ResolutionCapsHeader, _tag_ResolutionInfoRec>(
        kResolutionsValue, [](const _tag_ResolutionInfoRec& record) {
            return ResolutionAnswer{record.crossFeed, record.feed};
        });
}

LimitAnswers CapabilityCaches::ReadLimits() const {
    using Caps = DeviceLimitsCaps;
    LimitAnswers limits;
    const auto blob = GetBlob(kDeviceLimitsValue, sizeof(Caps), offsetof(Caps, check));
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
    const auto blob = GetBlob(kStapleValue, sizeof(StapleCaps), offsetof(StapleCaps, check));
    if (!blob) return std::nullopt;
    return RecordAt<StapleCaps>(*blob, 0).staples != 0;
}
