// Printers, drivers and printer data: what is answered, in what sizes, and what is refused.
#include "spoolerfixture.h"

#include <functional>

namespace {

using SizedCall = std::function<BOOL(LPBYTE buffer, DWORD bytes, LPDWORD needed)>;

constexpr BYTE kGuard = 0xA5;
constexpr DWORD kHidden = 0x20;  // an attribute of printers

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
                        {W("New"), WideString(256, 'x'), driver, ERROR_UNKNOWN_PORT},
                        {W("a!b"), port, driver, ERROR_INVALID_PRINTER_NAME},
                        {W("a\x7F"), port, driver, ERROR_INVALID_PRINTER_NAME},
                        {W("New"), port, W("No driver"), ERROR_UNKNOWN_PRINTER_DRIVER},
                        {WideString(219, 'x'), port, driver, ERROR_SUCCESS},
                        {W("a b"), WideString(255, 'x'), driver, ERROR_SUCCESS}};
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

// Each text of its own, by the name of its field.
template <class Information, std::size_t count>
void FillTexts(Information& info, LPWSTR Information::*const (&fields)[count], std::vector<WideString>& texts) {
    texts.resize(count);
    for (std::size_t index = 0; index < count; ++index)
        info.*fields[index] = Writable(texts[index] = WidenUtf8("text " + std::to_string(index)));
}
template <class Information, std::size_t count>
void ExpectTexts(const Information& info, LPWSTR Information::*const (&fields)[count]) {
    for (std::size_t index = 0; index < count; ++index)
        EXPECT_EQ(NarrowToUtf8(info.*fields[index]), "text " + std::to_string(index));
}

TEST_F(SpoolerTest, KeepsEveryFieldOfADriverAndOfAPrinter) {
    LPWSTR DRIVER_INFO_3W::*const driverTexts[] = {&DRIVER_INFO_3W::pName,           &DRIVER_INFO_3W::pDriverPath,
                                                   &DRIVER_INFO_3W::pDataFile,       &DRIVER_INFO_3W::pConfigFile,
                                                   &DRIVER_INFO_3W::pHelpFile,       &DRIVER_INFO_3W::pMonitorName,
                                                   &DRIVER_INFO_3W::pDefaultDataType};
    LPWSTR PRINTER_INFO_2W::*const printerTexts[] = {&PRINTER_INFO_2W::pDriverName, &PRINTER_INFO_2W::pPrinterName,
                                                     &PRINTER_INFO_2W::pShareName,  &PRINTER_INFO_2W::pPortName,
                                                     &PRINTER_INFO_2W::pComment,    &PRINTER_INFO_2W::pLocation,
                                                     &PRINTER_INFO_2W::pSepFile,    &PRINTER_INFO_2W::pPrintProcessor,
                                                     &PRINTER_INFO_2W::pDatatype,   &PRINTER_INFO_2W::pParameters};
    std::vector<WideString> texts;
    DRIVER_INFO_3W driver{};
    FillTexts(driver, driverTexts, texts);
    const WideString files(W("a.dll\0b.dll\0\0"), 13), environment = W("WINDOWS X64");
    driver.cVersion = 3;
    driver.pEnvironment = Writable(environment);
    driver.pDependentFiles = Writable(files);
    WideString here;
    ASSERT_TRUE(AddPrinterDriverW(here.data(), 3, BytesOf(driver)));

    PRINTER_INFO_2W printer{};
    FillTexts(printer, printerTexts, texts);
    DEVMODEW devmode{};
    devmode.dmSize = sizeof devmode;
    devmode.dmCopies = 7;
    printer.pDevMode = &devmode;
    printer.Attributes = kHidden;
    printer.Priority = 100;
    printer.DefaultPriority = 2;
    printer.StartTime = 3;
    printer.UntilTime = 4;
    printer.AveragePPM = 5;
    const HANDLE handle = AddPrinterW(nullptr, 2, BytesOf(printer));
    ASSERT_NE(handle, nullptr);
    DWORD needed = 0, count = 0;
    std::vector<BYTE> bytes(5000);
    ASSERT_TRUE(GetPrinterDriverW(handle, Writable(environment), 3, bytes.data(), 5000, &needed));
    const auto& readDriver = *reinterpret_cast<const DRIVER_INFO_3W*>(bytes.data());
    ExpectTexts(readDriver, driverTexts);
    EXPECT_EQ(WideString(readDriver.pDependentFiles, 13), files);
    EXPECT_EQ(readDriver.cVersion, 3u);
    EXPECT_EQ(WideString(readDriver.pEnvironment), W("Windows x64"));

    ASSERT_TRUE(EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, bytes.data(), 5000, &needed, &count));
    EXPECT_EQ(count, 1u);
    const auto& read = *reinterpret_cast<const PRINTER_INFO_2W*>(bytes.data());
    ExpectTexts(read, printerTexts);
    EXPECT_EQ(read.pDevMode->dmCopies, 7);
    EXPECT_EQ(read.Attributes, DWORD{kHidden | PRINTER_ATTRIBUTE_LOCAL});
    EXPECT_EQ(read.Priority, 99u) << "the highest";
    EXPECT_EQ(read.DefaultPriority, 2u);
    EXPECT_EQ(read.StartTime, 3u);
    EXPECT_EQ(read.UntilTime, 4u);
    EXPECT_EQ(read.AveragePPM, 5u);
    ASSERT_TRUE(EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 5, bytes.data(), 5000, &needed, &count));
    const auto& brief = *reinterpret_cast<const PRINTER_INFO_5W*>(bytes.data());
    EXPECT_EQ(WideString(brief.pPortName), W("text 3"));
    EXPECT_EQ(brief.Attributes, read.Attributes);
    ASSERT_TRUE(EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 4, bytes.data(), 5000, &needed, &count));
    EXPECT_EQ(WideString(reinterpret_cast<const PRINTER_INFO_4W*>(bytes.data())->pPrinterName), W("text 1"));
    DeletePrinter(handle);
    ClosePrinter(handle);
    Install(W("Of another driver"));
    WideString name = W("text 0");
    EXPECT_TRUE(DeletePrinterDriverW(here.data(), here.data(), name.data()));
}

TEST_F(SpoolerTest, RefusesArgumentsThatCannotBe) {
    const HANDLE printer = Install(W("Printer"));
    WideString server = W("\\\\server"), elsewhere = W("Windows IA64"), name = W("Mine"), text = W("x");
    std::vector<BYTE> room(5000);
    DWORD needed = 0, count = 0;
    FORM_INFO_1W form{FORM_USER, name.data(), {100, 100}, {0, 0, 100, 100}};
    DRIVER_INFO_3W driver{};
    driver.cVersion = 3;
    driver.pName = driver.pDriverPath = driver.pDataFile = driver.pConfigFile = text.data();
    const auto addDriver = [&](auto change) {
        DRIVER_INFO_3W changed = driver;
        change(changed);
        return AddPrinterDriverW(nullptr, 3, BytesOf(changed));
    };
    WideString longName(256, 'x');
    char* const path = reinterpret_cast<char*>(room.data());
    const auto directory = [&](LPSTR from, LPSTR environment, DWORD level, LPBYTE buffer, DWORD bytes, DWORD* size) {
        std::strcpy(path, "\\\\server");
        return GetPrinterDriverDirectoryA(from, environment, level, buffer, bytes, size);
    };
    ASSERT_TRUE(directory(nullptr, nullptr, 1, room.data(), 5000, &needed));
    std::string folder = path;
    std::replace(folder.begin(), folder.end(), '\\', '/');
    EXPECT_EQ(std::filesystem::path(folder).filename(), "drivers");
    EXPECT_EQ(std::filesystem::path(folder).parent_path().filename(), (ProgramFolder() / "x").parent_path().filename());
    EXPECT_TRUE(addDriver([&](auto& d) { d.pName = longName.data() + 1; })) << "255 characters";
    std::string windows = "Windows x64", other = "Windows 4.0";
    ASSERT_TRUE(directory(nullptr, windows.data(), 1, room.data(), 5000, &needed));
    const DWORD exact = needed;
    EXPECT_EQ(std::strlen(path) + 1, exact);
    EXPECT_TRUE(directory(nullptr, nullptr, 1, room.data(), exact, &needed));
    const struct {
        const char* what;
        DWORD error;
        std::function<BOOL()> call;
    } cases[] = {
        {"level of a driver", ERROR_INVALID_LEVEL, [&] { return AddPrinterDriverW(nullptr, 2, BytesOf(driver)); }},
        {"no driver", ERROR_INVALID_PARAMETER, [] { return AddPrinterDriverW(nullptr, 3, nullptr); }},
        {"driver elsewhere", ERROR_INVALID_PARAMETER,
         [&] { return AddPrinterDriverW(server.data(), 3, BytesOf(driver)); }},
        {"driver of another system", ERROR_INVALID_ENVIRONMENT,
         [&] { return addDriver([&](auto& d) { d.pEnvironment = elsewhere.data(); }); }},
        {"version 2", ERROR_INVALID_PARAMETER, [&] { return addDriver([](auto& d) { d.cVersion = 2; }); }},
        {"version 4", ERROR_INVALID_PARAMETER, [&] { return addDriver([](auto& d) { d.cVersion = 4; }); }},
        {"driver without a name", ERROR_INVALID_PARAMETER,
         [&] { return addDriver([](auto& d) { d.pName = nullptr; }); }},
        {"driver's name too long", ERROR_INVALID_PARAMETER,
         [&] { return addDriver([&](auto& d) { d.pName = longName.data(); }); }},
        {"driver's name a path", ERROR_INVALID_PARAMETER,
         [&] { return addDriver([&](auto& d) { d.pName = server.data(); }); }},
        {"driver without a file", ERROR_INVALID_PARAMETER,
         [&] { return addDriver([](auto& d) { d.pDriverPath = nullptr; }); }},
        {"driver without data", ERROR_INVALID_PARAMETER,
         [&] { return addDriver([](auto& d) { d.pDataFile = nullptr; }); }},
        {"driver without dialogue", ERROR_INVALID_PARAMETER,
         [&] { return addDriver([](auto& d) { d.pConfigFile = nullptr; }); }},
        {"delete nothing", ERROR_INVALID_PARAMETER, [] { return DeletePrinterDriverW(nullptr, nullptr, nullptr); }},
        {"delete elsewhere", ERROR_INVALID_PARAMETER,
         [&] { return DeletePrinterDriverW(server.data(), nullptr, text.data()); }},
        {"delete of another system", ERROR_INVALID_ENVIRONMENT,
         [&] { return DeletePrinterDriverW(nullptr, elsewhere.data(), text.data()); }},
        {"delete an unknown one", ERROR_UNKNOWN_PRINTER_DRIVER,
         [&] { return DeletePrinterDriverW(nullptr, nullptr, text.data()); }},
        {"level of the driver", ERROR_INVALID_LEVEL,
         [&] { return GetPrinterDriverW(printer, nullptr, 2, room.data(), 5000, &needed); }},
        {"another system's driver", ERROR_INVALID_ENVIRONMENT,
         [&] { return GetPrinterDriverW(printer, elsewhere.data(), 3, room.data(), 5000, &needed); }},
        {"level of the folder", ERROR_INVALID_LEVEL,
         [&] { return directory(nullptr, nullptr, 2, room.data(), 5000, &needed); }},
        {"folder elsewhere", ERROR_INVALID_PARAMETER,
         [&] { return directory(path, nullptr, 1, room.data(), 5000, &needed); }},
        {"folder's size", ERROR_INVALID_PARAMETER,
         [&] { return directory(nullptr, nullptr, 1, room.data(), 5000, nullptr); }},
        {"folder of another system", ERROR_INVALID_ENVIRONMENT,
         [&] { return directory(nullptr, other.data(), 1, room.data(), 5000, &needed); }},
        {"no room for the folder", ERROR_INSUFFICIENT_BUFFER,
         [&] { return directory(nullptr, nullptr, 1, room.data(), exact - 1, &needed); }},
        {"no buffer for the folder", ERROR_INSUFFICIENT_BUFFER,
         [&] { return directory(nullptr, nullptr, 1, nullptr, exact, &needed); }},
        {"level of forms", ERROR_INVALID_LEVEL,
         [&] { return EnumFormsW(printer, 2, room.data(), 5000, &needed, &count); }},
        {"forms' size", ERROR_INVALID_PARAMETER,
         [&] { return EnumFormsW(printer, 1, room.data(), 5000, nullptr, &count); }},
        {"forms' count", ERROR_INVALID_PARAMETER,
         [&] { return EnumFormsW(printer, 1, room.data(), 5000, &needed, nullptr); }},
        {"level of a form", ERROR_INVALID_LEVEL, [&] { return AddFormW(printer, 2, BytesOf(form)); }},
        {"no form", ERROR_INVALID_PARAMETER, [&] { return AddFormW(printer, 1, nullptr); }},
        {"form of no printer", ERROR_INVALID_HANDLE, [&] { return AddFormW(nullptr, 1, BytesOf(form)); }},
        {"form to delete", ERROR_INVALID_FORM_NAME, [&] { return DeleteFormW(printer, nullptr); }},
        {"no handle's place", ERROR_INVALID_PARAMETER, [&] { return OpenPrinterW(text.data(), nullptr, nullptr); }},
        {"level of a printer", ERROR_INVALID_LEVEL,
         [&] { return GetPrinterW(printer, 3, room.data(), 5000, &needed); }},
        {"level of printers", ERROR_INVALID_LEVEL,
         [&] { return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 1, room.data(), 5000, &needed, &count); }},
        {"printers' size", ERROR_INVALID_PARAMETER,
         [&] { return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 4, room.data(), 5000, nullptr, &count); }},
        {"printers' count", ERROR_INVALID_PARAMETER,
         [&] { return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 4, room.data(), 5000, &needed, nullptr); }},
        {"printers elsewhere", ERROR_INVALID_PARAMETER,
         [&] { return EnumPrintersW(PRINTER_ENUM_LOCAL, server.data(), 4, room.data(), 5000, &needed, &count); }},
        {"shared printers", ERROR_INVALID_PARAMETER,
         [&] { return EnumPrintersW(0, nullptr, 4, room.data(), 5000, &needed, &count); }},
        {"level to add", ERROR_INVALID_LEVEL, [&] { return AddPrinterW(nullptr, 1, room.data()) != nullptr; }},
        {"nothing to add", ERROR_INVALID_PARAMETER, [] { return AddPrinterW(nullptr, 2, nullptr) != nullptr; }},
        {"add elsewhere", ERROR_INVALID_PARAMETER,
         [&] { return AddPrinterW(server.data(), 2, room.data()) != nullptr; }},
    };
    for (const auto& test : cases) {
        SetLastError(ERROR_SUCCESS);
        EXPECT_FALSE(test.call()) << test.what;
        EXPECT_EQ(GetLastError(), test.error) << test.what;
    }
    EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), GetPrinterDataW(printer, nullptr, nullptr, nullptr, 0, &needed));
    EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), GetPrinterDataW(printer, text.data(), nullptr, nullptr, 0, nullptr));
    EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), SetPrinterDataW(printer, nullptr, REG_SZ, nullptr, 0));
    EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), SetPrinterDataW(printer, text.data(), REG_SZ, nullptr, 1));
    EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), DeletePrinterDataW(printer, nullptr));
    EXPECT_EQ(DWORD(ERROR_FILE_NOT_FOUND), DeletePrinterDataW(printer, text.data()));
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
