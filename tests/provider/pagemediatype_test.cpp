// Page media type: what the core driver reports, as options and in the document properties.
#include "boundprovider.h"

#include <support/storedcaches.h>

#include <mvutil/crc32.h>
#include <ptpcprovider/reportedmediatypes.h>

namespace {

const AttributeBytesFeatureId kOuter(477), kInner(210), kType(175), kNeighbour(43);

std::string MediaType(const std::string& option) { return Feature("PageMediaType", Option(option)); }
std::string CustomOption(const CXString& name) {
    return "mk:CustomType_" + std::to_string(Crc32::GetCrc(name.GetString(), name.GetLength() * sizeof(WCHAR)));
}

AttributeBytesListValue ListOf(AttributeBytesFeatureId feature, const AttributeBytesValue& value) {
    AttributeBytesRawList list;
    list.Append(kNeighbour, AttributeBytesIntegerValue(5));  // it must stay
    list.Append(feature, value);
    return AttributeBytesListValue(1, list);
}
// A DEVMODE whose document properties hold the media type, with capability caches of that many bytes beside them.
TestDevmode DevmodeOf(const AttributeBytesValue& type, std::size_t cacheBytes = 3) {
    ByteBuffer cache;
    cache.resize(cacheBytes);
    for (DWORD at = 0, noise = 1; at < cacheBytes; ++at)
        cache.getLpbyte()[at] = static_cast<BYTE>((noise = noise * 1664525 + 1013904223) >> 24);
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetNameSpaceAttributes(PersistentAttributes::GetDataModelDocPropNameSpaceId(),
                                      ListOf(kOuter, ListOf(kInner, ListOf(kType, type))).GetList());
    nameSpaces.SetNameSpaceAttributes(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId(),
                                      ListOf(kNeighbour, AttributeBytesDataBlobValue(cache)).GetList());
    PersistentAttributes attributes(ByteBuffer(), false, nullptr);
    attributes.SetAttributeBytesNameSpaces(nameSpaces);
    ByteBuffer image;
    attributes.GetPersistentAttributesState(image);
    return TestDevmode(MakePrivateBlock({{1, image}}));
}
AttributeBytesOptionValue Known(DWORD value, bool set = true) {
    return AttributeBytesOptionValue(AttributeBytesValueId(value), set);
}
AttributeBytesOptionValue Named(const CXString& text) {
    return AttributeBytesOptionValue(AttributeBytesNewValueId(text), true);
}
// The media type among the DEVMODE's document properties, as the list holds it, if its neighbours are there.
std::string TypeIn(TestDevmode& devmode) {
    AttributeBytesRawList raw, caches;
    privateblock::WalkEntries(devmode.Block(), [&](const privateblock::Entry& entry) {
        if (entry.key != privateblock::kAttributeStateKey) return;
        const PersistentAttributes state(ByteBuffer(entry.value, entry.length), false, nullptr);
        state.GetAttributeBytesListForNameSpace(PersistentAttributes::GetDataModelDocPropNameSpaceId(), raw);
        state.GetAttributeBytesListForNameSpace(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId(), caches);
    });
    AttributeBytesIndexedList list, outer, inner;
    list.ImportFromRawList(raw);
    list.GetCollection(kOuter, outer);
    outer.GetCollection(kInner, inner);
    const AttributeBytesValue* const value = inner.Find(kType);
    if (!value || !list.Find(kNeighbour)) return "-";
    const std::string text = value->GetText().ToUtf8();
    return (text.empty() ? std::to_string(value->GetOption()) : text) + (value->IsSet() ? "" : " automatic") +
           (outer.Find(kNeighbour) && inner.Find(kNeighbour) && !caches.IsEmpty() ? "" : " alone");
}

class PageMediaTypeTest : public ProviderTest {
protected:
    PageMediaTypeTest() {
        Report({{5001, "Automatic"},
                {1, "Plain Paper"},
                {2, "Film"},
                {3, "Gloss"},
                {6821, "Headed"},
                {9700, "Heavy Card"},
                {9701, CXString(WideString(64, W('n')))}});
    }
    void Report(const std::vector<std::pair<DWORD, CXString>>& types) {
        std::vector<MediaCapsRecord> records;
        records.reserve(types.size());
        for (const auto& [number, name] : types) records.push_back(MakeMedia(number, name));
        StoreMedia(press.GetPrinter(), records);
    }
    std::string OptionsOffered() {
        const auto capabilities = press.Complete(MediaType("psk:Old") + MediaType("psk:Older"));
        return ValueOf(capabilities, "Feature", "psk:PageMediaType");
    }
};

TEST_F(PageMediaTypeTest, IsOfferedAsReported) {
    EXPECT_EQ(OptionsOffered(), "psk:AutoSelect psk:Plain psk:Transparency mk:glossy mk:letterhead " +
                                    CustomOption(W("Heavy Card")) + " " + CustomOption(WideString(63, W('n'))));
    const auto capabilities = press.Complete();
    const std::string option = "//psf:Option[@name='mk:letterhead']";
    EXPECT_EQ(TextsOf(capabilities, option + "//psf:Value | " + option + "/psf:ScoredProperty/@name"),
              "Headed psk:BackCoating psk:None psk:FrontCoating psk:None psk:Material psk:Paper psk:PrePrinted "
              "psk:Letterhead psk:PrePunched psk:None psk:Recycled psk:None");
    const std::string heavyCard = "//psf:Option[@name='" + CustomOption(W("Heavy Card")) + "']";
    EXPECT_EQ(TextsOf(capabilities, heavyCard + "/*"), "Heavy Card");
}

TEST_F(PageMediaTypeTest, IsFoundByNumber) {
    const std::pair<DWORD, std::string> cases[] = {{6799, "psk:AutoSelect psk:Bond"},
                                                   {6869, "mk:postcard psk:Bond"},
                                                   {6798, "psk:Bond"},
                                                   {6870, "psk:Bond"},
                                                   {9635, "psk:Bond"},
                                                   {9636, CustomOption(W("Name")) + " psk:Bond"},
                                                   {0xFFFFFFFF, CustomOption(W("Name")) + " psk:Bond"},
                                                   {6811, "-"}};
    for (const auto& [number, wanted] : cases) {
        SCOPED_TRACE(number);
        Report({{number, "Name"}, {6808, "Bond"}});
        EXPECT_EQ(OptionsOffered(), wanted);
    }
    Report({});
    EXPECT_EQ(OptionsOffered(), "psk:Old psk:Older") << "without a list nothing is changed";
}

TEST_F(PageMediaTypeTest, TravelsToTheDocumentPropertiesAndBack) {
    const std::string heavyCard = CustomOption(W("Heavy Card")), thickest = CustomOption(WideString(63, W('n')));
    const struct {
        const char* what;
        std::string option;
        AttributeBytesValue before;
        CXString after;
        std::string written;  // in a ticket made of it
    } cases[] = {
        {"another type", "psk:Transparency", Known(6800), "6801", "psk:Transparency"},
        {"the same type keeps whether it was set", "psk:Plain", Known(6800, false), "6800 automatic", "psk:Plain"},
        {"not among the keywords: the first", "psk:glossy", Known(6800), "5001 automatic", "psk:AutoSelect"},
        {"a type of the user's", heavyCard, Known(6800), "Heavy Card", heavyCard},
        {"another type of the user's", thickest, Named(W("Heavy Card")), WideString(63, W('n')), thickest},
        {"from the user's type", "psk:Plain", Named(W("Heavy Card")), "6800", "psk:Plain"},
        {"a user's type that is named like a known one", "psk:Plain", Named(W("Plain Paper")), W("6800"), "psk:Plain"},
        {"nothing stored yet", "psk:Plain", AttributeBytesIntegerValue(1), "6800", "psk:Plain"},
        {"none in the ticket", "", Known(9700), "9700", heavyCard},
        {"a type of the user's that is gone", "", Named(W("Gone")), "Gone", "psk:AutoSelect"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        TestDevmode devmode = DevmodeOf(test.before);
        press.Apply(test.option.empty() ? "" : MediaType(test.option), devmode);
        EXPECT_EQ(TypeIn(devmode), test.after.ToUtf8());
        const auto ticket = press.MakeTicket(devmode, MediaType("psk:Old") + MediaType("psk:Older"));
        EXPECT_EQ(ValueOf(ticket, "Feature", "psk:PageMediaType"), test.written);
    }
    TestDevmode bare = MakeTestDevmode();
    press.Apply(MediaType("mk:letterhead"), bare);
    EXPECT_EQ(TypeIn(bare), "6821 alone") << "the collections are made when they are not there";
    TestDevmode blockless(0);
    press.Apply(MediaType("psk:Plain"), blockless);
    Report({{6811, "Nameless"}});
    const auto ticket = press.MakeTicket(bare, MediaType("psk:Old"));
    EXPECT_EQ(ValueOf(ticket, "Feature", "psk:PageMediaType"), "psk:Old") << "a unit that fails changes nothing";
}

TEST_F(PageMediaTypeTest, GoesIntoTheBlockThatTheTicketBrings) {
    TestDevmode job = DevmodeOf(Known(6801)), other = MakeTestDevmode(77);
    std::string ticket = TextOf(press.MakeTicket(job));
    ticket.replace(ticket.find("psk:Transparency"), 16, "psk:Plain");
    EXPECT_EQ(press.ToDevmode(Load(ticket), other), S_OK);
    EXPECT_EQ(TypeIn(other), "6800") << "beside all that the ticket's block holds";
}

TEST_F(PageMediaTypeTest, IsNotStoredWhereTheStateWouldBeTooLong) {
    int kept = 0, stored = 0;
    for (std::size_t cacheBytes = 5100; cacheBytes < 5400; ++cacheBytes) {
        TestDevmode devmode = DevmodeOf(Known(6800), cacheBytes);
        const std::vector<BYTE> before = devmode.CopyBlock();
        press.Apply(MediaType(CustomOption(WideString(63, W('n')))), devmode);
        const bool isStored = devmode.CopyBlock() != before;
        const WORD stateBytes = privateblock::ReadWord(devmode.Block() + privateblock::kEntriesOffset + 2);
        EXPECT_EQ(TypeIn(devmode), isStored ? std::string(63, 'n') : "6800");
        EXPECT_LE(stateBytes, isStored ? 5400 : 5956) << cacheBytes;
        EXPECT_TRUE(isStored || kept > 0 || stored == 0 || stateBytes > 5300) << cacheBytes;
        ++(isStored ? stored : kept);
    }
    EXPECT_TRUE(stored > 0 && kept > 0);
}

// A core driver whose answers change: the counts that it gives, call by call.
TEST(ReportedMediaTypes, AreReadFromAnswersThatChange) {
    const struct {
        const char* what;
        std::vector<int> answers;  // numbers announced, numbers, names, numbers, names
        std::size_t types;
    } cases[] = {
        {"none any more", {5, 0}, 0},
        {"no names", {2, 2, -1}, 0},
        {"not one name", {2, 2, 0}, 0},
        {"more names at first", {2, 2, 5, 5, 5}, 5},
        {"fewer names, twice", {5, 5, 3, 5, 3}, 0},
        {"far more names", {2, 2, 500}, 0},
        {"very many", {2000, 2000, 2000}, 2000},
        {"more numbers than there is room for", {2, 1025, 1025}, 0},
        {"no numbers the second time", {2, 2, 5, -1}, 0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        std::size_t next = 0;
        int room = 0;
        const auto types = ReadReportedMediaTypes([&](WORD capability, WCHAR* output) {
            const int answer = next < test.answers.size() ? test.answers[next] : -1;
            ++next;
            const int filled = std::clamp(answer, 0, room);
            room = std::max(answer + 10, 1024);  // for the next answer
            if (!output) return answer;
            if (capability == DC_MEDIATYPES) {
                std::fill_n(reinterpret_cast<DWORD*>(output), filled, 100);
            } else {
                std::fill_n(output, 64 * filled, W('n'));  // no terminator
            }
            return answer;
        });
        EXPECT_EQ(next, test.answers.size());
        ASSERT_EQ(types.size(), test.types);
        for (const auto& type : types) {
            EXPECT_EQ(type.number, 100u);
            EXPECT_EQ(type.name, CXString(WideString(64, W('n'))));
        }
    }
}

}  // namespace
