// Documents of other software, where their folder lies beside the checkout: converted, completed and validated.
#include "boundprovider.h"

#include <support/infoset.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace {

ComPtr<IXMLDOMDocument2> LoadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    ComPtr<IXMLDOMDocument2> document;
    std::string error;
    EXPECT_EQ(CreateDomDocument(document.Put()), S_OK);
    EXPECT_EQ(LoadDomDocument(document.Get(), bytes.data(), bytes.size(), &error), S_OK) << path << ": " << error;
    return document;
}

std::vector<std::filesystem::path> Samples(const std::string& start) {
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(MV_SAMPLE_DOCUMENTS))
        for (const auto& entry : std::filesystem::directory_iterator(MV_SAMPLE_DOCUMENTS))
            if (entry.path().filename().string().starts_with(start)) files.push_back(entry.path());
    return files;
}

// How often each name stands on a root child of that kind.
std::map<std::string, int> RootNames(const ComPtr<IXMLDOMDocument2>& document) {
    std::map<std::string, int> names;
    std::istringstream list(TextsOf(document, "/*/*/@name"));
    for (std::string name; list >> name && name != "-";) ++names[name];
    return names;
}

bool IsForeignFramework(const std::filesystem::path& path) {
    return path.filename().string().find("foreign-framework") != std::string::npos;
}

TEST(Samples, OfTicketsValidateUnchanged) {
    const auto provider = ComPtr<MorvanePtProvider>::Adopt(new MorvanePtProvider);
    for (const auto& path : Samples("ticket-")) {
        SCOPED_TRACE(path.filename());
        const auto ticket = LoadFile(path);
        const std::string before = DumpInfoset(ticket.Get());
        EXPECT_EQ(provider->ValidatePrintTicket(ticket.Get()), IsForeignFramework(path) ? E_FAIL : S_NO_CONFLICT);
        EXPECT_EQ(DumpInfoset(ticket.Get()), before);
    }
    for (const auto& path : Samples("capabilities-"))
        EXPECT_EQ(provider->ValidatePrintTicket(LoadFile(path).Get()), E_FAIL) << path.filename();
}

TEST(Samples, ConvertedTwiceHoldOneOfEachAndKeepWhatIsForeign) {
    const TestStore store;
    const BoundProvider press(kPress);
    for (const auto& path : Samples("ticket-")) {
        if (IsForeignFramework(path)) continue;
        SCOPED_TRACE(path.filename());
        const auto ticket = LoadFile(path);
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

TEST(Samples, OfCapabilitiesAreCompletedOnce) {
    const TestStore store;
    const BoundProvider press(kPress);
    for (const auto& path : Samples("capabilities-")) {
        SCOPED_TRACE(path.filename());
        const auto capabilities = LoadFile(path);
        ASSERT_EQ(press->CompletePrintCapabilities(nullptr, capabilities.Get()), S_OK);
        const std::string once = TextOf(capabilities);
        ASSERT_EQ(press->CompletePrintCapabilities(nullptr, capabilities.Get()), S_OK);
        EXPECT_EQ(TextOf(capabilities), once);
    }
}

}  // namespace
