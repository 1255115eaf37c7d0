// Layouts of the capability caches: the driver family writes them, the core driver's DeviceCapabilitiesW reads them.
#pragma once

#include <windows.h>

#include <cstddef>

// A cache starts with its check word: the CRC-32 of the whole blob, that word taken as zero; a paper cache keeps it in
// its second word. Names are NUL-terminated, cut to the field's length less one.

// One paper size. Three 32-bit fields behind the sizes carry data-model values.
struct _tag_FormsInfoRec {
    WORD msPaperId;       // DEVMODE paper number; 256 for the custom size
    WORD formIndex;       // number in the forms database; 0 when it is not there
    LONG width;           // tenths of a millimetre
    LONG length;          // tenths of a millimetre
    DWORD pageSizeValue;  // value of the page size
    DWORD displayUnits;   // DataModelIds::kUnitsMillimetres or kUnitsInches
    DWORD pageSizeType;   // PageSizeTypeEnum
    WCHAR name[64];
};
static_assert(sizeof(_tag_FormsInfoRec) == 152 && offsetof(_tag_FormsInfoRec, width) == 4 &&
                  offsetof(_tag_FormsInfoRec, pageSizeType) == 20 && offsetof(_tag_FormsInfoRec, name) == 24,
              "the layout is stored");

// One resolution.
struct _tag_ResolutionInfoRec {
    DWORD kind;      // 0 the default, 1 another, 2 the 200 x 200 one
    LONG crossFeed;  // dots per inch
    LONG feed;       // dots per inch
    WCHAR name[32];
};
static_assert(sizeof(_tag_ResolutionInfoRec) == 76 && offsetof(_tag_ResolutionInfoRec, name) == 12,
              "the layout is stored");

struct PaperCapsHeader {
    DWORD formsDatabaseCrc;
    DWORD check;
    DWORD customFormsCrc;
    DWORD count;  // _tag_FormsInfoRec that follow
};
static_assert(sizeof(PaperCapsHeader) == 16, "the layout is stored");

// Header of the tray, media, media-ready and dependent-file caches.
struct ListCapsHeader {
    DWORD check;
    DWORD count;  // records that follow
};
static_assert(sizeof(ListCapsHeader) == 8, "the layout is stored");

struct BinCapsRecord {
    WORD number;  // DEVMODE bin number
    WORD zero;
    DWORD value;  // data-model value of the tray
    WCHAR name[24];
};
static_assert(sizeof(BinCapsRecord) == 56, "the layout is stored");

struct MediaCapsRecord {
    DWORD number;  // DEVMODE media type number
    WCHAR name[64];
};
static_assert(sizeof(MediaCapsRecord) == 132, "the layout is stored");

struct MediaReadyRecord {
    WCHAR paperName[64];
    WCHAR mediaName[64];
};
static_assert(sizeof(MediaReadyRecord) == 256, "the layout is stored");

struct DependentFileRecord {
    WCHAR name[64];
};
static_assert(sizeof(DependentFileRecord) == 128, "the layout is stored");

struct DeviceLimitsCaps {
    // Bits of "valid": which words mean something.
    static constexpr DWORD kCollate = 0x1, kColor = 0x2, kCopies = 0x4, kDuplex = 0x8, kMemory = 0x10,
                           kPagesPerMinute = 0x20, kPrintRate = 0x40, kPrintRateUnit = 0x80, kExtents = 0x100;

    DWORD check;
    DWORD valid;
    DWORD collate;  // 0 or 1
    DWORD color;    // 0 or 1
    DWORD maximumCopies;
    DWORD duplex;  // 0 or 1
    DWORD memory;  // KiB
    DWORD printRate;
    DWORD pagesPerMinute;
    DWORD printRateUnit;  // data-model value
    SHORT maximumWidth;   // tenths of a millimetre
    SHORT maximumLength;
    SHORT minimumWidth;
    SHORT minimumLength;
};
static_assert(sizeof(DeviceLimitsCaps) == 48 && offsetof(DeviceLimitsCaps, maximumWidth) == 40, "the layout is stored");

struct StapleCaps {
    DWORD check;
    DWORD staples;  // 0 or 1
};
static_assert(sizeof(StapleCaps) == 8, "the layout is stored");

struct ResolutionCapsHeader {
    DWORD check;
    DWORD count;      // _tag_ResolutionInfoRec that follow
    BYTE has200x200;  // 1 when 200 x 200 is among them
    BYTE zero[3];
};
static_assert(sizeof(ResolutionCapsHeader) == 12, "the layout is stored");
