// The job ticket inside the PrintTicket: who gets one, where it lies, and that its text arrives as it was made.
#include "boundprovider.h"

#include <support/jobdevmode.h>

namespace {

using JobTicket = ProviderTest;

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
    return CXString(value.Text());
}

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
    return count;
}

TEST_F(JobTicket, IsTheRootsFirstChildHoweverOftenItIsMade) {
    TestDevmode devmode = MakeJobDevmode();
    const auto ticket = LoadUsual("PrintTicket", "<psf:Feature name='psk:PageOrientation'/>" + kOld + kOld);
    for (int time = 0; time < 2; ++time) {
        ASSERT_EQ(press.ToTicket(devmode, ticket), S_OK);
        EXPECT_EQ(TextsOf(ticket, "/*/*[1]/@name | /*/*[last()]/@name"), kName + " mk:JobMorvaneDriverData");
        EXPECT_EQ(Count(TextOf(ticket), kName), 1u);
    }
}

TEST_F(JobTicket, IsForTheFamilyAndTheFlagOnly) {
    const struct {
        const BoundProvider& provider;
        ULONGLONG flags;
        bool asks;
        std::string wanted;  // number of job tickets and of the old one among them
    } cases[] = {{press, 0x400, true, "1 0"},
                 {press, 0x400, false, "0 0"},
                 {press, 0, true, "1 1"},
                 {office, 0x400, true, "0 0"},
                 {office, 0, true, "1 1"}};
    for (const auto& [provider, flags, asks, wanted] : cases) {
        SCOPED_TRACE(std::to_string(flags) + (asks ? " asks " : " ") + wanted);
        ProviderProbe::SetCapabilityFlags(*provider, flags);
        TestDevmode devmode = MakeJobDevmode([isAsked = asks](auto& list) { SetBoolean(list, 286, isAsked); });
        const auto ticket = provider.MakeTicket(devmode, kOld);
        const std::string text = TextOf(ticket);
        EXPECT_EQ(std::to_string(Count(text, kName)) + " " + std::to_string(Count(text, ">old<")), wanted);
    }
}

TEST_F(JobTicket, ArrivesCharacterForCharacter) {
    const std::string kEightBit =  // what Windows-1252 has from 0x80 to 0x9F
        "\u20AC\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u017D\u2018\u2019\u201C\u201D\u2022"
        "\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u017E\u0178";
    const std::pair<WideString, std::string> cases[] = {
        {W("Fish & <Chips> ]]> \"'"), "Fish & <Chips> ]]> \"'"},
        {W("forged\n%MVNdisposition: SAVE\r%MVNtitle: x"), "forged %MVNdisposition: SAVE %MVNtitle: x"},
        {W("\x01\x7F\x85\x9F caf\u00E9 \u0416\u2028\xD83D\xDE00"), "     caf\xC3\xA9 ????"},
        {WideString(1, 0xD800) + W("\n"), "? "},
        {WideString(65536, W('x')), std::string(65536, 'x')},
        {CXString::FromUtf8(kEightBit).AsWideString(), kEightBit},
        {W(""), "Default job"},
    };
    for (const auto& [title, expected] : cases) {
        TestDevmode devmode = MakeJobDevmode([&, &title = title](auto& list) { SetText(list, 78, title); });
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

}  // namespace
