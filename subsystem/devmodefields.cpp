// The public fields of a DEVMODEW by their Windows names.
#include "devmodefields.h"

#include <namefield.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "hosterror.h"
#include "hosttext.h"

namespace {

constexpr std::size_t kTextCharacters = CCHDEVICENAME;
static_assert(CCHFORMNAME == CCHDEVICENAME, "both texts have the same length");

using enum DevmodeFieldKind;

#define FIELD(name) #name, offsetof(DEVMODEW, name)
// The flags of display fields have no name among printers' ones.
constexpr DevmodeField kFields[] = {
    {FIELD(dmDeviceName), Text, 0, true},
    {FIELD(dmSpecVersion), Word, 0, true},
    {FIELD(dmDriverVersion), Word, 0, true},
    {FIELD(dmSize), Word, 0, false},
    {FIELD(dmDriverExtra), Word, 0, false},
    {FIELD(dmFields), Dword, 0, true},
    {FIELD(dmOrientation), Short, DM_ORIENTATION, true},
    {FIELD(dmPaperSize), Short, DM_PAPERSIZE, true},
    {FIELD(dmPaperLength), Short, DM_PAPERLENGTH, true},
    {FIELD(dmPaperWidth), Short, DM_PAPERWIDTH, true},
    {FIELD(dmScale), Short, DM_SCALE, true},
    {FIELD(dmCopies), Short, DM_COPIES, true},
    {FIELD(dmDefaultSource), Short, DM_DEFAULTSOURCE, true},
    {FIELD(dmPrintQuality), Short, DM_PRINTQUALITY, true},
    {FIELD(dmColor), Short, DM_COLOR, true},
    {FIELD(dmDuplex), Short, DM_DUPLEX, true},
    {FIELD(dmYResolution), Short, DM_YRESOLUTION, true},
    {FIELD(dmTTOption), Short, DM_TTOPTION, true},
    {FIELD(dmCollate), Short, DM_COLLATE, true},
    {FIELD(dmFormName), Text, DM_FORMNAME, true},
    {FIELD(dmLogPixels), Word, 0x00020000, true},
    {FIELD(dmBitsPerPel), Dword, 0x00040000, true},
    {FIELD(dmPelsWidth), Dword, 0x00080000, true},
    {FIELD(dmPelsHeight), Dword, 0x00100000, true},
    {FIELD(dmNup), Dword, DM_NUP, true},
    {FIELD(dmDisplayFrequency), Dword, 0x00400000, true},
    {FIELD(dmICMMethod), Dword, DM_ICMMETHOD, true},
    {FIELD(dmICMIntent), Dword, DM_ICMINTENT, true},
    {FIELD(dmMediaType), Dword, DM_MEDIATYPE, true},
    {FIELD(dmDitherType), Dword, DM_DITHERTYPE, true},
    {FIELD(dmReserved1), Dword, 0, false},
    {FIELD(dmReserved2), Dword, 0, false},
    {FIELD(dmPanningWidth), Dword, 0x08000000, true},
    {FIELD(dmPanningHeight), Dword, 0x10000000, true},
};
#undef FIELD

BYTE* Bytes(DEVMODEW& devmode, const DevmodeField& field) { return reinterpret_cast<BYTE*>(&devmode) + field.offset; }
const BYTE* Bytes(const DEVMODEW& devmode, const DevmodeField& field) {
    return reinterpret_cast<const BYTE*>(&devmode) + field.offset;
}

template <class T>
std::int64_t Load(const BYTE* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

// A hex number may give the bits of a signed field.
template <class T>
bool Store(BYTE* bytes, std::int64_t number, bool hex) {
    using Unsigned = std::make_unsigned_t<T>;
    const std::int64_t maximum =
        hex ? std::numeric_limits<Unsigned>::max() : static_cast<std::int64_t>(std::numeric_limits<T>::max());
    if (number < static_cast<std::int64_t>(std::numeric_limits<T>::min()) || number > maximum) return false;
    const T value = static_cast<T>(static_cast<Unsigned>(number));
    std::memcpy(bytes, &value, sizeof value);
    return true;
}

}  // namespace

std::size_t DevmodeField::GetBytes() const noexcept {
    switch (kind) {
        case Short:
        case Word:
            return sizeof(WORD);
        case Dword:
            return sizeof(DWORD);
        case Text:
            break;
    }
    return kTextCharacters * sizeof(WCHAR);
}

std::span<const DevmodeField> GetDevmodeFields() { return kFields; }

const DevmodeField& GetDevmodeField(std::string_view name) {
    const auto field = std::find_if(std::begin(kFields), std::end(kFields),
                                    [&](const DevmodeField& candidate) { return name == candidate.name; });
    if (field == std::end(kFields))
        throw InputError("'" + std::string(name) + "' is no field of a DEVMODE; use a name such as dmCopies");
    return *field;
}

std::int64_t GetDevmodeNumber(const DEVMODEW& devmode, const DevmodeField& field) {
    const BYTE* bytes = Bytes(devmode, field);
    if (field.kind == Short) return Load<SHORT>(bytes);
    return field.kind == Word ? Load<WORD>(bytes) : Load<DWORD>(bytes);
}

std::string GetDevmodeText(const DEVMODEW& devmode, const DevmodeField& field) {
    return ToUtf8(GetNameField({reinterpret_cast<const WCHAR*>(Bytes(devmode, field)), kTextCharacters}));
}

void SetDevmodeText(DEVMODEW& devmode, const DevmodeField& field, WideStringView text) {
    SetNameField({reinterpret_cast<WCHAR*>(Bytes(devmode, field)), kTextCharacters}, text);
}

void SetDevmodeField(DEVMODEW& devmode, std::string_view name, std::string_view value) {
    const DevmodeField& field = GetDevmodeField(name);
    if (!field.settable) throw InputError(std::string(name) + " cannot be set; it follows from the rest");

    bool stored = true;
    if (field.kind == Text) {
        const WideString text = ArgumentToWide(value);
        if (text.size() >= kTextCharacters)
            throw InputError(std::string(name) + " holds at most " + std::to_string(kTextCharacters - 1) +
                             " characters");
        SetDevmodeText(devmode, field, text);
    } else {
        const std::optional<std::int64_t> number = ParseNumber(value);
        const bool hex = value.starts_with("0x") || value.starts_with("0X");
        BYTE* bytes = Bytes(devmode, field);
        stored = number && (field.kind == Short  ? Store<SHORT>(bytes, *number, hex)
                            : field.kind == Word ? Store<WORD>(bytes, *number, hex)
                                                 : Store<DWORD>(bytes, *number, hex));
    }
    if (!stored)
        throw InputError("'" + std::string(value) + "' is no value for " + std::string(name) +
                         "; give a whole number that fits, decimal or hex with 0x");
    devmode.dmFields |= field.flag;
}
