// Installing products as printers, and removing them.
#include "spoolerfixture.h"

namespace {

constexpr const WCHAR* kCachesOfPort = W("Software\\Morvane\\Printer Driver\\Printers\\P:");

void LeaveACache() {
    UniqueKey key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kCachesOfPort, 0, nullptr, 0, KEY_READ, nullptr, key.Put(), nullptr),
              ERROR_SUCCESS);
}

bool HasCaches() {
    UniqueKey key;
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, kCachesOfPort, 0, KEY_READ, key.Put()) == ERROR_SUCCESS;
}

}  // namespace

TEST_F(SpoolerTest, GivesEachPrinterAPortOfItsOwn) {
    EXPECT_EQ(InstallPrinter(W("One"), ProductFile(kPress), W("")), W("MV_1:"));
    EXPECT_EQ(InstallPrinter(W("Two"), ProductFile(kPress), W("")), W("MV_2:"));
    RemovePrinter(W("One"));
    EXPECT_THROW(InstallPrinter(W("two"), ProductFile(kPress), W("")), std::runtime_error) << "its port is free again";
    EXPECT_EQ(InstallPrinter(W("Three"), ProductFile(kOffice), W("")), W("MV_1:"));
}

TEST_F(SpoolerTest, SharesAPortOnlyAmongPrintersOfOneProduct) {
    Install(W("Press"), kPress, W("P\\1"));
    EXPECT_NE(Install(W("Press 2"), kPress, W("p_1")), nullptr) << "their caches are the same";
    EXPECT_THROW(InstallPrinter(W("Office"), ProductFile(kOffice), W("P_1")), std::runtime_error);
}

TEST_F(SpoolerTest, LeavesNothingOfARemovedPrinterToTheNext) {
    LeaveACache();
    Install(W("One"), kPress, W("P:"));
    EXPECT_FALSE(HasCaches()) << "caches of a printer that went without being removed";
    LeaveACache();
    Install(W("Two"), kPress, W("P:"));
    EXPECT_TRUE(HasCaches()) << "the first printer's, whose port it shares";
    RemovePrinter(W("one"));
    EXPECT_TRUE(HasCaches());
    RemovePrinter(W("Two"));
    EXPECT_FALSE(HasCaches());
    WideString driver = W("Morvane Press 8434");
    EXPECT_FALSE(DeletePrinterDriverW(nullptr, nullptr, driver.data())) << "the driver went with its last printer";
}
