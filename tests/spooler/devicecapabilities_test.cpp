// DeviceCapabilitiesW: from the capability caches where they are sound, else from the product.
#include "spoolerfixture.h"

#include <support/storedcaches.h>

namespace {

constexpr const WCHAR* kPrinter = W("Printer");

int Ask(WORD capability, const WCHAR* printer = kPrinter) {
    return DeviceCapabilitiesW(printer, nullptr, capability, nullptr, nullptr);
}

// The array of a capability; fails when the answer is not what was announced or is written past.
template <class Element>
std::vector<Element> AskArray(WORD capability) {
    const int count = Ask(capability);
    EXPECT_GE(count, 0);
    constexpr std::size_t kGuards = 2;
    std::vector<Element> elements(static_cast<std::size_t>(std::max(count, 0)) + kGuards);
    const std::vector<BYTE> guard(kGuards * sizeof(Element), 0xA5);
    std::memcpy(&elements[elements.size() - kGuards], guard.data(), guard.size());
    EXPECT_EQ(DeviceCapabilitiesW(kPrinter, nullptr, capability, reinterpret_cast<LPWSTR>(elements.data()), nullptr),
              count);
    EXPECT_EQ(std::memcmp(&elements[elements.size() - kGuards], guard.data(), guard.size()), 0);
    elements.resize(elements.size() - kGuards);
    return elements;
}

// Names that fill fields of so many characters.
template <std::size_t length>
std::vector<std::string> AskNames(WORD capability) {
    std::vector<std::string> names;
    for (const std::array<WCHAR, length>& name : AskArray<std::array<WCHAR, length>>(capability))
        names.push_back(NarrowToUtf8(WideString(name.begin(), std::find(name.begin(), name.end(), 0))));
    return names;
}

}  // namespace

TEST_F(SpoolerTest, AnswersFromTheProductWithoutCaches) {
    Install(kPrinter);
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
    EXPECT_EQ(Ask(DC_DRIVER), 1);
    EXPECT_EQ(Ask(DC_FIELDS), 0x0381BF1F);

    const auto papers = AskArray<WORD>(DC_PAPERS);
    const auto a4 = static_cast<std::size_t>(std::find(papers.begin(), papers.end(), 9) - papers.begin());
    EXPECT_EQ(AskNames<64>(DC_PAPERNAMES).at(a4), "A4");
    EXPECT_EQ(AskArray<POINT>(DC_PAPERSIZE).at(a4).y, 2970);
    EXPECT_EQ(AskNames<24>(DC_BINNAMES).front(), "Automatic");
    EXPECT_EQ(AskArray<DWORD>(DC_MEDIATYPES).at(1), 1u) << "plain has Windows' own number";
    EXPECT_EQ(AskArray<DWORD>(DC_NUP), (std::vector<DWORD>{1, 2, 4, 6, 9, 16}));

    EXPECT_EQ(Ask(DC_COPIES, W("Nobody")), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
    for (const WORD capability : {WORD{0}, WORD{99}, WORD{0xFFFF}}) {
        EXPECT_EQ(Ask(capability), -1) << capability;
        EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_SUPPORTED});
    }
}

TEST_F(SpoolerTest, AnswersFromSoundCaches) {
    const HANDLE printer = Install(kPrinter);
    StorePapers(printer, {MakePaper(9, 2101, 2971, 6436, 25001, W("Cached A4"))});
    BinCapsRecord bin{15, 0, 5001, {}};
    std::fill(std::begin(bin.name), std::end(bin.name), W('x'));  // a name without its NUL
    StoreCache<BinCapsRecord>(printer, kBinCapsValue, {0, 1}, 0, {bin});
    StoreMedia(printer, {MakeMedia(4711, W("Cached"))});
    StoreResolutions(printer, {MakeResolution(300, 400, W(""))});
    StoreCache<DependentFileRecord>(printer, kDependentFilesValue, {0, 0}, 0, {});
    DeviceLimitsCaps limits{};
    limits.valid = DeviceLimitsCaps::kCopies | DeviceLimitsCaps::kDuplex | DeviceLimitsCaps::kExtents;
    limits.maximumCopies = 3;
    limits.maximumWidth = 2000;
    limits.maximumLength = 3000;
    limits.minimumWidth = 100;
    limits.minimumLength = 200;
    StoreCache<DeviceLimitsCaps>(printer, kDeviceLimitsValue, {}, 0, {limits});

    EXPECT_EQ(AskArray<WORD>(DC_PAPERS), std::vector<WORD>{9});
    EXPECT_EQ(AskArray<POINT>(DC_PAPERSIZE).at(0).y, 2971);
    EXPECT_EQ(AskNames<64>(DC_PAPERNAMES), std::vector<std::string>{"Cached A4"});
    EXPECT_EQ(AskNames<24>(DC_BINNAMES), std::vector<std::string>{std::string(23, 'x')});
    EXPECT_EQ(AskArray<DWORD>(DC_MEDIATYPES), std::vector<DWORD>{4711});
    EXPECT_EQ(AskNames<64>(DC_MEDIATYPENAMES), std::vector<std::string>{"Cached"});
    EXPECT_EQ(AskArray<POINT>(DC_ENUMRESOLUTIONS).at(0).y, 400);
    EXPECT_EQ(Ask(DC_FILEDEPENDENCIES), 0);
    EXPECT_EQ(Ask(DC_COPIES), 3);
    EXPECT_EQ(Ask(DC_DUPLEX), 0);
    EXPECT_EQ(Ask(DC_MAXEXTENT), 2000 | 3000 << 16);
    EXPECT_EQ(Ask(DC_MINEXTENT), 100 | 200 << 16);
    EXPECT_EQ(Ask(DC_COLORDEVICE), 1) << "not vouched for by the cache: the product's";
}

TEST_F(SpoolerTest, PassesOverDamagedCaches) {
    const HANDLE printer = Install(kPrinter, kPress, W("a\\b"));
    const int own = Ask(DC_MEDIATYPES);
    const std::vector<MediaCapsRecord> records{MakeMedia(4711, W("Cached"))};
    DataCache caches(printer, HKEY_LOCAL_MACHINE, W("a_b"), kCapabilityCacheCrcStart, true);
    ByteBuffer good;
    StoreMedia(printer, records);
    EXPECT_EQ(Ask(DC_MEDIATYPES), 1);
    ASSERT_TRUE(caches.GetCachedBytesValue(kMediaCapsValue, good));
    for (const DWORD count : {2u, 0xFFFFFFFF}) {
        StoreCache(printer, kMediaCapsValue, {0, count}, 0, records);
        EXPECT_EQ(Ask(DC_MEDIATYPES), own) << "counts more than it has";
    }
    ByteBuffer flipped = good, cut = good;
    flipped.getLpbyte()[good.getDword() - 1] ^= 1;
    cut.resize(good.getDword() - 1);
    for (const ByteBuffer& bad : {flipped, cut, ByteBuffer("1234567", 7), ByteBuffer()}) {
        ASSERT_TRUE(caches.SetCachedValue(kMediaCapsValue, bad, false));
        EXPECT_EQ(Ask(DC_MEDIATYPES), own) << bad.getDword() << " bytes";
    }
    DataCache(printer, HKEY_CURRENT_USER, W("a_b"), kCapabilityCacheCrcStart, true)
        .SetCachedValue(kMediaCapsValue, good, false);
    EXPECT_EQ(Ask(DC_MEDIATYPES), 1) << "the user's cache stands in for the machine's damaged one";
}
