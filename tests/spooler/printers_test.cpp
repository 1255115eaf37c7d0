// Printers, drivers and printer data: what is answered, in what sizes, and what is refused.
#include "spoolerfixture.h"

#include <functional>

namespace {

using SizedCall = std::function<BOOL(LPBYTE buffer, DWORD bytes, LPDWORD needed)>;

constexpr BYTE kGuard = 0xA5;

// Asks, asks with one byte too few, asks rightly; the filled buffer, which starts with the information.
std::vector<BYTE> CheckSizeProtocol(const SizedCall& call) {
    DWORD needed = 0;
    EXPECT_FALSE(call(nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_GT(needed, 0u);
    std::vector<BYTE> buffer(needed + 16, kGuard);
    DWORD again = 0;
    EXPECT_FALSE(call(buffer.data(), needed - 1, &again));
    EXPECT_EQ(again, needed);
    EXPECT_EQ(buffer, std::vector<BYTE>(needed + 16, kGuard)) << "a failing call writes nothing";
    EXPECT_TRUE(call(buffer.data(), needed, &again));
    EXPECT_TRUE(std::all_of(buffer.begin() + needed, buffer.end(), [](BYTE byte) { return byte == kGuard; }));
    EXPECT_FALSE(call(buffer.data(), needed, nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    return buffer;
}

}  // namespace

TEST_F(SpoolerTest, RefusesHandlesThatItDidNotGive) {
    const HANDLE closed = Install(W("Printer"));
    ASSERT_TRUE(ClosePrinter(closed));
    EXPECT_NE(Open(W("Printer")), closed) << "a closed handle stays bad";
    int local = 0;
    DWORD needed = 0, count = 0, type = 0;
    WCHAR name[] = {'x', 0};
    for (const HANDLE handle : {HANDLE(), INVALID_HANDLE_VALUE, HANDLE(&local), closed}) {
        const std::function<BOOL()> calls[] = {[&] { return GetPrinterW(handle, 2, nullptr, 0, &needed); },
                                               [&] { return EnumFormsW(handle, 1, nullptr, 0, &needed, &count); },
                                               [&] { return DeletePrinter(handle); },
                                               [&] { return ClosePrinter(handle); }};
        for (const auto& call : calls) {
            SetLastError(0);
            EXPECT_FALSE(call());
            EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
        }
        EXPECT_EQ(GetPrinterDataW(handle, name, &type, nullptr, 0, &needed), DWORD{ERROR_INVALID_HANDLE});
    }
}

TEST_F(SpoolerTest, TellsWhatAPrinterAndItsDriverAre) {
    const HANDLE printer = Install(W("Press \u00e4"), kPress, W("Port:"));
    const auto printerBuffer = CheckSizeProtocol(
        [&](LPBYTE buffer, DWORD bytes, LPDWORD needed) { return GetPrinterW(printer, 2, buffer, bytes, needed); });
    const auto& info = *reinterpret_cast<const PRINTER_INFO_2W*>(printerBuffer.data());
    EXPECT_EQ(WideString(info.pPrinterName), W("Press \u00e4"));
    EXPECT_EQ(WideString(info.pPortName), W("Port:"));
    EXPECT_EQ(WideString(info.pDriverName), W("Morvane Press 8434"));
    EXPECT_EQ(WideString(info.pDatatype), W("RAW"));
    const auto briefBuffer = CheckSizeProtocol(
        [&](LPBYTE buffer, DWORD bytes, LPDWORD needed) { return GetPrinterW(printer, 5, buffer, bytes, needed); });
    const auto& brief = *reinterpret_cast<const PRINTER_INFO_5W*>(briefBuffer.data());
    EXPECT_EQ(WideString(brief.pPrinterName), W("Press \u00e4"));
    EXPECT_EQ(WideString(brief.pPortName), W("Port:"));

    const auto driverBuffer = CheckSizeProtocol([&](LPBYTE buffer, DWORD bytes, LPDWORD needed) {
        return GetPrinterDriverW(printer, nullptr, 3, buffer, bytes, needed);
    });
    const auto& driver = *reinterpret_cast<const DRIVER_INFO_3W*>(driverBuffer.data());
    EXPECT_TRUE(std::filesystem::equivalent(GetFilePath(driver.pDataFile), ProductFile(kPress)));
    WideString files;
    for (const WCHAR* file = driver.pDependentFiles; *file; file += std::char_traits<WCHAR>::length(file) + 1)
        files += WideString(file) + W(" ");
    EXPECT_NE(files.find(W("mvwftuC0.dll ")), WideString::npos);

    Install(W("Second"), kOffice);
    DWORD count = 0;
    CheckSizeProtocol([&](LPBYTE buffer, DWORD bytes, LPDWORD needed) {
        return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 4, buffer, bytes, needed, &count);
    });
}

TEST_F(SpoolerTest, RefusesPrintersThatCannotBe) {
    Install(W("There"));
    const WideString port = W("P:"), driver = W("Morvane Press 8434");
    struct Row {
        WideString name, port, driver;
        DWORD error;
    };
    const Row rows[] = {{W(""), port, driver, ERROR_INVALID_PRINTER_NAME},
                        {W("a\\b"), port, driver, ERROR_INVALID_PRINTER_NAME},
                        {W("a,b"), port, driver, ERROR_INVALID_PRINTER_NAME},
                        {W("a\nb"), port, driver, ERROR_INVALID_PRINTER_NAME},
                        {WideString(220, 'x'), port, driver, ERROR_INVALID_PRINTER_NAME},
                        {W("there"), port, driver, ERROR_PRINTER_ALREADY_EXISTS},
                        {W("New"), W(""), driver, ERROR_UNKNOWN_PORT},
                        {W("New"), port, W("No driver"), ERROR_UNKNOWN_PRINTER_DRIVER},
                        {WideString(219, 'x'), port, driver, ERROR_SUCCESS}};
    for (const Row& row : rows) {
        SCOPED_TRACE(NarrowToUtf8(row.name));
        PRINTER_INFO_2W info{};
        info.pPrinterName = Writable(row.name);
        info.pPortName = Writable(row.port);
        info.pDriverName = Writable(row.driver);
        SetLastError(ERROR_SUCCESS);
        const HANDLE printer = AddPrinterW(nullptr, 2, BytesOf(info));
        EXPECT_EQ(GetLastError(), row.error);
        if (printer) ClosePrinter(printer);
    }
}

TEST_F(SpoolerTest, KeepsADriverThatAPrinterUses) {
    const HANDLE printer = Install(W("Printer"));
    WideString driver = W("morvane press 8434");
    EXPECT_FALSE(DeletePrinterDriverW(nullptr, nullptr, driver.data()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PRINTER_DRIVER_IN_USE});
    ASSERT_TRUE(DeletePrinter(printer));
    DWORD needed = 0;
    EXPECT_FALSE(GetPrinterW(printer, 2, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PRINTER_DELETED});
    EXPECT_TRUE(DeletePrinterDriverW(nullptr, nullptr, driver.data()));
}

TEST_F(SpoolerTest, KeepsPrinterDataByPrinter) {
    const HANDLE first = Install(W("First"));
    const HANDLE second = Install(W("Second"));
    WideString name = W("XValue");
    DWORD number = 7, type = 0, needed = 0, read = 0;
    EXPECT_EQ(SetPrinterDataW(first, name.data(), REG_DWORD, BytesOf(number), 4), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(GetPrinterDataW(first, name.data(), &type, BytesOf(read), 3, &needed), DWORD{ERROR_MORE_DATA});
    EXPECT_EQ(needed, 4u);
    EXPECT_EQ(GetPrinterDataW(first, name.data(), &type, BytesOf(read), 4, &needed), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(read, 7u);
    EXPECT_EQ(type, DWORD{REG_DWORD});
    EXPECT_EQ(GetPrinterDataW(second, name.data(), &type, BytesOf(read), 4, &needed), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(DeletePrinterDataW(first, name.data()), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(GetPrinterDataW(first, name.data(), &type, BytesOf(read), 4, &needed), DWORD{ERROR_FILE_NOT_FOUND});
}
