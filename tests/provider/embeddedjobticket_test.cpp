// The job ticket inside the PrintTicket: who gets one, where it lies, and that its text arrives as it was made.
#include "boundprovider.h"

#include <support/jobdevmode.h>

#include <mvutil/globalcaches.h>

namespace {

const std::string kName = "mk:JobMorvaneMvjtJobTicket";
const std::string kOld = Parameter(kName, "old");

// The exact text of the parameter's Value: the text of an element is trimmed.
CXString JobTicketOf(const ComPtr<IXMLDOMDocument2>& ticket) {
    const WideString query = W("/*/*[@name='mk:JobMorvaneMvjtJobTicket']/*/text()");
    ComPtr<IXMLDOMNode> text;
    Variant value;
    EXPECT_EQ(ticket->selectSingleNode(Bstr(query).Get(), text.Put()), S_OK);
    if (text) {
        EXPECT_EQ(text->get_nodeValue(value.Put()), S_OK);
    }
    return CXString(WideString(value.Text()));
}

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
    return count;
}

TEST(JobTicket, IsTheRootsFirstChildHoweverOftenItIsMade) {
    const TestStore store;
    const BoundProvider press(kPress);
    TestDevmode devmode = MakeJobDevmode();
    const auto ticket = LoadUsual("PrintTicket", "<psf:Feature name='psk:PageOrientation'/>" + kOld + kOld);
    for (int time = 0; time < 2; ++time) {
        ASSERT_EQ(press.ToTicket(devmode, ticket), S_OK);
        EXPECT_EQ(TextsOf(ticket, "/*/*[1]/@name | /*/*[last()]/@name"), kName + " mk:JobMorvaneDriverData");
        EXPECT_EQ(Count(TextOf(ticket), kName), 1u);
    }
}

TEST(JobTicket, IsForTheFamilyAndTheFlagOnly) {
    const TestStore store;
    const struct {
        const char* product;
        ULONGLONG flags;
        bool asks;
        std::string wanted;  // number of job tickets and of the old one among them
    } cases[] = {{kPress, 0x400, true, "1 0"},  {kPress, 0x400, false, "0 0"}, {kPress, 0, true, "1 1"},
                 {kOffice, 0x400, true, "0 0"}, {kOffice, 0, true, "1 1"},     {kScript, 0x600, true, "0 0"}};
    for (const auto& test : cases) {
        const std::string name = test.product + std::to_string(test.flags) + (test.asks ? " asks" : "");
        SCOPED_TRACE(name);
        const BoundProvider provider(test.product, CXString(name.c_str()));
        ProviderProbe::SetCapabilityFlags(*provider, test.flags);
        TestDevmode devmode = MakeJobDevmode([&](auto& list) { SetBoolean(list, 286, test.asks); });
        const auto ticket = provider.MakeTicket(devmode, kOld);
        const std::string text = TextOf(ticket);
        EXPECT_EQ(std::to_string(Count(text, kName)) + " " + std::to_string(Count(text, ">old<")), test.wanted);
    }
}

TEST(JobTicket, ArrivesCharacterForCharacter) {
    const TestStore store;
    const BoundProvider press(kPress);
    const std::pair<WideString, std::string> cases[] = {
        {W("Fish & <Chips> ]]> \"'"), "Fish & <Chips> ]]> \"'"},
        {W("forged\n%MVNdisposition: SAVE\r%MVNtitle: x"), "forged %MVNdisposition: SAVE %MVNtitle: x"},
        {W("\x01\x7F\x85\x9F caf\u00E9 \u0416\u2028\xD83D\xDE00"), "     caf\xC3\xA9 ????"},
        {WideString(1, 0xD800) + W("\n"), "? "},
        {WideString(65536, W('x')), std::string(65536, 'x')},
        {W(""), "Default job"},
    };
    for (const auto& [title, expected] : cases) {
        TestDevmode devmode = MakeJobDevmode([&](auto& list) { SetText(list, 78, title); });
        const auto ticket = press.MakeTicket(devmode);
        const auto again = Load(TextOf(ticket));
        again->setProperty(Bstr(W("SelectionLanguage")).Get(), Variant(WideStringView(W("XPath"))).Get());
        const CXString text = JobTicketOf(again);
        EXPECT_TRUE(text.ToUtf8().starts_with("%MVNbegin: 001.0300\n%MVNtitle: " + expected + "\n%MVNsenderName: "))
            << text.ToUtf8().substr(0, 200);
        EXPECT_TRUE(text.ToUtf8().ends_with("\n"));
        EXPECT_EQ(Count(text.ToUtf8(), "\n%MVNdisposition: "), 1u);
    }
}

TEST(JobTicket, IsMadeAgainWithoutReadingTheBlockAgain) {
    const TestStore store;
    const BoundProvider press(kPress);
    TestDevmode devmode = MakeJobDevmode();
    GlobalCaches::Clear();
    press.MakeTicket(devmode);
    const GlobalCaches::Counters first = GlobalCaches::GetCounters();
    press.MakeTicket(devmode);
    const GlobalCaches::Counters second = GlobalCaches::GetCounters();
    EXPECT_EQ(second.propertyBagMisses, first.propertyBagMisses);
    EXPECT_EQ(second.listMisses, first.listMisses);
    EXPECT_GT(second.listHits, first.listHits);
}

TEST(JobTicket, IsDeclaredFirstForTheFlagOnly) {
    const TestStore store;
    const BoundProvider press(kPress);
    const std::string old = "<psf:ParameterDef name='" + kName + "'/>";
    const auto capabilities = press.Complete("<psf:Feature name='psk:Other'/>" + old + old);
    EXPECT_EQ(TextsOf(capabilities, "/*/*[1]/@name | /*/*[1]//psf:Value"),
              kName + " xsd:string 3500000 0 psk:Optional base64 ");
    EXPECT_EQ(Count(TextOf(capabilities), kName), 1u);
    ProviderProbe::SetCapabilityFlags(*press, 0);
    const auto plain = press.Complete();
    EXPECT_EQ(Count(TextOf(plain), kName), 0u);
}

}  // namespace
