// The private block in a ticket: carried whole, restored byte for byte, or ignored.
#include "boundprovider.h"

#include <mvutil/crc32.h>
#include <mvutil/morvaneutilities.h>

namespace {

using DriverData = ProviderTest;

const std::string kName = "mk:JobMorvaneDriverData";

std::string Encode(const std::vector<BYTE>& payload) {
    std::vector<BYTE> data(4);
    privateblock::WriteDword(data.data(), Crc32::GetCrc(payload.data(), payload.size()));
    data.insert(data.end(), payload.begin(), payload.end());
    const int bytes = static_cast<int>(data.size());
    WideString text(MorvaneUtilities::Base64EncodeGetRequiredLength(bytes, 2), W('\0'));
    int length = static_cast<int>(text.size());
    EXPECT_TRUE(MorvaneUtilities::Base64Encode(data.data(), bytes, text.data(), &length, 2));
    return CXString(text.substr(0, length)).ToUtf8();
}

std::string DataOf(const std::string& value) { return Parameter(kName, value); }

TEST_F(DriverData, RestoresAZeroedBlockByteForByte) {
    std::vector<std::pair<const char*, std::vector<BYTE>>> cases = {
        {"entries", MakeTestDevmode(3).CopyBlock()},
        {"no entries", MakePrivateBlock({})},
        {"one key twice", MakePrivateBlock({{2, TextBytes(W("a"))}, {2, TextBytes(W("bcd"))}})}};
    std::vector<BYTE> trailing = MakePrivateBlock({{2, TextBytes(W("a"))}});
    trailing[5000] = 0x5A;  // behind the last entry
    privateblock::WriteDword(&trailing[privateblock::kChecksumOffset], privateblock::ComputeChecksum(trailing.data()));
    cases.push_back({"bytes behind the entries", trailing});
    std::vector<BYTE> damaged = cases[0].second;
    damaged[100] ^= 1;
    cases.push_back({"a wrong checksum", damaged});
    for (const auto& [what, block] : cases) {
        SCOPED_TRACE(what);
        TestDevmode devmode(block), other = MakeTestDevmode(77);
        const auto ticket = office.MakeTicket(devmode, DataOf("old") + DataOf("older"));
        const std::string text = ValueOf(ticket, "ParameterInit", kName);
        EXPECT_EQ(TextsOf(ticket, "/*/*[last()]/@name"), kName);
        ASSERT_EQ(office.ToTicket(devmode, ticket), S_OK);
        EXPECT_EQ(ValueOf(ticket, "ParameterInit", kName), text) << "a second conversion gives the same text";
        ASSERT_EQ(office.ToDevmode(ticket, other), S_OK);
        EXPECT_EQ(other.CopyBlock(), block);
    }
}

TEST_F(DriverData, ThatIsNotABlockLeavesTheBlockAlone) {
    const std::vector<BYTE> good = MakeTestDevmode(3).CopyBlock();
    std::vector<BYTE> wrongSize = good, wrongSignature = good, tooLong = good;
    wrongSize[0] ^= 1;
    wrongSignature[4] ^= 1;
    tooLong.push_back(0);
    std::string flipped = Encode(good);
    flipped[100] = flipped[100] == 'A' ? 'B' : 'A';
    const std::pair<const char*, std::string> cases[] = {
        {"one character changed", flipped},
        {"not base64", "!" + Encode(good)},
        {"empty", ""},
        {"cut before the entries", Encode(std::vector<BYTE>(good.begin(), good.begin() + 61))},
        {"another size", Encode(wrongSize)},
        {"another signature", Encode(wrongSignature)},
        {"longer than a block", Encode(tooLong)},
    };
    for (const auto& [what, text] : cases) {
        SCOPED_TRACE(what);
        TestDevmode devmode = MakeTestDevmode(5);
        const std::vector<BYTE> before = devmode.CopyBlock();
        office.Apply(DataOf(text), devmode);
        EXPECT_EQ(devmode.CopyBlock(), before);
    }
    // A DEVMODE of another driver has no block: the ticket's is not its own, and has no place in it.
    TestDevmode foreign(400);
    EXPECT_EQ(ValueOf(office.MakeTicket(foreign, DataOf(Encode(good))), "ParameterInit", kName), "-");
    const TestDevmode before = foreign;
    office.Apply(DataOf(Encode(good)), foreign);
    EXPECT_TRUE(std::equal(foreign.Extra(), foreign.Extra() + 400, TestDevmode(before).Extra()));

    // The shortest payload is a header alone; line breaks and indentation are white space.
    std::string header = Encode(std::vector<BYTE>(good.begin(), good.begin() + 62));
    header.insert(8, "\n    ");
    TestDevmode devmode = MakeTestDevmode(5);
    office.Apply(DataOf(header), devmode);
    EXPECT_TRUE(std::equal(good.begin(), good.begin() + 62, devmode.Block()));
    EXPECT_TRUE(std::all_of(devmode.Block() + 62, devmode.Block() + privateblock::kBytes, [](BYTE b) { return !b; }));
}

}  // namespace
