// What the spooler reports of a printer, its driver and its forms.
#include <support/printerfixture.h>
#include <support/userconventions.h>
#include <support/userpapers.h>

#include <mvutil/cforms.h>
#include <mvutil/datacache.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/operatingsystem.h>
#include <mvutil/operationscope.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>

#include <gtest/gtest.h>

namespace {

class PrinterTest : public testing::Test {
protected:
    TestStore store_;
    TestPrinter printer_{kOffice};
    const HANDLE handle_ = printer_.GetHandle();
};

TEST_F(PrinterTest, TellsDataOfAnySize) {
    const Printer printer(handle_);
    DWORD type = 7;
    ByteBuffer value;
    EXPECT_FALSE(printer.GetPrinterDataW(W("XNone"), type, value));
    EXPECT_EQ(type, 7u);
    const ByteBuffer large(std::string(5000, 'x').data(), 5000);
    printer.SetPrinterDataW(W("XLarge"), REG_BINARY, large.getLpbyte(), large.getDword());
    ASSERT_TRUE(printer.GetPrinterDataW(W("XLarge"), type, value));
    EXPECT_EQ(type, DWORD(REG_BINARY));
    EXPECT_EQ(value, large);
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
    const PrintDriver driver;
    const CXString main = driver.GetDriverFiles(handle_, 1, CXString());
    const CXString dependent = driver.GetDriverFiles(handle_, 8, CXString());
    EXPECT_NE(main.Find(W("office8430.toml\n")), -1);
    EXPECT_EQ(main.Find(W("mvwfwuc0.dll")), -1);
    EXPECT_NE(dependent.Find(W("mvwfwuc0.dll\n")), -1);
    EXPECT_EQ(driver.GetDriverFiles(handle_, 9, CXString()), main + dependent);
    EXPECT_EQ(driver.GetDriverFiles(handle_, 9, W("mvWFwuC0")).Find(W("mvutil")), -1);
    EXPECT_EQ(driver.GetDriverDependentFiles(handle_).back(), CXString("mvwfwuC0.dll")) << "in their own spelling";
}

TEST_F(PrinterTest, TheStampCountsUpAndABadPrinterIsPassedOver) {
    const Printer printer(handle_);
    for (const LONG wanted : {1, 2, 1}) {
        printer.ClearDevmode1stLevelCache();
        DWORD type = 0;
        ByteBuffer value;
        ASSERT_TRUE(printer.GetPrinterDataW(W("XDevmodeCacheStamp"), type, value));
        EXPECT_EQ(value.getAsLongValue(), wanted) << "what is no stamp is replaced";
        if (wanted == 2) printer.SetPrinterDataW(W("XDevmodeCacheStamp"), REG_BINARY, "x", 1);
    }
    Printer(nullptr).ClearDevmode1stLevelCache();
}

TEST_F(PrinterTest, AReadableDataFileCompletesAnInstallation) {
    const ChangedProduct product(kOffice, {});
    const TestPrinter own(W("Own"), product.GetFile());
    EXPECT_EQ(PrintDriver::GetInstallationStateFromHandle(own.GetHandle()), int{PrintDriver::kInstallationComplete});
    WriteTestFile(product.GetFile(), "model = 5\n");
    EXPECT_EQ(PrintDriver::GetInstallationStateFromHandle(own.GetHandle()), 3);
    EXPECT_EQ(PrintDriver().GetDriverCapability(own.GetHandle(), 1984), 0u);
}

TEST_F(PrinterTest, FormsAreNumberedFromOneInTheSpoolersOrder) {
    AddForm(handle_, W("A User's Form"), 100000, 70000);
    const CForms all(handle_, true);
    const CForms tall(handle_, false);
    ASSERT_GT(all.GetForms().size(), 100u);
    for (std::size_t index = 0; index < all.GetForms().size(); ++index)
        ASSERT_EQ(all.GetForms()[index].formIndex, index + 1);
    const _MVN_FORM_INFO* const a4 = all.GetFormW(W("a4"));
    ASSERT_NE(a4, nullptr);
    EXPECT_EQ(a4->formIndex, 9) << "a built-in form's number is its paper number";
    EXPECT_EQ(all.GetFormW(WORD(9)), a4);
    EXPECT_EQ(all.GetFormW(WORD(0)), nullptr);
    EXPECT_EQ(tall.GetFormW(W("A User's Form")), nullptr) << "wider than long";
    AddForm(handle_, W("Square"), 100000, 100000);
    EXPECT_NE(CForms(handle_, false).GetFormW(W("Square")), nullptr);
    ASSERT_NE(tall.GetFormW(W("A4")), nullptr);
    EXPECT_EQ(tall.GetFormW(W("A4"))->formIndex, 9) << "leaving forms out moves no number";
}

// What is asked of the printer, its forms and its cached values, in one line.
std::string Describe(HANDLE printer) {
    const DataCache cache(printer, W("key"), 0, true);
    return Printer(printer).GetPrinterPort().ToUtf8() + " " +
           std::to_string(CForms(printer, true).GetFormW(W("Own")) != nullptr) +
           std::to_string(cache.GetCachedLongValue(W("Value"), -1));
}

TEST_F(PrinterTest, AnOperationSeesOnePrinterAndWhatItWritesItself) {
    const CXString port = Printer(handle_).GetPrinterPort();
    const auto change = [&](const WideString& newPort, LONG value) {
        UniqueKey key;
        const CXString path = CXString(W("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\")) + printer_.GetName();
        ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_WRITE, key.Put()), ERROR_SUCCESS);
        RegSetValueExW(key.Get(), W("Port"), 0, REG_SZ, reinterpret_cast<const BYTE*>(newPort.c_str()),
                       static_cast<DWORD>(newPort.size() + 1) * sizeof(WCHAR));
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, W("Software\\Morvane\\Printer Driver\\Printers\\key"), 0, nullptr,
                                  0, KEY_WRITE, nullptr, key.Put(), nullptr),
                  ERROR_SUCCESS);
        RegSetValueExW(key.Get(), W("Value"), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof value);
    };
    const std::string before = port.ToUtf8() + " 0-1";
    {
        const OperationScope scope;
        EXPECT_EQ(Describe(handle_), before);
        change(W("NEW:"), 5);
        AddForm(handle_, W("Own"), 70000, 100000);
        {
            const OperationScope inner;
            EXPECT_EQ(Describe(handle_), before) << "what others write, inside another scope too";
        }
        EXPECT_EQ(Describe(handle_), before) << "of the outer scope, which still lives";
        DataCache(handle_, W("key"), 0, true).SetCachedValue(W("VALUE"), 7, false);
        EXPECT_EQ(Describe(handle_), port.ToUtf8() + " 07") << "what this library writes";
        EXPECT_TRUE(DataCache(handle_, W("key"), 0, true).DeleteCache(W("value"), false));
        EXPECT_EQ(Describe(handle_), before);
    }
    EXPECT_EQ(Describe(handle_), "NEW: 1-1") << "the next operation asks afresh";
}

TEST(OperatingSystem, FollowsTheUsersConventions) {
    const TestStore store;
    const struct {
        const WCHAR *paper, *measure;
        bool isEnglish, isMetric;
    } cases[] = {{W("1"), W("0"), true, true},
                 {W("5"), W("1"), true, false},
                 {W("8"), W("0"), false, true},
                 {W("9"), W("1"), false, false}};
    for (const auto& test : cases) {
        const UserConventions user(test.paper, test.measure);
        EXPECT_EQ(OperatingSystem::UseEnglishPaperSizes(), test.isEnglish);
        EXPECT_EQ(OperatingSystem::IsMetricCountry(), test.isMetric);
    }
}

}  // namespace
