// The Print Schema's page sizes with their paper numbers and data-model values.
#pragma once

#include <facts/pagesizes.h>
#include <facts/values.h>
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
    DWORD value;            // data-model value id; 0 for the custom sizes
    PageSizeFamily family;
    std::string_view displayName;  // NUL-terminated

    constexpr bool IsCustom() const noexcept { return value == 0; }  // CustomMediaSize, PSCustomMediaSize
    constexpr bool IsRoll() const noexcept { return width != 0 && length == 0; }
    constexpr facts::PageSizeType GetType() const noexcept {
        using Type = facts::PageSizeType;
        if (IsCustom()) return name.starts_with("PS") ? Type::PostScriptCustom : Type::Custom;
        return paperNumber != 0 ? Type::Common : Type::Other;
    }
    constexpr DWORD GetDisplayUnits() const noexcept {
        return family == PageSizeFamily::NorthAmerica || IsRoll() ? facts::value::kUnitsInches
                                                                  : facts::value::kUnitsMillimetres;
    }
};

// All 172 keywords, in the order of the list.
MVPROD_API std::span<const PageSizeRow> GetPageSizeTable() noexcept;
// The row of that keyword (exact), paper number or value; null when there is none. Of rows that share a number, the
// first.
MVPROD_API const PageSizeRow* FindPageSizeByName(std::string_view name) noexcept;
MVPROD_API const PageSizeRow* FindPageSizeByPaperNumber(WORD paperNumber) noexcept;
MVPROD_API const PageSizeRow* FindPageSizeByValue(DWORD value) noexcept;
