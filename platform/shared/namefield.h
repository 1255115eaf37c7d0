// Texts in fields of fixed length, as records and DEVMODEs have them.
#pragma once

#include <windows.h>

#include <widetext.h>
#include <algorithm>
#include <span>

// Cut to the field's length less one; the rest becomes NULs.
inline void SetNameField(std::span<WCHAR> field, WideStringView text) {
    const std::size_t length = text.copy(field.data(), field.size() - 1);
    std::fill(field.begin() + static_cast<std::ptrdiff_t>(length), field.end(), WCHAR());
}

// Up to the field's first NUL or its end. Valid as long as the field.
inline WideStringView GetNameField(std::span<const WCHAR> field) {
    return {field.data(), static_cast<std::size_t>(std::find(field.begin(), field.end(), WCHAR()) - field.begin())};
}
