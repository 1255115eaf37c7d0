// The printers that the spooler has.
#include "printerlist.h"

#include <mvutil/cachelocation.h>

#include <sizedread.h>
#include <textcodec.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

namespace {

constexpr DWORD kBytesOfLongLists = 1u << 18;  // of a thousand printers
constexpr std::size_t kLongestKeyName = 255;
constexpr const WCHAR* kNotedPort = W("Port");

WideString GetNotePath(const WideString& name) {
    return WideString(kDriverFamilyKey) + W("\\Half Printers") + (name.empty() ? name : W('\\') + name);
}

// Of all notes when the name is empty.
UniqueKey OpenNote(const WideString& name) {
    UniqueKey note;
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, GetNotePath(name).c_str(), 0, KEY_READ, note.Put());
    return note;
}

template <class Record, class MakeRow>
std::vector<PrinterRow> ReadRows(DWORD level, MakeRow makeRow) {
    SizedBytes records(kBytesOfLongLists);
    DWORD count = 0;
    const DWORD error = records.ReadWithLastError([&](BYTE* buffer, DWORD bytes, DWORD* needed) {
        return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, level, buffer, bytes, needed, &count);
    });
    if (error != ERROR_SUCCESS)
        throw SpoolerFailure("The printers cannot be listed: the spooler failed with error " + std::to_string(error));
    std::vector<PrinterRow> rows;
    const auto* const printers = records.As<Record>();
    for (std::size_t index = 0; index < records.CountRecords<Record>(count); ++index)
        rows.push_back(makeRow(records, printers[index]));
    return rows;
}

}  // namespace

void CloseSpoolerHandle::operator()(HANDLE printer) const noexcept { ClosePrinter(printer); }

UniquePrinter OpenPrinterByName(const WideString& name) {
    UniquePrinter printer;
    SetLastError(ERROR_INVALID_PRINTER_NAME);
    // An empty name would open the print server.
    if (!name.empty()) OpenPrinterW(const_cast<WCHAR*>(name.c_str()), printer.Put(), nullptr);
    return printer;
}

std::vector<PrinterRow> ListPrinters() {
    std::vector<PrinterRow> rows = ReadRows<PRINTER_INFO_2W>(2, [](const SizedBytes& records,
                                                                   const PRINTER_INFO_2W& printer) {
        return PrinterRow{records.Text<WideString>(printer.pPrinterName), records.Text<WideString>(printer.pPortName),
                          records.Text<WideString>(printer.pDriverName)};
    });
    // Asked for afterwards: one that was whole by then may be listed, one that has become a half may not.
    for (const WideString& half : HalfPrinters::List())
        std::erase_if(rows, [&](const PrinterRow& row) { return EqualRegistryNames(row.name, half); });
    return rows;
}

std::vector<PrinterRow> ListPrinterPorts() {
    return ReadRows<PRINTER_INFO_5W>(5, [](const SizedBytes& records, const PRINTER_INFO_5W& printer) {
        return PrinterRow{
            records.Text<WideString>(printer.pPrinterName), records.Text<WideString>(printer.pPortName), {}};
    });
}

std::vector<WideString> HalfPrinters::List() {
    std::vector<WideString> names;
    const UniqueKey notes = OpenNote({});
    WideString name(kLongestKeyName + 1, W('\0'));
    for (DWORD index = 0; notes; ++index) {
        auto characters = static_cast<DWORD>(name.size());
        if (RegEnumKeyExW(notes.Get(), index, name.data(), &characters, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS)
            break;
        names.push_back(name.substr(0, characters));
    }
    return names;
}

bool HalfPrinters::Contains(const WideString& name) { return !name.empty() && OpenNote(name); }

std::string HalfPrinters::Describe(const WideString& name) {
    return "The printer '" + Utf8FromWide(name, BadText::Replace) +
           "' is half there, from an addition or removal that was interrupted or is going on; 'printer remove' with "
           "its "
           "name clears it";
}

bool HalfPrinters::Add(const WideString& name, const WideString& port) {
    UniqueKey note;
    DWORD disposition = 0;
    LSTATUS status = RegCreateKeyExW(HKEY_LOCAL_MACHINE, GetNotePath(name).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                     KEY_WRITE, nullptr, note.Put(), &disposition);
    const bool isNew = disposition == REG_CREATED_NEW_KEY;
    if (status == ERROR_SUCCESS && isNew)
        status = RegSetValueExW(note.Get(), kNotedPort, 0, REG_SZ, reinterpret_cast<const BYTE*>(port.c_str()),
                                static_cast<DWORD>((port.size() + 1) * sizeof(WCHAR)));
    if (status != ERROR_SUCCESS)
        throw SpoolerFailure("The printer cannot be noted: the registry failed with error " + std::to_string(status));
    return isNew;
}

WideString HalfPrinters::GetPort(const WideString& name) {
    DWORD type = REG_NONE;
    SizedBytes bytes;
    const UniqueKey note = OpenNote(name);
    if (!note || ReadRegistryValue(note.Get(), kNotedPort, type, bytes) != ERROR_SUCCESS || type != REG_SZ) return {};
    return bytes.Text<WideString>(bytes.As<WCHAR>());
}

void HalfPrinters::Remove(const WideString& name) { RegDeleteTreeW(HKEY_LOCAL_MACHINE, GetNotePath(name).c_str()); }
