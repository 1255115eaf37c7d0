// DEVMODEs that the host makes, and what it shows of them.
#include <subsystem/devmodereport.h>
#include <subsystem/hosterror.h>

#include <nlohmann/json.hpp>

#include "hostrun.h"

namespace {

using Json = nlohmann::json;

class DevmodeRun : public HostRun {
protected:
    static constexpr const char* kProducts[] = {"press8434", "office8430", "script8432"};

    Json Make(const std::string& product, std::vector<std::string> settings) const {
        if (Run({"printer", "show", product}).status != 0) Do({"printer", "add", product, "--product", product});
        settings.insert(settings.begin(), {"devmode", "new", "--printer", product, "-o", File("d.bin")});
        Do(settings);
        return Show("d.bin");
    }
    Json Show(const std::string& file) const { return Json::parse(Do({"devmode", "show", "--json", File(file)})); }

    // The attribute's entry, or null.
    static Json FindAttribute(const Json& description, const std::string& path) {
        for (const Json& nameSpace : description["privateBlock"]["namespaces"])
            for (const Json& attribute : nameSpace["attributes"])
                if (attribute["path"] == path) return attribute;
        return nullptr;
    }
};

TEST_F(DevmodeRun, ADevmodeOfEveryProductHoldsASoundBlock) {
    for (const char* product : kProducts) {
        const Json shown = Make(product, {});
        const Json& fields = shown["fields"];
        EXPECT_EQ(fields["dmDeviceName"], product);
        EXPECT_EQ(fields["dmSize"], 220);
        EXPECT_EQ(shown["bytes"], 220 + fields["dmDriverExtra"].get<int>());

        const Json& block = shown["privateBlock"];
        ASSERT_FALSE(block.is_null()) << product;
        EXPECT_EQ(block["size"], 5956);
        EXPECT_EQ(block["signature"], 0x4D564431);
        EXPECT_TRUE(block["checksum"]["valid"].get<bool>());
        ASSERT_EQ(block["entries"].size(), 3u);
        EXPECT_EQ(block["entries"][1]["text"], "mvpthost.exe");
        EXPECT_FALSE(block["namespaces"][0]["attributes"].empty());
    }
}

TEST_F(DevmodeRun, FieldsAreSetByTheirNamesWithTheirFlags) {
    const Json plain = Make("press8434", {})["fields"];
    const Json fields =
        Make("press8434", {"--set", "dmCopies=7", "--set", "dmPrintQuality=-4", "--set", "dmTTOption=0xFFFE", "--set",
                           "dmMediaType=0x101", "--set", "dmFormName=Größe", "--set", "dmDriverVersion=65535", "--set",
                           "dmPaperSize=1"})["fields"];
    EXPECT_EQ(fields["dmCopies"], 7);
    EXPECT_EQ(fields["dmPrintQuality"], -4);
    EXPECT_EQ(fields["dmTTOption"], -2);
    EXPECT_EQ(fields["dmMediaType"], 0x101);
    EXPECT_EQ(fields["dmFormName"], "Größe");
    EXPECT_EQ(fields["dmDriverVersion"], 65535);
    // The paper's size follows its number where it is not set itself.
    EXPECT_EQ(fields["dmPaperWidth"], 2159);
    EXPECT_EQ(fields["dmPaperLength"], 2794);
    const auto flags = plain["dmFields"].get<unsigned>() | 0x02014502u;
    EXPECT_EQ(fields["dmFields"].get<unsigned>(), flags);
}

TEST_F(DevmodeRun, AttributesTakeTheKindOfTheirFeature) {
    const Json shown =
        Make("press8434", {"--attribute", "paper type=Transparency", "--attribute", "286=true", "--attribute",
                           "9998/3=12", "--attribute", "9997=grün", "--attribute", "Duplex=5422"});
    const Json expected[] = {
        {{"path", "477/210/175"}, {"name", "Paper type"}, {"kind", "option"}, {"value", 6801}, {"set", true}},
        {{"path", "286"}, {"name", "Job tickets"}, {"kind", "boolean"}, {"value", true}},
        {{"path", "9998/3"}, {"name", "Feature 3"}, {"kind", "option"}, {"value", 12}, {"set", true}},
        {{"path", "9997"}, {"name", "Feature 9997"}, {"kind", "string"}, {"value", "grün"}},
        {{"path", "46"}, {"name", "Duplex"}, {"kind", "option"}, {"value", 5422}, {"set", true}}};
    for (const Json& attribute : expected) EXPECT_EQ(FindAttribute(shown, attribute["path"]), attribute);
}

TEST_F(DevmodeRun, DamageAndAbsenceAreTold) {
    const Json whole = Make("press8434", {});
    const std::string bytes = Read("d.bin");
    const auto offset = whole["privateBlock"]["offset"].get<std::size_t>();

    std::string flipped = bytes;
    flipped[offset + 100] ^= 1;
    Write("flipped.bin", flipped);
    EXPECT_NE(Do({"devmode", "show", File("flipped.bin")}).find("damaged"), std::string::npos);

    std::string unsigned_ = bytes;
    unsigned_[offset + 4] ^= 1;
    Write("unsigned.bin", unsigned_);
    EXPECT_NE(Do({"devmode", "show", File("unsigned.bin")}).find("no private block"), std::string::npos);

    // A count of entries that the block cannot hold.
    std::string crowded = bytes;
    crowded[offset + 60] = crowded[offset + 61] = '\x7F';
    Write("crowded.bin", crowded);
    EXPECT_NE(Do({"devmode", "show", File("crowded.bin")}).find("run past"), std::string::npos);
}

// Whatever the bytes are, the answer is a description or one sentence.
TEST_F(DevmodeRun, EveryTruncationAndEveryFlippedByteIsSurvived) {
    Make("script8432", {});
    const std::string bytes = Read("d.bin");
    const auto describe = [](std::string_view changed) {
        DevmodeBuffer devmode(std::vector<BYTE>(changed.begin(), changed.end()), "changed");
        return FormatDevmodeAsJson(devmode);
    };
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_THROW(describe(std::string_view(bytes).substr(0, length)), InputError) << length;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        std::string changed = bytes;
        changed[at] = static_cast<char>(~changed[at]);
        try {
            EXPECT_NE(describe(changed), "") << at;
        } catch (const InputError& error) {
            EXPECT_LT(at, 72u) << error.what();
        }
    }
}

}  // namespace
