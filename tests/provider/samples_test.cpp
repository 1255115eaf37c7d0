// Documents of other software, where their folder lies beside the checkout: converted, completed and validated.
#include "boundprovider.h"

#include <support/infoset.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace {

using Samples = ProviderTest;

// The documents whose files' names start so, by these names.
std::map<std::string, ComPtr<IXMLDOMDocument2>> LoadAll(const std::string& start) {
    std::map<std::string, ComPtr<IXMLDOMDocument2>> documents;
    if (!std::filesystem::is_directory(MV_SAMPLE_DOCUMENTS)) return documents;
    for (const auto& entry : std::filesystem::directory_iterator(MV_SAMPLE_DOCUMENTS)) {
        const std::string name = entry.path().filename().string();
        std::ifstream file(entry.path(), std::ios::binary);
        if (name.starts_with(start)) documents[name] = Load({std::istreambuf_iterator<char>(file), {}});
    }
    return documents;
}

// How often each name stands on a child of the root.
std::map<std::string, int> RootNames(const ComPtr<IXMLDOMDocument2>& document) {
    std::map<std::string, int> names;
    std::istringstream list(TextsOf(document, "/*/*/@name"));
    for (std::string name; list >> name && name != "-";) ++names[name];
    return names;
}

TEST_F(Samples, OfTicketsValidateUnchangedAndAreConvertedOnce) {
    for (const auto& [file, ticket] : LoadAll("ticket-")) {
        SCOPED_TRACE(file);
        const bool isForeign = file.find("foreign-framework") != std::string::npos;
        const std::string infoset = DumpInfoset(ticket.Get());
        EXPECT_EQ(press->ValidatePrintTicket(ticket.Get()), isForeign ? E_FAIL : S_NO_CONFLICT);
        EXPECT_EQ(DumpInfoset(ticket.Get()), infoset);
        if (isForeign) continue;

        const auto before = RootNames(ticket);
        TestDevmode devmode = MakeTestDevmode(4), back = MakeTestDevmode(0);
        ASSERT_EQ(press.ToTicket(devmode, ticket), S_OK);
        const std::string once = TextOf(ticket);
        ASSERT_EQ(press.ToTicket(devmode, ticket), S_OK);
        EXPECT_EQ(TextOf(ticket), once) << "the second conversion changes nothing";
        const auto after = RootNames(ticket);
        for (const auto& [name, count] : after) EXPECT_EQ(count, 1) << name;
        for (const auto& [name, count] : before) EXPECT_TRUE(after.contains(name)) << name << " is lost";
        ASSERT_EQ(press.ToDevmode(ticket, back), S_OK);
        EXPECT_EQ(back.CopyBlock(), devmode.CopyBlock());
    }
}

TEST_F(Samples, OfCapabilitiesAreNoTicketsAndAreCompletedOnce) {
    for (const auto& [file, capabilities] : LoadAll("capabilities-")) {
        SCOPED_TRACE(file);
        EXPECT_EQ(press->ValidatePrintTicket(capabilities.Get()), E_FAIL);
        ASSERT_EQ(press->CompletePrintCapabilities(nullptr, capabilities.Get()), S_OK);
        const std::string once = TextOf(capabilities);
        ASSERT_EQ(press->CompletePrintCapabilities(nullptr, capabilities.Get()), S_OK);
        EXPECT_EQ(TextOf(capabilities), once);
    }
}

}  // namespace
