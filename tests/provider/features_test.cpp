// Colour management and copies, in both directions and in the capabilities, with the other declared parameters.
#include "boundprovider.h"

#include <verify/failingdom.h>

namespace {

using Color = ProviderTest;
using Copies = ProviderTest;
using Parameters = ProviderTest;

std::string Chosen(const std::string& feature, const std::string& option) { return Feature(feature, Option(option)); }
std::string CopiesOf(const std::string& prefix, const std::string& value) {
    return Parameter(prefix + "JobCopiesAllDocuments", value);
}

TEST_F(Color, TravelsToTheTicketAndBack) {
    const struct {
        DWORD method, intent;
        const char *methodOption, *intentOption;
        DWORD methodBack;
    } cases[] = {{1, 1, "psk:None", "psk:BusinessGraphics", 1},
                 {2, 2, "psk:System", "psk:Photographs", 2},
                 {3, 3, "psk:Driver", "psk:RelativeColorimetric", 3},
                 {4, 4, "psk:Device", "psk:AbsoluteColorimetric", 4},
                 {99, 7, "psk:Device", "psk:Photographs", 4}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.method);
        TestDevmode devmode = MakeTestDevmode();
        devmode.Get()->dmICMMethod = test.method;
        devmode.Get()->dmICMIntent = test.intent;
        const auto ticket = press.MakeTicket(devmode, Chosen("PageColorManagement", "psk:None"));
        EXPECT_EQ(ValueOf(ticket, "Feature", "psk:PageColorManagement"), test.methodOption);
        EXPECT_EQ(ValueOf(ticket, "Feature", "psk:PageICMRenderingIntent"), test.intentOption);
        devmode.Get()->dmICMIntent = 9;
        EXPECT_EQ(press.ToDevmode(ticket, devmode), S_OK);
        EXPECT_EQ(devmode.Get()->dmICMMethod, test.methodBack);
        EXPECT_EQ(devmode.Get()->dmICMIntent, 9u) << "the intent goes one way only";
    }
    TestDevmode devmode = MakeTestDevmode();
    const std::string old = Chosen("PageColorManagement", "psk:None");
    EXPECT_EQ(TextsOf(press.MakeTicket(devmode, old + Feature("Another", old) + old),
                      "//*[@name='psk:PageColorManagement']/*/@name"),
              "psk:None psk:Device")
        << "inside another's feature it stays";
}

TEST_F(Color, IsReplacedInAsManySearchesHoweverOftenItIsDoubled) {
    const auto countSearches = [&](int times) {
        std::string old;
        for (int i = 0; i < times; ++i)
            old +=
                Chosen("PageColorManagement", "psk:None") + Chosen("PageMediaSize", "psk:ISOA4") + CopiesOf("mk:", "1");
        const auto ticket = LoadUsual("PrintTicket", old);
        TestDevmode devmode = MakeTestDevmode();
        DomCallPlan plan;
        EXPECT_EQ(press.ToTicket(devmode, MakeFailingDocument(ticket.Get(), &plan)), S_OK);
        EXPECT_EQ(ValueOf(ticket, "Feature", "psk:PageColorManagement"), "psk:Device");
        EXPECT_EQ(ValueOf(ticket, "ParameterInit", "mk:JobCopiesAllDocuments"), "0");
        return plan.searches;
    };
    EXPECT_EQ(countSearches(100), countSearches(2));
}

TEST_F(Color, IsReadFromKeywordsOnly) {
    TestDevmode devmode = MakeTestDevmode();
    devmode.Get()->dmICMMethod = 9;
    for (const char* const option : {"psk:device", "mk:None"}) {
        press.Apply(Chosen("PageColorManagement", option), devmode);
        EXPECT_EQ(devmode.Get()->dmICMMethod, 9u) << option;
    }
    ProviderProbe::SetOsMajorVersion(*press, 5);
    press.Apply(Chosen("PageColorManagement", "psk:None"), devmode);
    EXPECT_EQ(devmode.Get()->dmICMMethod, 4u) << "an old system leaves it to the device";
}

TEST_F(Color, IsOfferedAsTheCapabilityWordAndTheSystemAllow) {
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

TEST_F(Copies, TravelInThePrivateNamespace) {
    const struct {
        const char *prefix, *text;
        int copies;
    } fromTicket[] = {
        {"mk:", "70000", 4464}, {"mk:", " +12x", 12}, {"mk:", "many", 0}, {"mk:", "", 5}, {"psk:", "7", 5}};
    for (const auto& test : fromTicket) {
        SCOPED_TRACE(test.text);
        TestDevmode devmode = MakeTestDevmode();
        devmode.Get()->dmCopies = 5;
        office.Apply(CopiesOf(test.prefix, test.text), devmode);
        EXPECT_EQ(devmode.Get()->dmCopies, test.copies);
    }
    TestDevmode devmode = MakeTestDevmode();
    devmode.Get()->dmCopies = -1;
    const auto ticket = office.MakeTicket(devmode, CopiesOf("mk:", "3") + CopiesOf("psk:", "2") + CopiesOf("mk:", "4"));
    EXPECT_EQ(ValueOf(ticket, "ParameterInit", "mk:JobCopiesAllDocuments"), "-1");
    EXPECT_EQ(ValueOf(ticket, "ParameterInit", "psk:JobCopiesAllDocuments"), "2") << "the core driver's own";
}

TEST_F(Parameters, AreDeclaredOnceEachInTheirPlaces) {
    const std::string ticket = "mk:JobMorvaneMvjtJobTicket", copies = "psk:JobCopiesAllDocuments",
                      data = "mk:JobMorvaneDriverData";
    std::string old = "<psf:Feature name='psk:Other'/>";
    for (const std::string& name : {data, copies, ticket, ticket}) old += "<psf:ParameterDef name='" + name + "'/>";
    const auto capabilities = press.Complete(old);
    EXPECT_EQ(TextsOf(capabilities, "/*/*[1]//psf:Value"), "xsd:string 3500000 0 psk:Optional base64 ");
    EXPECT_EQ(TextsOf(capabilities, "/*/psf:ParameterDef[@name='" + copies + "']//psf:Value"),
              "xsd:integer 1 9999 1 psk:Unconditional copies 1 Copies");
    EXPECT_EQ(TextsOf(capabilities, "/*/*[last()]//psf:Value"), "xsd:string 20000 0 psk:Optional base64 ");
    EXPECT_EQ(TextsOf(capabilities, "//@name[contains(.,':JobCopies') or contains(.,':JobMorvane')]"),
              ticket + " " + copies + " " + data);
    ProviderProbe::SetCapabilityFlags(*press, 0);
    EXPECT_EQ(TextsOf(press.Complete(), "/*/*[@name='" + ticket + "']"), "-");
}

}  // namespace
