// The public fields of a DEVMODEW by their Windows names.
#pragma once

#include <widetext.h>
#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

enum class DevmodeFieldKind { Short, Word, Dword, Text };

struct DevmodeField {
    const char* name;
    std::size_t offset;  // in bytes from the DEVMODE's start
    DevmodeFieldKind kind;
    DWORD flag;     // of dmFields, set together with the field; 0 when the field has none
    bool settable;  // sizes and reserved fields are not the user's to set

    std::size_t GetBytes() const noexcept;
};

// In the order in which they lie in the structure.
std::span<const DevmodeField> GetDevmodeFields();
// The field of that name. Throws InputError when there is none.
const DevmodeField& GetDevmodeField(std::string_view name);

// A field's value in a DEVMODE: numbers as they are, texts up to their first NUL as UTF-8.
std::int64_t GetDevmodeNumber(const DEVMODEW& devmode, const DevmodeField& field);
std::string GetDevmodeText(const DEVMODEW& devmode, const DevmodeField& field);

// Sets the field of that name from a text: decimal or hex ("0x") for numbers, UTF-8 for texts; sets the field's flag
// too. Throws InputError when there is no such field, or the value is no number or does not fit.
void SetDevmodeField(DEVMODEW& devmode, std::string_view name, std::string_view value);
// Sets a text field, cut to what it holds.
void SetDevmodeText(DEVMODEW& devmode, const DevmodeField& field, WideStringView text);
