// DeviceCapabilitiesW: from the capability caches where they are sound, else from the product.
#include "spoolerfixture.h"

#include <mvutil/cachelocation.h>
#include <printsubsystem/capabilityrecords.h>
#include <zlib.h>

#include <cstring>

namespace {

constexpr const WCHAR* kPrinter = W("Printer");
constexpr const WCHAR* kPort = W("a\\b");
constexpr const WCHAR* kCaches = W("Software\\Morvane\\Printer Driver\\Printers\\a_b");

int Ask(WORD capability, const WCHAR* printer = kPrinter) {
    return DeviceCapabilitiesW(printer, nullptr, capability, nullptr, nullptr);
}

// The array of a capability; fails when the answer is not what was announced or is written past.
template <class Element>
std::vector<Element> AskArray(WORD capability, const WCHAR* printer = kPrinter) {
    const int count = Ask(capability, printer);
    EXPECT_GE(count, 0);
    constexpr std::size_t kGuards = 2;
    std::vector<Element> elements(static_cast<std::size_t>(std::max(count, 0)) + kGuards);
    const std::vector<BYTE> guard(kGuards * sizeof(Element), 0xA5);
    std::memcpy(&elements[elements.size() - kGuards], guard.data(), guard.size());
    EXPECT_EQ(DeviceCapabilitiesW(printer, nullptr, capability, reinterpret_cast<LPWSTR>(elements.data()), nullptr),
              count);
    EXPECT_EQ(std::memcmp(&elements[elements.size() - kGuards], guard.data(), guard.size()), 0);
    elements.resize(elements.size() - kGuards);
    return elements;
}

struct Name24 {
    WCHAR text[24];
};
struct Name64 {
    WCHAR text[64];
};

template <class Name>
std::vector<std::string> AskNames(WORD capability, const WCHAR* printer = kPrinter) {
    std::vector<std::string> names;
    for (const Name& name : AskArray<Name>(capability, printer))
        names.push_back(NarrowToUtf8(WideString(name.text, std::find(std::begin(name.text), std::end(name.text), 0))));
    return names;
}

// A blob with its check word, from a header and records that are laid out as they are stored.
template <class Header, class Record>
std::vector<BYTE> MakeBlob(Header header, const std::vector<Record>& records) {
    header.check = 0;
    std::vector<BYTE> blob;
    const auto append = [&](const void* data, std::size_t bytes) {
        const auto* first = static_cast<const BYTE*>(data);
        blob.insert(blob.end(), first, first + bytes);
    };
    append(&header, sizeof header);
    for (const Record& record : records) append(&record, sizeof record);
    header.check = static_cast<DWORD>(crc32(kCapabilityCacheCrcStart, blob.data(), static_cast<uInt>(blob.size())));
    std::memcpy(blob.data(), &header, sizeof header);
    return blob;
}

template <std::size_t length>
void SetName(WCHAR (&field)[length], const WCHAR* name) {
    std::copy_n(name, std::char_traits<WCHAR>::length(name) + 1, field);
}

std::vector<BYTE> MakeMediaBlob(DWORD number, DWORD count) {
    MediaCapsRecord record{number, {}};
    SetName(record.name, W("Cached"));
    return MakeBlob(ListCapsHeader{0, count}, std::vector<MediaCapsRecord>{record});
}

void Store(HKEY hive, const WCHAR* name, const std::vector<BYTE>& blob, DWORD type = REG_BINARY) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(hive, kCaches, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(RegSetValueExW(key, name, 0, type, blob.data(), static_cast<DWORD>(blob.size())), ERROR_SUCCESS);
    RegCloseKey(key);
}

}  // namespace

TEST_F(SpoolerTest, AnswersFromTheProductWithoutCaches) {
    Install(kPrinter, "press8434", kPort);
    const std::pair<WORD, int> numbers[] = {{DC_COPIES, 9999},
                                            {DC_COLLATE, 1},
                                            {DC_DUPLEX, 1},
                                            {DC_COLORDEVICE, 1},
                                            {DC_STAPLE, 1},
                                            {DC_ORIENTATION, 90},
                                            {DC_MINEXTENT, 1397 | 1397 << 16},
                                            {DC_MAXEXTENT, 3302 | 6604 << 16},
                                            {DC_SIZE, 220},
                                            {DC_VERSION, 0x401}};
    for (const auto& [capability, number] : numbers) EXPECT_EQ(Ask(capability), number) << capability;
    EXPECT_GE(Ask(DC_EXTRA), 5956);
    EXPECT_EQ(Ask(DC_FIELDS) & (DM_PAPERSIZE | DM_COPIES | DM_FORMNAME), DM_PAPERSIZE | DM_COPIES | DM_FORMNAME);

    const auto papers = AskArray<WORD>(DC_PAPERS);
    const auto sizes = AskArray<POINT>(DC_PAPERSIZE);
    const auto names = AskNames<Name64>(DC_PAPERNAMES);
    ASSERT_EQ(papers.size(), sizes.size());
    ASSERT_EQ(papers.size(), names.size());
    const auto a4 = static_cast<std::size_t>(std::find(papers.begin(), papers.end(), 9) - papers.begin());
    ASSERT_LT(a4, papers.size());
    EXPECT_EQ(names[a4], "A4");
    EXPECT_EQ(sizes[a4].x, 2100);
    EXPECT_EQ(sizes[a4].y, 2970);

    EXPECT_EQ(AskArray<WORD>(DC_BINS).front(), 15);
    EXPECT_EQ(AskNames<Name24>(DC_BINNAMES).front(), "Automatic");
    EXPECT_EQ(AskArray<DWORD>(DC_MEDIATYPES).at(1), 1u) << "plain has Windows' own number";
    EXPECT_EQ(AskArray<POINT>(DC_ENUMRESOLUTIONS).front().x, 600);
    EXPECT_EQ(AskArray<DWORD>(DC_NUP), (std::vector<DWORD>{1, 2, 4, 6, 9, 16}));
    EXPECT_EQ(AskNames<Name64>(DC_FILEDEPENDENCIES).back(), "mvwftuC0.dll");
}

TEST_F(SpoolerTest, FailsForUnknownPrintersAndCapabilities) {
    Install(kPrinter, "press8434", kPort);
    EXPECT_EQ(Ask(DC_COPIES, W("Nobody")), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
    for (const WORD capability : {WORD{0}, WORD{99}, WORD{0xFFFF}}) {
        EXPECT_EQ(Ask(capability), -1) << capability;
        EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_SUPPORTED});
    }
}

TEST_F(SpoolerTest, AnswersFromSoundCaches) {
    Install(kPrinter, "press8434", kPort);
    _tag_FormsInfoRec paper{9, 0, 2101, 2971, 6436, 7491, 25001, {}};
    SetName(paper.name, W("Cached A4"));
    Store(HKEY_LOCAL_MACHINE, kPaperCapsValue,
          MakeBlob(PaperCapsHeader{1, 0, 2, 1}, std::vector<_tag_FormsInfoRec>{paper}));
    BinCapsRecord bin{15, 0, 5001, {}};
    std::fill(std::begin(bin.name), std::end(bin.name), W('x'));  // a name without its NUL
    Store(HKEY_LOCAL_MACHINE, kBinCapsValue, MakeBlob(ListCapsHeader{0, 1}, std::vector<BinCapsRecord>{bin}));
    Store(HKEY_CURRENT_USER, kMediaCapsValue, MakeMediaBlob(4711, 1));
    const _tag_ResolutionInfoRec resolution{0, 300, 400, {}};
    Store(HKEY_LOCAL_MACHINE, kResolutionsValue,
          MakeBlob(ResolutionCapsHeader{0, 1, 0, {}}, std::vector<_tag_ResolutionInfoRec>{resolution}));
    DeviceLimitsCaps limits{};
    limits.valid = DeviceLimitsCaps::kCopies | DeviceLimitsCaps::kDuplex | DeviceLimitsCaps::kExtents;
    limits.maximumCopies = 3;
    limits.maximumWidth = 2000, limits.maximumLength = 3000, limits.minimumWidth = 100, limits.minimumLength = 200;
    Store(HKEY_LOCAL_MACHINE, kDeviceLimitsValue, MakeBlob(limits, std::vector<BYTE>{}));
    Store(HKEY_LOCAL_MACHINE, kStapleValue, MakeBlob(StapleCaps{0, 0}, std::vector<BYTE>{}));
    Store(HKEY_LOCAL_MACHINE, kDependentFilesValue, MakeBlob(ListCapsHeader{0, 0}, std::vector<DependentFileRecord>{}));
    MediaReadyRecord ready{};
    SetName(ready.paperName, W("Letter"));
    Store(HKEY_LOCAL_MACHINE, kMediaReadyValue, MakeBlob(ListCapsHeader{0, 1}, std::vector<MediaReadyRecord>{ready}));

    EXPECT_EQ(AskArray<WORD>(DC_PAPERS), std::vector<WORD>{9});
    EXPECT_EQ(AskArray<POINT>(DC_PAPERSIZE).at(0).y, 2971);
    EXPECT_EQ(AskNames<Name64>(DC_PAPERNAMES), std::vector<std::string>{"Cached A4"});
    EXPECT_EQ(AskNames<Name24>(DC_BINNAMES), std::vector<std::string>{std::string(23, 'x')});
    EXPECT_EQ(AskArray<DWORD>(DC_MEDIATYPES), std::vector<DWORD>{4711});
    EXPECT_EQ(AskNames<Name64>(DC_MEDIATYPENAMES), std::vector<std::string>{"Cached"});
    EXPECT_EQ(AskArray<POINT>(DC_ENUMRESOLUTIONS).at(0).y, 400);
    EXPECT_EQ(AskNames<Name64>(DC_MEDIAREADY), std::vector<std::string>{"Letter"});
    EXPECT_EQ(Ask(DC_FILEDEPENDENCIES), 0);
    EXPECT_EQ(Ask(DC_COPIES), 3);
    EXPECT_EQ(Ask(DC_DUPLEX), 0);
    EXPECT_EQ(Ask(DC_MAXEXTENT), 2000 | 3000 << 16);
    EXPECT_EQ(Ask(DC_STAPLE), 0);
    EXPECT_EQ(Ask(DC_COLORDEVICE), 1) << "not vouched for by the cache: the product's";
}

TEST_F(SpoolerTest, PassesOverDamagedCaches) {
    Install(kPrinter, "press8434", kPort);
    const int own = Ask(DC_MEDIATYPES);
    const std::vector<BYTE> good = MakeMediaBlob(4711, 1);
    auto flipped = good;
    flipped.at(flipped.size() - 1) ^= 1;
    auto cut = good;
    cut.pop_back();
    struct Row {
        const char* what;
        std::vector<BYTE> blob;
        DWORD type;
        int count;
    };
    const Row rows[] = {{"good", good, REG_BINARY, 1},
                        {"a flipped bit", flipped, REG_BINARY, own},
                        {"cut by a byte", cut, REG_BINARY, own},
                        {"shorter than its header", {1, 2, 3, 4, 5, 6, 7}, REG_BINARY, own},
                        {"empty", {}, REG_BINARY, own},
                        {"counts more than it has", MakeMediaBlob(4711, 2), REG_BINARY, own},
                        {"counts far more", MakeMediaBlob(4711, 0xFFFFFFFF), REG_BINARY, own},
                        {"no bytes by type", good, REG_SZ, own}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        Store(HKEY_LOCAL_MACHINE, kMediaCapsValue, row.blob, row.type);
        EXPECT_EQ(Ask(DC_MEDIATYPES), row.count);
    }
    Store(HKEY_CURRENT_USER, kMediaCapsValue, good);
    EXPECT_EQ(Ask(DC_MEDIATYPES), 1) << "the user's cache stands in for the machine's damaged one";
}
