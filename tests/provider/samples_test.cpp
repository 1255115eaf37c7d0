// Documents as other software writes them: converted, completed and validated.
#include "boundprovider.h"

#include <support/infoset.h>
#include <support/sampledocuments.h>

#include <fstream>
#include <map>
#include <sstream>

namespace {

struct Samples : ProviderTest, testing::WithParamInterface<std::string> {};
INSTANTIATE_TEST_SUITE_P(Folders, Samples, testing::Values(kOwnDocuments, kRealDocuments));

ComPtr<IXMLDOMDocument2> LoadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return Load({std::istreambuf_iterator<char>(file), {}});
}

// How often each name stands on a child of the root.
std::map<std::string, int> RootNames(const ComPtr<IXMLDOMDocument2>& document) {
    std::map<std::string, int> names;
    std::istringstream list(TextsOf(document, "/*/*/@name"));
    for (std::string name; list >> name && name != "-";) ++names[name];
    return names;
}

TEST_P(Samples, OfTicketsValidateUnchangedAndAreConvertedOnce) {
    const auto files = ListSampleDocuments(GetParam(), "ticket-");
    REQUIRE_SAMPLE_DOCUMENTS(GetParam(), files);
    for (const auto& file : files) {
        SCOPED_TRACE(file);
        const auto ticket = LoadFile(file);
        const bool isForeign = file.filename() == "ticket-foreign-framework.xml";
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

TEST_P(Samples, OfCapabilitiesAreNoTicketsAndAreCompletedOnce) {
    const auto files = ListSampleDocuments(GetParam(), "capabilities-");
    REQUIRE_SAMPLE_DOCUMENTS(GetParam(), files);
    for (const auto& file : files) {
        SCOPED_TRACE(file);
        const auto capabilities = LoadFile(file);
        EXPECT_EQ(press->ValidatePrintTicket(capabilities.Get()), E_FAIL);
        ASSERT_EQ(press->CompletePrintCapabilities(nullptr, capabilities.Get()), S_OK);
        const std::string once = TextOf(capabilities);
        ASSERT_EQ(press->CompletePrintCapabilities(nullptr, capabilities.Get()), S_OK);
        EXPECT_EQ(TextOf(capabilities), once);
    }
}

}  // namespace
