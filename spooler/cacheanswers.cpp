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

template <class Record>
Record RecordAt(const std::vector<BYTE>& blob, std::size_t offset) {
    Record record;
    std::memcpy(&record, blob.data() + offset, sizeof record);
    return record;
}

using Blob = std::vector<BYTE>;

bool IsWhole(const Blob& blob, std::size_t minimumBytes, std::size_t checkOffset) {
    return blob.size() >= minimumBytes && RecordAt<DWORD>(blob, checkOffset) == ComputeCheck(blob, checkOffset);
}

// A port's cache, with a header of that kind; empty when there is none.
template <class Header>
Blob ReadBlob(const WideString& port, const WCHAR* name) {
    const WideString path = GetCachesKey(port);
    for (const HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        const UniqueKey key = OpenKey(path, hive);
        if (!key) continue;
        CountQuestion(SpoolerQuestion::CacheRead);
        auto value = ReadValue(key, name, SizedBytes::kBytesOfCache);
        if (value && value->type == REG_BINARY && IsWhole(value->bytes, sizeof(Header), offsetof(Header, check)))
            return std::move(value->bytes);
    }
    return {};
}

int PackExtent(SHORT width, SHORT length) { return static_cast<WORD>(width) | static_cast<WORD>(length) << 16; }

std::optional<int> PositiveNumber(DWORD number) {
    if (number > static_cast<DWORD>(std::numeric_limits<int>::max())) return std::nullopt;
    return static_cast<int>(number);
}

LimitAnswers MakeLimits(const DeviceLimitsCaps& caps) {
    using Caps = DeviceLimitsCaps;
    LimitAnswers limits;
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

constexpr std::size_t kMostKeptLists = 64;  // of each kind; one may take a hundred kilobytes

}  // namespace

// The cache's records, each made into an answer.
template <class Header, class Record, class Convert>
auto CapabilityCaches::GetAnswers(const WCHAR* name, Convert convert) const {
    using List = std::vector<decltype(convert(Record()))>;
    static KeptAnswers<std::optional<List>, kMostKeptLists> kept;  // of this kind of cache
    const auto answers = kept.Get(port_, state_, [&](const WideString&) -> std::optional<List> {
        const Blob blob = ReadBlob<Header>(port_, name);
        if (blob.empty()) return std::nullopt;
        const DWORD count = RecordAt<Header>(blob, 0).count;
        if (count > (blob.size() - sizeof(Header)) / sizeof(Record)) return std::nullopt;
        List list;
        for (DWORD index = 0; index < count; ++index)
            list.push_back(convert(RecordAt<Record>(blob, sizeof(Header) + index * sizeof(Record))));
        return list;
    });
    return *answers ? std::shared_ptr<const List>(answers, &**answers) : nullptr;
}

AnswerList<PaperAnswer> CapabilityCaches::GetPapers() const {
    return GetAnswers<PaperCapsHeader, _tag_FormsInfoRec>(kPaperCapsValue, [](const _tag_FormsInfoRec& record) {
        return PaperAnswer{record.msPaperId, record.width, record.length, NameOf(record.name)};
    });
}

AnswerList<NumberedName> CapabilityCaches::GetBins() const {
    return GetAnswers<ListCapsHeader, BinCapsRecord>(kBinCapsValue, [](const BinCapsRecord& record) {
        return NumberedName{record.number, NameOf(record.name)};
    });
}

AnswerList<NumberedName> CapabilityCaches::GetMediaTypes() const {
    return GetAnswers<ListCapsHeader, MediaCapsRecord>(kMediaCapsValue, [](const MediaCapsRecord& record) {
        return NumberedName{record.number, NameOf(record.name)};
    });
}

AnswerList<WideString> CapabilityCaches::GetPapersReady() const {
    return GetAnswers<ListCapsHeader, MediaReadyRecord>(
        kMediaReadyValue, [](const MediaReadyRecord& record) { return NameOf(record.paperName); });
}

AnswerList<WideString> CapabilityCaches::GetDependentFiles() const {
    return GetAnswers<ListCapsHeader, DependentFileRecord>(
        kDependentFilesValue, [](const DependentFileRecord& record) { return NameOf(record.name); });
}

AnswerList<ResolutionAnswer> CapabilityCaches::GetResolutions() const {
    return GetAnswers<ResolutionCapsHeader, _tag_ResolutionInfoRec>(
        kResolutionsValue, [](const _tag_ResolutionInfoRec& record) {
            return ResolutionAnswer{record.crossFeed, record.feed};
        });
}

LimitAnswers CapabilityCaches::GetLimits() const {
    static KeptAnswers<LimitAnswers, kMostKeptLists> kept;
    return *kept.Get(port_, state_, [](const WideString& port) {
        const Blob blob = ReadBlob<DeviceLimitsCaps>(port, kDeviceLimitsValue);
        return blob.empty() ? LimitAnswers() : MakeLimits(RecordAt<DeviceLimitsCaps>(blob, 0));
    });
}

std::optional<bool> CapabilityCaches::GetStaples() const {
    static KeptAnswers<std::optional<bool>, kMostKeptLists> kept;
    return *kept.Get(port_, state_, [](const WideString& port) -> std::optional<bool> {
        const Blob blob = ReadBlob<StapleCaps>(port, kStapleValue);
        if (blob.empty()) return std::nullopt;
        return RecordAt<StapleCaps>(blob, 0).staples != 0;
    });
}
