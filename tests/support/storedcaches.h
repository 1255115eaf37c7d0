// A printer's capability caches, stored by hand for tests.
#pragma once

#include <mvutil/cachelocation.h>
#include <mvutil/crc32.h>
#include <mvutil/datacache.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/printer.h>
#include <printsubsystem/capabilityrecords.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <utility>
#include <vector>

// The record with that name, cut to what leaves room for so many terminators.
template <class Record>
Record WithName(Record record, const CXString& name, std::size_t terminators = 1) {
    std::copy_n(name.GetString(), std::min(name.GetLength(), std::size(record.name) - terminators), record.name);
    return record;
}
inline _tag_FormsInfoRec MakePaper(WORD number, LONG width, LONG length, DWORD value, DWORD type, const WCHAR* name) {
    return WithName(_tag_FormsInfoRec{number, 0, width, length, value, 7491, type, {}}, name);
}
inline _tag_ResolutionInfoRec MakeResolution(LONG x, LONG y, const WCHAR* name) {
    return WithName(_tag_ResolutionInfoRec{1, x, y, {}}, name);
}
// A name of 64 characters fills its field.
inline MediaCapsRecord MakeMedia(DWORD number, const CXString& name) {
    return WithName(MediaCapsRecord{number, {}}, name, 0);
}

// Stores a cache of the header's words and the records, with its check word at that offset.
template <class Record>
void StoreCache(HANDLE printer, const WCHAR* name, std::initializer_list<DWORD> header, std::size_t checkOffset,
                const std::vector<Record>& records) {
    ByteBuffer blob;
    for (const DWORD word : header) blob.appendLpbyte(&word, sizeof word);
    blob.appendLpbyte(records.data(), records.size() * sizeof(Record));
    const DWORD check = Crc32::GetCrc(blob.getLpbyte(), blob.getDword(), kCapabilityCacheCrcStart);
    std::memcpy(blob.getLpbyte() + checkOffset, &check, sizeof check);
    const CXString key = MorvaneUtilities::ConvertPortNameToRegistryKey(Printer(printer).GetPrinterPort());
    DataCache(printer, key, kCapabilityCacheCrcStart, true).SetCachedValue(name, blob, false);
}

inline void StorePapers(HANDLE printer, const std::vector<_tag_FormsInfoRec>& records) {
    StoreCache(printer, kPaperCapsValue, {0, 0, 0, static_cast<DWORD>(records.size())},
               offsetof(PaperCapsHeader, check), records);
}
inline void StoreResolutions(HANDLE printer, const std::vector<_tag_ResolutionInfoRec>& records) {
    StoreCache(printer, kResolutionsValue, {0, static_cast<DWORD>(records.size()), 0}, 0, records);
}
inline void StoreMedia(HANDLE printer, const std::vector<MediaCapsRecord>& records) {
    StoreCache(printer, kMediaCapsValue, {0, static_cast<DWORD>(records.size())}, 0, records);
}
