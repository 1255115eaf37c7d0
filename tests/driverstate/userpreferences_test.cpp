// The user's preferences in a data model: declared, restored, reported, saved, and the protected ones kept safe.
#include <mvcore/testmodel.h>
#include <support/privatedevmode.h>
#include <support/userconventions.h>
#include <userpreferencefeature.h>
#include <xdevmode.h>

#include <mvutil/cachelocation.h>
#include <mvutil/crc32.h>
#include <mvutil/dataencrypter.h>
#include <mvutil/formatting.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/user.h>

#include <wincrypt.h>

#include <gtest/gtest.h>

#include <cstring>

namespace {

constexpr const WCHAR* kKey = W("Job Preferences");

// The preferences of a family in a model that has, beside the press's features, the second protected string and the
// family.
struct PreferenceModel {
    explicit PreferenceModel(DWORD family = 8434)
        : preferences(family, xdevmode, W("document")),
          device([family](IntegrationServices& services) {
              services.DeclareFeaturesPresent(FeatureId(2), {FeatureId(648), FeatureId(285)});
              services.AddOptionValues(FeatureId(285), {ValueId(8430), ValueId(8432), ValueId(8433), ValueId(8434)}, 1);
              ListOfFeaturesRef root;
              services.GetRootListOfFeatures(root);
              root.GetOptionFeature(FeatureId(285)).SetDefault(ValueId(family));
          }),
          model(ProductFile(kPress), {&device, &preferences}) {}
    ~PreferenceModel() { model.GetManager().ReleaseSourceData(); }

    bool Boolean(DWORD feature) {
        bool value = false;
        EXPECT_TRUE(model.GetServices().GetBooleanFeature(FeatureId(feature)).GetValue(value, 2)) << feature;
        return value;
    }
    void SetBoolean(DWORD feature, bool value) {
        EXPECT_TRUE(model.GetServices().GetBooleanFeature(FeatureId(feature)).SetValue(value));
    }
    CXString Text(DWORD feature) {
        CXString text;
        model.GetServices().GetStringFeature(FeatureId(feature)).GetValue(text, 2);
        return text;
    }
    void SetText(DWORD feature, const WCHAR* text) {
        EXPECT_TRUE(model.GetServices().GetStringFeature(FeatureId(feature)).SetValue(text));
    }
    void Save(DWORD event = DataModelIds::kJobPrinted) { model.GetServices().RaiseEvent(EventId(event)); }
    void TellOfChange(DWORD feature, DWORD settings = 23002) {
        NotificationBundle bundle;
        const FeatureIdWithContext id{FeatureId(feature)};
        bundle.Add(
            std::make_unique<FeatureChangeNotification>(FeatureChangeId(22003), SettingsInstanceId(settings), id, id));
        preferences.OnNotification(bundle);
    }

    TestDevmode devmode{MakePrivateBlock({})};
    XDevmode xdevmode{devmode.Get()};
    UserPreferenceVerticalFeature preferences;
    TestSource device;
    TestModel model;
};

LONG StoredLong(const WCHAR* name) { return User::GetUserDataLongFromRegistry(kKey, name, -1); }

void StoreProtected(const WCHAR* name, const WCHAR* text) {
    ByteBuffer bytes;
    DataEncrypter::EncryptString(text, bytes);
    EXPECT_TRUE(User::StoreUserDataBytesInRegistry(kKey, name, bytes));
}

TEST(UserPreferences, AreSavedWhenAJobIsPrinted) {
    const TestStore store;
    PreferenceModel press;
    press.Save(DataModelIds::kSettingsApplied);
    EXPECT_EQ(StoredLong(W("XPreferenceMask")), 0x7FF);
    EXPECT_EQ(StoredLong(W("XPreferenceCompanion")), 8710);

    LONG bit = 1;
    for (const DWORD feature : {580, 582, 581, 584, 583, 585, 586, 587, 588, 589, 590}) {
        press.SetBoolean(feature, false);
        press.Save();
        EXPECT_EQ(StoredLong(W("XPreferenceMask")), 0x7FF & ~bit) << feature;
        press.SetBoolean(feature, true);
        bit <<= 1;
    }
    press.model.SetOption(FeatureId(50), 8120);
    press.model.GetServices().GetIntegerFeature(FeatureId(571)).SetValue(9);
    press.model.SetOption(FeatureId(591), 8711);
    press.SetText(78, W("not the title"));
    press.SetText(82, W("Ann"));
    press.SetBoolean(439, false);
    press.Save();
    EXPECT_EQ(StoredLong(W("XPreferenceCompanion")), 8711);
    EXPECT_EQ(StoredLong(W("XTitleKind")), 1);
    ByteBuffer title;
    EXPECT_TRUE(User::GetUserDataBytesFromRegistry(kKey, W("XTitle"), title));
    EXPECT_EQ(title.getAsStringValue(), CXString()) << "the system's own is not remembered";
    EXPECT_EQ(StoredLong(W("XOption50")), 8120);
    EXPECT_EQ(StoredLong(W("XPreferenceInteger")), 9);
    EXPECT_EQ(StoredLong(W("XSenderKind")), 2);
    ByteBuffer sender;
    EXPECT_TRUE(User::GetUserDataBytesFromRegistry(kKey, W("XSender"), sender));
    EXPECT_EQ(sender.getAsStringValue(), CXString(W("Ann")));

    // What was saved comes back into a text whose flag asks for it.
    press.SetText(82, W("other"));
    press.SetBoolean(439, true);
    press.TellOfChange(82);
    press.SetBoolean(472, true);
    press.TellOfChange(82, 23004);
    press.TellOfChange(83);
    EXPECT_EQ(press.Text(82), CXString(W("other")));
    press.TellOfChange(82);
    EXPECT_EQ(press.Text(82), CXString(W("Ann")));
    EXPECT_FALSE(press.Boolean(439));
    press.SetBoolean(439, true);
    press.Save();
    press.SetBoolean(439, false);
    press.TellOfChange(82);
    EXPECT_TRUE(press.Boolean(439)) << "the system's own text was the last one chosen";
    EXPECT_EQ(press.Text(82), CXString());
}

TEST(UserPreferences, UnitsStartAsTheUserMeasures) {
    const TestStore store;
    const UserConventions user(W("1"), W("0"));  // American papers, the metric system
    PreferenceModel press;
    press.Save();
    EXPECT_EQ(StoredLong(W("XPaperUnits")), 7492);
    EXPECT_EQ(StoredLong(W("XUnits")), 7491);
    press.model.SetOption(FeatureId(237), 7492);
    press.Save();
    EXPECT_EQ(StoredLong(W("XUnits")), 7492);
    User::StoreUserDataLongInRegistry(kKey, W("XUnits"), 1);
    press.Save();
    EXPECT_EQ(StoredLong(W("XUnits")), 1) << "what has not changed is not stored again";
    EXPECT_EQ(StoredLong(W("XPreferenceInteger")), -1) << "nor is the default at first";
}

ULONGLONG Hundreds(const FILETIME& time) { return ULONGLONG{time.dwHighDateTime} << 32 | time.dwLowDateTime; }

TEST(UserPreferences, BothProtectedStringsAreStoredForTheirFamily) {
    const TestStore store;
    FILETIME before, after, stored{};
    GetSystemTimeAsFileTime(&before);
    {
        PreferenceModel model(8433);
        model.SetText(42, W("7"));
        model.SetText(648, W("8"));
        EXPECT_TRUE(model.Text(648).IsSecret());
        model.Save();
    }
    GetSystemTimeAsFileTime(&after);
    PreferenceModel again(8433);
    EXPECT_EQ(again.Text(42), CXString(W("7")));
    again.model.SetOption(FeatureId(285), 8430);
    again.model.SetOption(FeatureId(285), 8433);
    EXPECT_EQ(again.Text(648), CXString(W("8")));
    EXPECT_TRUE(again.Text(648).IsSecret());
    ByteBuffer time;
    ASSERT_TRUE(User::GetUserDataBytesFromRegistry(kKey, W("XProtectedStringTime8433"), time));
    ASSERT_EQ(time.getDword(), sizeof stored);
    std::memcpy(&stored, time.getLpbyte(), sizeof stored);
    EXPECT_TRUE(Hundreds(before) <= Hundreds(stored) && Hundreds(stored) <= Hundreds(after));
    EXPECT_FALSE(User::GetUserDataBytesFromRegistry(kKey, W("XSecondProtectedStringTime8433"), time));
}

// What the system protects, and what of it is a text with its checksum before it.
TEST(UserPreferences, ProtectedBytesThatHoldNoTextAreNone) {
    const TestStore store;
    const auto protect = [](ByteBuffer plain) {
        DATA_BLOB in{plain.getDword(), plain.getLpbyte()}, out{};
        EXPECT_TRUE(CryptProtectData(&in, nullptr, nullptr, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, &out));
        ByteBuffer bytes(out.pbData, out.cbData);
        LocalFree(out.pbData);
        return bytes;
    };
    const auto withChecksum = [](DWORD difference, const void* text, std::size_t bytes) {
        const DWORD checksum = Crc32::GetCrc(text, bytes) + difference;
        ByteBuffer plain(&checksum, sizeof checksum);
        plain.appendLpbyte(text, bytes);
        return plain;
    };
    const WCHAR digits[] = W("1234");
    EXPECT_EQ(DataEncrypter::DecryptString(protect(withChecksum(0, digits, 8))), CXString(digits));
    ByteBuffer halfMore = withChecksum(0, digits, 8);
    halfMore.appendLpbyte("", 1);
    for (const ByteBuffer& bad :
         {withChecksum(1, digits, 8), withChecksum(0, digits, 7), halfMore, ByteBuffer("abc", 3)})
        EXPECT_THROW(DataEncrypter::DecryptString(protect(bad)), ExceptionDataEncrypterFailure);
    EXPECT_THROW(DataEncrypter::DecryptString(withChecksum(0, digits, 8)), ExceptionDataEncrypterFailure);
    EXPECT_THROW(DataEncrypter::DecryptString(ByteBuffer()), ExceptionDataEncrypterFailure);
}

TEST(UserPreferences, ProtectedStringsAreNumbersOfTheirFamily) {
    const std::tuple<DWORD, const WCHAR*, bool> cases[] = {{8434, W("1234"), true},
                                                           {8434, W("123"), false},
                                                           {8434, W("12a4"), false},
                                                           {8433, W("7"), true},
                                                           {8434, W("12345678901234567890123456789012"), true},
                                                           {8434, W("123456789012345678901234567890123"), false}};
    for (const auto& [family, stored, isTaken] : cases) {
        const TestStore store;
        CXString name;
        name.Format(W("XProtectedString%u"), family);
        StoreProtected(name, stored);
        EXPECT_EQ(PreferenceModel(family).Text(42), CXString(isTaken ? stored : W(""))) << family;
    }
}

TEST(UserPreferences, ProtectedStringsFollowTheFamily) {
    const TestStore store;
    StoreProtected(W("XProtectedString8434"), W("8434"));
    StoreProtected(W("XProtectedString8433"), W("33"));
    StoreProtected(W("XSecondProtectedString8433"), W("44"));
    StoreProtected(W("XSecondProtectedString8430"), W("55"));
    PreferenceModel press;
    EXPECT_EQ(press.Text(42), CXString(W("8434")));
    press.model.SetOption(FeatureId(285), 8433);
    EXPECT_EQ(press.Text(42), CXString(W("33")));
    EXPECT_EQ(press.Text(648), CXString(W("44")));
    press.SetText(42, W("99"));
    EXPECT_EQ(press.Text(42), CXString(W("99"))) << "what the user types stays";
    press.model.SetOption(FeatureId(285), 8430);
    EXPECT_EQ(press.Text(42), CXString());
    EXPECT_EQ(press.Text(648), CXString()) << "one family has a second string";
}

TEST(UserPreferences, ProtectedStringsAreStoredEncryptedOnly) {
    const TestStore store;
    {
        PreferenceModel press;
        press.SetText(42, W("271828"));
        EXPECT_TRUE(press.Text(42).IsSecret()) << "wiped before its memory is freed";
        press.Save();
    }
    ByteBuffer stored;
    ASSERT_TRUE(User::GetUserDataBytesFromRegistry(kKey, W("XProtectedString8434"), stored));
    const CXString digits(W("271828"));
    const std::string bytes(reinterpret_cast<const char*>(stored.getLpbyte()), stored.getDword());
    EXPECT_EQ(bytes.find(std::string(reinterpret_cast<const char*>(digits.GetString()), 12)), std::string::npos);
    EXPECT_EQ(bytes.find("271828"), std::string::npos);
    EXPECT_EQ(PreferenceModel().Text(42), digits);

    // Cut and changed: never another text, and nobody is notified.
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        ByteBuffer changed = stored;
        changed.getLpbyte()[at] ^= 0x40;
        ASSERT_TRUE(User::StoreUserDataBytesInRegistry(kKey, W("XProtectedString8434"), changed));
        const CXString text = PreferenceModel().Text(42);
        EXPECT_TRUE(text.IsEmpty() || text == digits) << at << " " << text.ToUtf8();
        changed.resize(at);
        ASSERT_TRUE(User::StoreUserDataBytesInRegistry(kKey, W("XProtectedString8434"), changed));
        EXPECT_EQ(PreferenceModel().Text(42), CXString());
    }
}

TEST(Secret, IsWipedWithEveryCopy) {
    const auto holdsDigits = [](const volatile BYTE* bytes) {
        for (std::size_t at = 0; at + 3 * sizeof(WCHAR) <= sizeof(CXString); ++at)
            if (bytes[at] == '3' && bytes[at + 2] == '4' && bytes[at + 4] == '5') return true;
        return false;
    };
    for (const bool isMoved : {false, true}) {
        alignas(CXString) BYTE first[sizeof(CXString)] = {};
        alignas(CXString) BYTE second[sizeof(CXString)] = {};
        auto* secret = new (first) CXString(W("12345"));  // short: held in the object itself
        EXPECT_TRUE(holdsDigits(first));
        secret->SetSecret();
        auto* copy = isMoved ? new (second) CXString(std::move(*secret)) : new (second) CXString(*secret);
        EXPECT_EQ(*copy, CXString(W("12345")));
        EXPECT_TRUE(copy->IsSecret());
        secret->~CXString();
        copy->~CXString();
        EXPECT_FALSE(holdsDigits(first)) << isMoved;
        EXPECT_FALSE(holdsDigits(second)) << isMoved;
    }
}

}  // namespace
