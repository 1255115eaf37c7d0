// Installing products as printers, and removing them.
#include "spoolerfixture.h"

#include <products/reader/productdescription.h>

#include <cstring>

namespace {

constexpr const WCHAR* kCachesOfPort = W("Software\\Morvane\\Printer Driver\\Printers\\P:");

void LeaveACache() {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kCachesOfPort, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);
}

bool HasCaches() {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kCachesOfPort, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

DWORD CountPrinters() {
    DWORD needed = 0, count = 0;
    std::vector<BYTE> buffer(65536);
    EXPECT_TRUE(EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, buffer.data(), 65536, &needed, &count));
    return count;
}

template <class Operation>
std::string ErrorOf(Operation operation) {
    try {
        operation();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

}  // namespace

TEST_F(SpoolerTest, GivesEachPrinterAPortOfItsOwn) {
    EXPECT_EQ(InstallPrinter(W("One"), ProductFile("press8434"), W("")), W("MV_1:"));
    EXPECT_EQ(InstallPrinter(W("Two"), ProductFile("press8434"), W("")), W("MV_2:"));
    RemovePrinter(W("One"));
    EXPECT_THROW(InstallPrinter(W("two"), ProductFile("press8434"), W("")), std::runtime_error)
        << "its port is free again";
    EXPECT_EQ(InstallPrinter(W("Three"), ProductFile("office8430"), W("")), W("MV_1:"));
}

TEST_F(SpoolerTest, SharesAPortOnlyAmongPrintersOfOneProduct) {
    Install(W("Press"), "press8434", W("P\\1"));
    EXPECT_NE(Install(W("Press 2"), "press8434", W("p_1")), nullptr) << "their caches are the same";
    const std::string error = ErrorOf([&] { InstallPrinter(W("Office"), ProductFile("office8430"), W("P_1")); });
    EXPECT_NE(error.find("'P_1' is used by the printer"), std::string::npos) << error;
}

TEST_F(SpoolerTest, LeavesNothingOfARemovedPrinterToTheNext) {
    LeaveACache();
    Install(W("One"), "press8434", W("P:"));
    EXPECT_FALSE(HasCaches()) << "caches of a printer that went without being removed";
    LeaveACache();
    Install(W("Two"), "press8434", W("P:"));
    EXPECT_TRUE(HasCaches()) << "the first printer's, whose port it shares";
    RemovePrinter(W("one"));
    EXPECT_TRUE(HasCaches());
    RemovePrinter(W("Two"));
    EXPECT_FALSE(HasCaches());
    WideString driver = W("Morvane Press 8434");
    EXPECT_FALSE(DeletePrinterDriverW(nullptr, nullptr, driver.data())) << "the driver went with its last printer";
}

TEST_F(SpoolerTest, SaysWhyAPrinterCannotBeInstalledOrRemoved) {
    Install(W("There"));
    struct Row {
        WideString name;
        std::filesystem::path product;
        const char* told;
    };
    const Row rows[] = {{W("a\\b"), ProductFile("press8434"), "'a\\b' cannot be added: a printer's name has 1 to 219"},
                        {W("There"), ProductFile("press8434"), "there is a printer of that name"},
                        {W("New"), "none.toml", "none.toml:1: expected a readable product file"}};
    for (const Row& row : rows) {
        const std::string error = ErrorOf([&] { InstallPrinter(row.name, row.product, WideString()); });
        EXPECT_NE(error.find(row.told), std::string::npos) << error;
    }
    const std::string error = ErrorOf([] { RemovePrinter(W("Nobody")); });
    EXPECT_EQ(error, "There is no printer 'Nobody'");
    EXPECT_EQ(CountPrinters(), 1u);
}
