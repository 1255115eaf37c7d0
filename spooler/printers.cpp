// Opening, listing, adding and deleting printers, and their data.
#include "infopacker.h"
#include "printerhandles.h"
#include "printername.h"
#include "questioncount.h"
#include "spoolerregistry.h"
#include "storedfields.h"

#include <algorithm>

namespace {

void AddPrinterInfo(InfoPacker<PRINTER_INFO_2W>& packer, const StoredPrinter& printer) {
    PRINTER_INFO_2W info{};
    for (const auto& number : kPrinterNumbers) info.*number.field = printer.*number.member;
    info.Attributes |= PRINTER_ATTRIBUTE_LOCAL;
    packer.AddItem(info);
    packer.AddDevmode(&PRINTER_INFO_2W::pDevMode, printer.devmode);
    for (const auto& text : kPrinterTexts) packer.AddText(text.field, printer.*text.member);
}

void AddPrinterInfo(InfoPacker<PRINTER_INFO_4W>& packer, const StoredPrinterBrief& printer) {
    PRINTER_INFO_4W info{};
    info.Attributes = printer.attributes | PRINTER_ATTRIBUTE_LOCAL;
    packer.AddItem(info);
    packer.AddText(&PRINTER_INFO_4W::pPrinterName, printer.name);
}

void AddPrinterInfo(InfoPacker<PRINTER_INFO_5W>& packer, const StoredPrinterBrief& printer) {
    PRINTER_INFO_5W info{};
    info.Attributes = printer.attributes | PRINTER_ATTRIBUTE_LOCAL;
    packer.AddItem(info);
    packer.AddText(&PRINTER_INFO_5W::pPrinterName, printer.name);
    packer.AddText(&PRINTER_INFO_5W::pPortName, printer.port);
}

template <class Information, class Printer>
void PackPrinter(const Printer& printer, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    InfoPacker<Information> packer;
    AddPrinterInfo(packer, printer);
    packer.Pack(buffer, bytes, needed);
}

template <class Information, class Printer>
DWORD PackPrinters(const std::vector<Printer>& printers, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    InfoPacker<Information> packer;
    for (const Printer& printer : printers) AddPrinterInfo(packer, printer);
    packer.Pack(buffer, bytes, needed);
    return packer.GetCount();
}

StoredPrinter GetPrinterToAdd(const PRINTER_INFO_2W& info) {
    StoredPrinter printer;
    for (const auto& text : kPrinterTexts) printer.*text.member = TextOrEmpty(info.*text.field);
    for (const auto& number : kPrinterNumbers) printer.*number.member = info.*number.field;
    if (!info.pPrintProcessor) printer.printProcessor = W("winprint");
    if (!info.pDatatype) printer.datatype = W("RAW");
    printer.priority = std::clamp<DWORD>(info.Priority, 1, 99);
    if (const DEVMODEW* devmode = info.pDevMode) {
        const auto* bytes = reinterpret_cast<const BYTE*>(devmode);
        printer.devmode.assign(bytes, bytes + devmode->dmSize + devmode->dmDriverExtra);
    }
    return printer;
}

UniqueKey OpenPrinterData(HANDLE printer, bool forWriting) {
    const WideString path = GetPrinterKey(GetPrinterBriefOf(printer).name) + W("\\PrinterDriverData");
    return forWriting ? CreateKey(path) : OpenKey(path);
}

}  // namespace

// Names no printer: the local print server.
BOOL WINAPI OpenPrinterW(LPWSTR name, LPHANDLE printer, LPPRINTER_DEFAULTSW) {
    return AnswerGuarded([&] {
        Require(printer != nullptr, ERROR_INVALID_PARAMETER);
        *printer = nullptr;
        if (!name || !*name) {
            *printer = OpenHandle({});
            return;
        }
        const auto stored = ReadPrinterBrief(name);
        Require(stored.has_value(), ERROR_INVALID_PRINTER_NAME);
        *printer = OpenHandle(stored->name);
    });
}

BOOL WINAPI ClosePrinter(HANDLE printer) {
    return AnswerGuarded([&] { CloseHandleOf(printer); });
}

BOOL WINAPI GetPrinterW(HANDLE printer, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    CountQuestion(SpoolerQuestion::Printer);
    return AnswerGuarded([&] {
        switch (level) {
            case 2:
                return PackPrinter<PRINTER_INFO_2W>(GetPrinterOf(printer), buffer, bytes, needed);
            case 5:
                return PackPrinter<PRINTER_INFO_5W>(GetPrinterBriefOf(printer), buffer, bytes, needed);
            default:
                GetPrinterBriefOf(printer);  // what the handle is comes first
                throw SpoolerError{ERROR_INVALID_LEVEL};
        }
    });
}

BOOL WINAPI EnumPrintersW(DWORD flags, LPWSTR name, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed,
                          LPDWORD returned) {
    return AnswerGuarded([&] {
        Require(needed && returned, ERROR_INVALID_PARAMETER);
        *returned = 0;
        Require(level == 2 || level == 4 || level == 5, ERROR_INVALID_LEVEL);
        Require((flags & PRINTER_ENUM_LOCAL) != 0 && (!name || !*name), ERROR_INVALID_PARAMETER);
        if (level == 2) {
            *returned = PackPrinters<PRINTER_INFO_2W>(ReadPrinters(), buffer, bytes, needed);
        } else if (level == 4) {
            *returned = PackPrinters<PRINTER_INFO_4W>(ReadPrinterBriefs(), buffer, bytes, needed);
        } else {
            *returned = PackPrinters<PRINTER_INFO_5W>(ReadPrinterBriefs(), buffer, bytes, needed);
        }
    });
}

HANDLE WINAPI AddPrinterW(LPWSTR server, DWORD level, LPBYTE information) {
    HANDLE handle = nullptr;
    AnswerGuarded([&] {
        Require(level == 2, ERROR_INVALID_LEVEL);
        Require(information && (!server || !*server), ERROR_INVALID_PARAMETER);
        const StoredPrinter printer = GetPrinterToAdd(*reinterpret_cast<const PRINTER_INFO_2W*>(information));
        Require(IsPrinterName(printer.name), ERROR_INVALID_PRINTER_NAME);
        Require(!printer.port.empty() && printer.port.size() <= 255, ERROR_UNKNOWN_PORT);
        Require(ReadDriver(printer.driver).has_value(), ERROR_UNKNOWN_PRINTER_DRIVER);
        CreatePrinter(printer);
        handle = OpenHandle(printer.name);
    });
    return handle;
}

BOOL WINAPI DeletePrinter(HANDLE printer) {
    return AnswerGuarded([&] { RemoveStoredPrinter(GetPrinterBriefOf(printer).name); });
}

DWORD WINAPI GetPrinterDataW(HANDLE printer, LPWSTR name, LPDWORD type, LPBYTE data, DWORD bytes, LPDWORD needed) {
    CountQuestion(SpoolerQuestion::PrinterData);
    return RunGuarded([&] {
        Require(name && needed, ERROR_INVALID_PARAMETER);
        const UniqueKey key = OpenPrinterData(printer, false);
        const auto value = key ? ReadValue(key, name) : std::nullopt;
        Require(value.has_value(), ERROR_FILE_NOT_FOUND);
        if (type) *type = value->type;
        *needed = static_cast<DWORD>(value->bytes.size());
        Require(bytes >= *needed && (data || *needed == 0), ERROR_MORE_DATA);
        std::copy(value->bytes.begin(), value->bytes.end(), data);
    });
}

DWORD WINAPI SetPrinterDataW(HANDLE printer, LPWSTR name, DWORD type, LPBYTE data, DWORD bytes) {
    return RunGuarded([&] {
        Require(name && *name && (data || bytes == 0), ERROR_INVALID_PARAMETER);
        WriteValue(OpenPrinterData(printer, true), name, type, data, bytes);
    });
}

DWORD WINAPI DeletePrinterDataW(HANDLE printer, LPWSTR name) {
    return RunGuarded([&] {
        Require(name != nullptr, ERROR_INVALID_PARAMETER);
        const LSTATUS status = RegDeleteValueW(OpenPrinterData(printer, true).Get(), name);
        Require(status == ERROR_SUCCESS, static_cast<DWORD>(status));
    });
}
