// Colour management and copies, in both directions and in the capabilities.
#include "boundprovider.h"

#include <chrono>
#include <climits>

namespace {

std::string Chosen(const std::string& feature, const std::string& option) { return Feature(feature, Option(option)); }
std::string Copies(const std::string& prefix, const std::string& value) {
    return Parameter(prefix + "JobCopiesAllDocuments", value);
}

TEST(Color, IsWrittenFromTheDevmode) {
    const TestStore store;
    const BoundProvider press(kPress);
    const struct {
        DWORD method, intent;
        const char *methodOption, *intentOption;
    } cases[] = {{1, 1, "psk:None", "psk:BusinessGraphics"},       {2, 2, "psk:System", "psk:Photographs"},
                 {3, 3, "psk:Driver", "psk:RelativeColorimetric"}, {4, 4, "psk:Device", "psk:AbsoluteColorimetric"},
                 {0, 0, "psk:Device", "psk:Photographs"},          {99, 7, "psk:Device", "psk:Photographs"}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.method);
        TestDevmode devmode = MakeTestDevmode();
        devmode.Get()->dmICMMethod = test.method;
        devmode.Get()->dmICMIntent = test.intent;
        const auto ticket = press.MakeTicket(devmode, Chosen("PageColorManagement", "psk:None"));
        EXPECT_EQ(ValueOf(ticket, "Feature", "psk:PageColorManagement"), test.methodOption);
        EXPECT_EQ(ValueOf(ticket, "Feature", "psk:PageICMRenderingIntent"), test.intentOption);
    }
}

// One walk through the document removes them all; one walk each would take minutes.
TEST(Color, DoubledThousandsOfTimesIsReplacedAsQuickly) {
    const TestStore store;
    const BoundProvider press(kPress);
    std::string old;
    for (int i = 0; i < 10000; ++i)
        old += Chosen("PageColorManagement", "psk:None") + Chosen("PageMediaSize", "psk:ISOA4") + Copies("mk:", "1");
    const auto ticket = LoadUsual("PrintTicket", old);
    TestDevmode devmode = MakeTestDevmode();
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(press.ToTicket(devmode, ticket), S_OK);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    EXPECT_EQ(ValueOf(ticket, "Feature", "psk:PageColorManagement"), "psk:Device");
    EXPECT_EQ(ValueOf(ticket, "ParameterInit", "mk:JobCopiesAllDocuments"), "0");
}

TEST(Color, IsReadFromTheTicket) {
    const TestStore store;
    const BoundProvider press(kPress);
    const struct {
        const char* option;
        DWORD osVersion, method;
    } cases[] = {{"psk:None", 10, 1},   {"psk:System", 10, 2}, {"psk:Driver", 10, 3},
                 {"psk:Device", 10, 4}, {"psk:device", 10, 9}, {"mk:None", 10, 9},
                 {"psk:Other", 10, 9},  {"psk:None", 5, 4},    {"mk:Other", 5, 4}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.option);
        ProviderProbe::SetOsMajorVersion(*press, test.osVersion);
        TestDevmode devmode = MakeTestDevmode();
        devmode.Get()->dmICMMethod = 9;
        devmode.Get()->dmICMIntent = 9;
        press.Apply(Chosen("PageColorManagement", test.option) + Chosen("PageICMRenderingIntent", "psk:Photographs"),
                    devmode);
        EXPECT_EQ(devmode.Get()->dmICMMethod, test.method);
        EXPECT_EQ(devmode.Get()->dmICMIntent, 9u) << "the intent goes one way only";
    }
}

TEST(Color, IsOfferedAsTheCapabilityWordAndTheSystemAllow) {
    const TestStore store;
    const BoundProvider press(kPress);
    const char* const intents =
        "psk:AbsoluteColorimetric psk:RelativeColorimetric psk:Photographs psk:BusinessGraphics";
    const struct {
        ULONGLONG flags;
        DWORD osVersion;
        const char *methods, *intents;
    } cases[] = {{0x400, 10, "psk:None", intents},
                 {0x200, 6, "psk:None psk:Device psk:System", intents},
                 {0x600, 5, "psk:Device", "-"},
                 {0x400, 5, "-", "-"}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.flags);
        ProviderProbe::SetCapabilityFlags(*press, test.flags);
        ProviderProbe::SetOsMajorVersion(*press, test.osVersion);
        const auto capabilities = press.Complete(Chosen("PageICMRenderingIntent", "psk:Old"));
        EXPECT_EQ(ValueOf(capabilities, "Feature", "psk:PageColorManagement"), test.methods);
        EXPECT_EQ(ValueOf(capabilities, "Feature", "psk:PageICMRenderingIntent"), test.intents);
        EXPECT_EQ(TextsOf(capabilities, "//@name[.='psk:PageColorManagement']"), "psk:PageColorManagement");
    }
}

TEST(Color, IsLeftAloneOnOtherFamilies) {
    const TestStore store;
    const BoundProvider office(kOffice);
    TestDevmode devmode = MakeTestDevmode();
    devmode.Get()->dmICMMethod = 9;
    const std::string none = Chosen("PageColorManagement", "psk:None");
    office.Apply(none, devmode);
    EXPECT_EQ(devmode.Get()->dmICMMethod, 9u);
    const auto ticket = office.MakeTicket(devmode, none);
    EXPECT_EQ(ValueOf(ticket, "Feature", "psk:PageColorManagement"), "psk:None");
    EXPECT_EQ(ValueOf(ticket, "Feature", "psk:PageICMRenderingIntent"), "-");
}

TEST(Copies, TravelInThePrivateNamespace) {
    const TestStore store;
    const BoundProvider office(kOffice);
    const struct {
        const char *prefix, *text;
        int copies;
    } fromTicket[] = {{"mk:", "7", 7},    {"mk:", "70000", 4464}, {"mk:", " +12x", 12}, {"mk:", "-3", -3},
                      {"mk:", "many", 0}, {"mk:", "", 5},         {"psk:", "7", 5}};
    for (const auto& test : fromTicket) {
        SCOPED_TRACE(test.text);
        TestDevmode devmode = MakeTestDevmode();
        devmode.Get()->dmCopies = 5;
        office.Apply(Copies(test.prefix, test.text), devmode);
        EXPECT_EQ(devmode.Get()->dmCopies, test.copies);
    }
    const std::pair<SHORT, const char*> fromDevmode[] = {{1, "1"}, {SHRT_MAX, "32767"}, {-1, "4294967295"}};
    for (const auto& [copies, text] : fromDevmode) {
        TestDevmode devmode = MakeTestDevmode();
        devmode.Get()->dmCopies = copies;
        const auto ticket = office.MakeTicket(devmode, Copies("mk:", "3") + Copies("psk:", "2") + Copies("mk:", "4"));
        EXPECT_EQ(ValueOf(ticket, "ParameterInit", "mk:JobCopiesAllDocuments"), text);
        EXPECT_EQ(ValueOf(ticket, "ParameterInit", "psk:JobCopiesAllDocuments"), "2") << "the core driver's own";
    }
}

TEST(Copies, AreDeclaredWithThePrintersLimit) {
    const TestStore store;
    const BoundProvider office(kOffice);
    const auto capabilities = office.Complete("<psf:ParameterDef name='psk:JobCopiesAllDocuments'/>");
    EXPECT_EQ(TextsOf(capabilities, "/*/psf:ParameterDef[@name='psk:JobCopiesAllDocuments']//psf:Value"),
              "xsd:integer 1 999 1 psk:Unconditional copies 1 Copies");
    EXPECT_EQ(TextsOf(capabilities, "//@name[.='psk:JobCopiesAllDocuments']"), "psk:JobCopiesAllDocuments");
}

}  // namespace
