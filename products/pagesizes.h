// The Print Schema's page sizes with their paper numbers and data-model values.
#pragma once

#include <products/reader/mvprodapi.h>

#include <span>
#include <string_view>

enum class PageSizeFamily { NorthAmerica, Iso, Jis, Japan, Prc, Other };

// One PageMediaSize keyword. All text is ASCII and lives as long as the process.
struct PageSizeRow {
    std::string_view name;  // the keyword, NUL-terminated
    LONG width;             // micrometres; 0 for the custom sizes
    LONG length;            // micrometres; 0 for the custom sizes and for rolls
    WORD paperNumber;       // DMPAPER number; 0 when it has none
    DWORD value;            // data-model value id, 6400 to 6730; 0 for the custom sizes
    PageSizeFamily family;
    std::string_view displayName;  // NUL-terminated

    // Kinds of page size, as the data model numbers them.
    static constexpr DWORD kCommon = 25001;        // has a DMPAPER number
    static constexpr DWORD kOtherKeyword = 25002;  // has none
    static constexpr DWORD kDriverCustom = 25003;  // a driver's or user's own
    static constexpr DWORD kMappedForm = 25004;    // a form with the dimensions of a keyword
    static constexpr DWORD kUserForm = 25005;
    static constexpr DWORD kHidden = 25006;
    static constexpr DWORD kPostScriptCustom = 25007;
    static constexpr DWORD kCustom = 25008;

    constexpr bool IsCustom() const noexcept { return value == 0; }  // CustomMediaSize, PSCustomMediaSize
    constexpr bool IsRoll() const noexcept { return width != 0 && length == 0; }
    constexpr DWORD GetKind() const noexcept {
        if (IsCustom()) return name.starts_with("PS") ? kPostScriptCustom : kCustom;
        return paperNumber != 0 ? kCommon : kOtherKeyword;
    }
    constexpr DWORD GetDisplayUnits() const noexcept {
        return family == PageSizeFamily::NorthAmerica || IsRoll() ? kUnitsInches : kUnitsMillimetres;
    }

    static constexpr DWORD kUnitsMillimetres = 7491;
    static constexpr DWORD kUnitsInches = 7492;
    // Values of the custom size (a tray may hold it) and one that no page size may have.
    static constexpr DWORD kCustomSizeValue = 6731;
    static constexpr DWORD kReservedValue = 6732;
};

// All 172 keywords, in the order of the list.
MVPROD_API std::span<const PageSizeRow> GetPageSizeTable() noexcept;
// The row of that keyword (exact), paper number or value; null when there is none. Of rows that share a number, the
// first.
MVPROD_API const PageSizeRow* FindPageSizeByName(std::string_view name) noexcept;
MVPROD_API const PageSizeRow* FindPageSizeByPaperNumber(WORD paperNumber) noexcept;
MVPROD_API const PageSizeRow* FindPageSizeByValue(DWORD value) noexcept;
