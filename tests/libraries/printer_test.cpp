// What the spooler tells of a printer, its driver and its forms.
#include <support/printerfixture.h>

#include <mvutil/cforms.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/operatingsystem.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>
#include <mvutil/textresources.h>

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

class PrinterTest : public testing::Test {
protected:
    TestStore store_;
    TestPrinter printer_{kOffice};
    const HANDLE handle_ = printer_.GetHandle();
};

TEST_F(PrinterTest, TellsNamePortAndData) {
    const Printer printer(handle_);
    EXPECT_EQ(printer.GetPrinterName(), printer_.GetName());
    const TestPrinter other(kOffice, W("Other"));
    EXPECT_FALSE(printer.GetPrinterPort().IsEmpty());
    EXPECT_NE(printer.GetPrinterPort(), Printer(other.GetHandle()).GetPrinterPort());
    DWORD type = 7;
    ByteBuffer value;
    EXPECT_FALSE(printer.GetPrinterDataW(W("XNone"), type, value));
    EXPECT_EQ(type, 7u);
    const std::string large(5000, 'x');
    printer.SetPrinterDataW(W("XLarge"), REG_BINARY, large.data(), static_cast<DWORD>(large.size()));
    ASSERT_TRUE(printer.GetPrinterDataW(W("XLarge"), type, value));
    EXPECT_EQ(type, DWORD(REG_BINARY));
    EXPECT_EQ(value, ByteBuffer(large.data(), large.size()));
}

TEST_F(PrinterTest, AnUnknownPrinterIsAFailure) {
    for (const HANDLE bad : {HANDLE(), INVALID_HANDLE_VALUE, reinterpret_cast<HANDLE>(0x7FFF)}) {
        const Printer printer(bad);
        DWORD type = 0;
        ByteBuffer value;
        EXPECT_THROW(printer.GetPrinterName(), ExceptionPrinterFailure);
        EXPECT_THROW(printer.GetPrinterPort(), ExceptionPrinterFailure);
        EXPECT_THROW(printer.GetPrinterDataW(W("X"), type, value), ExceptionPrinterFailure);
        EXPECT_THROW(printer.SetPrinterDataW(W("X"), REG_DWORD, &type, sizeof type), ExceptionPrinterFailure);
        EXPECT_THROW(PrintDriver().GetDriverFiles(bad, 9, CXString()), ExceptionPrintDriverFailure);
        EXPECT_THROW(PrintDriver().GetDriverDependentFiles(bad), ExceptionPrintDriverFailure);
        EXPECT_THROW(PrintDriver::GetMorvaneDriverDataFilePathFromHandle(bad), ExceptionPrintDriverFailure);
        EXPECT_EQ(PrintDriver().GetDriverCapability(bad, 1984), 0u);
        EXPECT_EQ(PrintDriver::GetInstallationStateFromHandle(bad), 0);
        EXPECT_TRUE(CForms(bad, true).GetForms().empty());
    }
}

TEST_F(PrinterTest, TheDriversFilesAreListedByKindInLowerCase) {
    const CXString main = PrintDriver().GetDriverFiles(handle_, 1, CXString());
    const CXString dependent = PrintDriver().GetDriverFiles(handle_, 8, CXString());
    EXPECT_NE(main.Find(W("office8430.toml\n")), -1);
    EXPECT_EQ(main.Find(W("mvwfwuc0.dll")), -1);
    EXPECT_NE(dependent.Find(W("mvwfwuc0.dll\n")), -1);
    EXPECT_EQ(PrintDriver().GetDriverFiles(handle_, 9, CXString()), main + dependent);
    const CXString one = PrintDriver().GetDriverFiles(handle_, 9, W("mvWFwuC0"));
    EXPECT_NE(one.Find(W("mvwfwuc0.dll")), -1);
    EXPECT_EQ(one.Find(W("mvutil")), -1);
}

TEST_F(PrinterTest, TheDependentFilesKeepTheirSpelling) {
    const std::vector<CXString> files = PrintDriver().GetDriverDependentFiles(handle_);
    ASSERT_EQ(files.size(), 5u);
    EXPECT_EQ(files.front(), CXString("mvutilC0.dll"));
    EXPECT_EQ(files.back(), CXString("mvwfwuC0.dll"));
}

TEST_F(PrinterTest, TheStampCountsUpAndABadPrinterIsPassedOver) {
    const auto stamp = [&] {
        DWORD type = 0;
        ByteBuffer value;
        return Printer(handle_).GetPrinterDataW(W("XDevmodeCacheStamp"), type, value) ? value.getAsLongValue() : -1;
    };
    EXPECT_EQ(stamp(), -1);
    for (const LONG wanted : {1, 2}) {
        Printer(handle_).ClearDevmode1stLevelCache();
        EXPECT_EQ(stamp(), wanted);
    }
    Printer(handle_).SetPrinterDataW(W("XDevmodeCacheStamp"), REG_BINARY, "x", 1);
    Printer(handle_).ClearDevmode1stLevelCache();
    EXPECT_EQ(stamp(), 1) << "what is no stamp is replaced";
    Printer(nullptr).ClearDevmode1stLevelCache();
}

TEST_F(PrinterTest, TheCurrentProductNamesItsTraysAndMediaTypes) {
    const ProductStringLoader loader(0);
    TextResourceLoader::Initialize(nullptr, false);
    EXPECT_TRUE(loader.GetStringForValue(6822).IsEmpty());
    TextResourceLoader::Initialize(handle_, false);
    EXPECT_EQ(loader.GetStringForValue(6822), CXString("Cardstock"));
    EXPECT_EQ(loader.GetStringForValue(7151), CXString("Bypass Tray"));
    EXPECT_TRUE(loader.GetStringForValue(6802).IsEmpty()) << "not in this product";
    TextResourceLoader::Initialize(nullptr, false);
}

TEST_F(PrinterTest, AReadableDataFileCompletesAnInstallation) {
    EXPECT_EQ(PrintDriver::GetInstallationStateFromHandle(handle_), int{PrintDriver::kInstallationComplete});
    EXPECT_EQ(PrintDriver().GetDriverCapability(handle_, 1984), 1u);
    EXPECT_EQ(PrintDriver().GetDriverCapability(handle_, 1), 0u);
    // A private copy of the product, then damaged.
    const std::filesystem::path file = std::filesystem::temp_directory_path() /
                                       ("mvproduct-" + std::to_string(GetCurrentProcessId())) / "own" / "own.toml";
    std::filesystem::create_directories(file.parent_path());
    const std::filesystem::path source = ProductFile(kOffice);
    std::filesystem::copy(source.parent_path(), file.parent_path());
    std::filesystem::rename(file.parent_path() / source.filename(), file);
    std::filesystem::copy_file(source.parent_path().parent_path() / "strings.toml",
                               file.parent_path().parent_path() / "strings.toml");
    {
        const TestPrinter own(W("Own"), file);
        EXPECT_EQ(PrintDriver::GetInstallationStateFromHandle(own.GetHandle()), 4);
        std::ofstream(file) << "model = 5\n";
        EXPECT_EQ(PrintDriver::GetInstallationStateFromHandle(own.GetHandle()), 3);
        EXPECT_EQ(PrintDriver().GetDriverCapability(own.GetHandle(), 1984), 0u);
    }
    std::filesystem::remove_all(file.parent_path().parent_path());
}

TEST_F(PrinterTest, FormsAreNumberedFromOneInTheSpoolersOrder) {
    WCHAR name[] = W("A User's Form");
    FORM_INFO_1W form = {};
    form.Flags = FORM_USER;
    form.pName = name;
    form.Size = {100000, 70000};
    form.ImageableArea = {0, 0, 100000, 70000};
    ASSERT_TRUE(AddFormW(handle_, 1, reinterpret_cast<LPBYTE>(&form)));

    const CForms all(handle_, true);
    const CForms tall(handle_, false);
    ASSERT_GT(all.GetForms().size(), 100u);
    for (std::size_t index = 0; index < all.GetForms().size(); ++index)
        ASSERT_EQ(all.GetForms()[index].formIndex, index + 1);
    const _MVN_FORM_INFO* const a4 = all.GetFormW(W("a4"));
    ASSERT_NE(a4, nullptr);
    EXPECT_EQ(a4->formIndex, 9) << "a built-in form's number is its paper number";
    EXPECT_EQ(a4->width, 210000);
    EXPECT_EQ(a4->length, 297000);
    EXPECT_EQ(a4->isUserForm, 0u);
    EXPECT_EQ(all.GetFormW(WORD(9)), a4);
    EXPECT_EQ(all.GetFormW(WORD(0)), nullptr);
    const _MVN_FORM_INFO* const own = all.GetFormW(name);
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(own->isUserForm, 1u);
    EXPECT_EQ(tall.GetFormW(name), nullptr) << "wider than long";
    ASSERT_NE(tall.GetFormW(W("A4")), nullptr);
    EXPECT_EQ(tall.GetFormW(W("A4"))->formIndex, 9) << "leaving forms out moves no number";
}

// What the system answers for the user; it may have read the registry long before.
char LocaleAnswer(DWORD type) {
    WCHAR text[16] = {};
    EXPECT_GT(GetLocaleInfoW(LOCALE_USER_DEFAULT, type, text, 16), 0);
    return static_cast<char>(text[0]);
}

TEST(OperatingSystem, FollowsTheUsersConventions) {
    const TestStore store;
    for (const WCHAR digit : {W('0'), W('1'), W('5'), W('8'), W('9')}) {
        UniqueKey key;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, W("Control Panel\\International"), 0, nullptr, 0, KEY_WRITE,
                                  nullptr, key.Put(), nullptr),
                  ERROR_SUCCESS);
        const WCHAR text[] = {digit, 0};
        for (const WCHAR* name : {W("iPaperSize"), W("iMeasure")})
            RegSetValueExW(key.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), sizeof text);
        const char paper = LocaleAnswer(LOCALE_IPAPERSIZE);
        EXPECT_EQ(OperatingSystem::UseEnglishPaperSizes(), paper == '1' || paper == '5') << paper;
        EXPECT_EQ(OperatingSystem::IsMetricCountry(), LocaleAnswer(LOCALE_IMEASURE) == '0');
    }
}

TEST(MorvaneUtilities, SplitsPaths) {
    EXPECT_EQ(MorvaneUtilities::getPathFromFileName(W("C:\\a\\b.dll")), W("C:\\a\\"));
    EXPECT_EQ(MorvaneUtilities::getPathFromFileName(W("a/b.dll")), W("a/"));
    EXPECT_EQ(MorvaneUtilities::getPathFromFileName(W("b.dll")), W(""));
    EXPECT_NE(MorvaneUtilities::getModulePath(nullptr).Find(W("libraries_test")), -1);
    EXPECT_TRUE(MorvaneUtilities::getModulePath(reinterpret_cast<HMODULE>(0x10)).IsEmpty());
}

}  // namespace
