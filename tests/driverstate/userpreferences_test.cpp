// The user's preferences in a data model: declared, restored, told, saved, and the protected ones kept safe.
#include <mvcore/testmodel.h>
#include <support/privatedevmode.h>
#include <userpreferencefeature.h>
#include <xdevmode.h>

#include <mvutil/cachelocation.h>
#include <mvutil/dataencrypter.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/operatingsystem.h>
#include <mvutil/user.h>

#include <gtest/gtest.h>

#include <cstring>

namespace {

constexpr const WCHAR* kKey = W("Job Preferences");

// The preferences of a family in a model that has, beside the press's features, those told and the family.
class PreferenceModel {
public:
    explicit PreferenceModel(DWORD family = 8434, std::vector<FeatureId> features = {FeatureId(648)})
        : preferences(family, xdevmode_, W("document")),
          device_([family, features](IntegrationServices& services) {
              std::vector<FeatureId> declared = features;
              declared.emplace_back(285);
              services.DeclareFeaturesPresent(FeatureId(2), declared);
              services.AddOptionValues(FeatureId(285), {ValueId(8430), ValueId(8432), ValueId(8433), ValueId(8434)}, 1);
              ListOfFeaturesRef root;
              services.GetRootListOfFeatures(root);
              root.GetOptionFeature(FeatureId(285)).SetDefault(ValueId(family));
          }),
          model(ProductFile(kPress), {&device_, &preferences}) {}
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
    DWORD Option(DWORD feature) { return model.GetOption(FeatureId(feature)); }
    void Save(DWORD event = DataModelIds::kJobPrinted) {
        EventNotification notification{EventId(event)};
        preferences.OnNotification(notification);
    }

private:
    TestDevmode devmode_{MakePrivateBlock({})};
    XDevmode xdevmode_{devmode_.Get()};

public:
    UserPreferenceVerticalFeature preferences;

private:
    TestSource device_;

public:
    TestModel model;
};

LONG StoredLong(const WCHAR* name) { return User::GetUserDataLongFromRegistry(kKey, name, -1); }

void StoreProtected(const WCHAR* name, const WCHAR* text) {
    ByteBuffer bytes;
    DataEncrypter::EncryptString(text, bytes);
    EXPECT_TRUE(User::StoreUserDataBytesInRegistry(kKey, name, bytes));
}

TEST(UserPreferences, AreDeclaredWithTheirDefaults) {
    const TestStore store;
    PreferenceModel press;
    for (const DWORD feature : {438, 439, 440}) EXPECT_TRUE(press.Boolean(feature)) << feature;
    for (const DWORD feature : {471, 472, 473}) EXPECT_FALSE(press.Boolean(feature)) << feature;
    for (DWORD feature = 580; feature <= 590; ++feature) EXPECT_TRUE(press.Boolean(feature)) << feature;
    EXPECT_EQ(press.Option(238), OperatingSystem::UseEnglishPaperSizes() ? 7492u : 7491u);
    EXPECT_EQ(press.Option(237), OperatingSystem::IsMetricCountry() ? 7491u : 7492u);
    EXPECT_EQ(press.Option(50), 8121u);
    EXPECT_EQ(press.Option(591), 8710u);
    EXPECT_EQ(press.Option(575), 8710u);
    EXPECT_EQ(press.model.GetInteger(571), 5);
    EXPECT_TRUE(press.model.GetServices().IsFeatureSupported(FeatureId(442)));
    for (const DWORD value : {7491, 7492}) EXPECT_TRUE(press.model.SetOption(FeatureId(237), value));
    EXPECT_FALSE(press.model.SetOption(FeatureId(50), 8122));
    AttributeBytesRawList exported;
    AttributeBytesListTranslator translator;
    press.model.GetServices().GetAttributeBytesListTranslator(translator, 214, 401, 301);
    translator.ExportSettings(exported, 1);
    for (const auto& [id, value] : exported.GetItems())
        EXPECT_FALSE(id.id >= 580 && id.id <= 591) << id.id << " is the user's, not the document's";
}

TEST(UserPreferences, AreSavedWhenAJobIsPrinted) {
    const TestStore store;
    PreferenceModel press;
    press.Save(DataModelIds::kConfigurationRead);
    EXPECT_EQ(StoredLong(W("XPreferenceMask")), -1) << "another event";
    press.Save(DataModelIds::kSettingsApplied);
    EXPECT_EQ(StoredLong(W("XPreferenceMask")), 0x7FF);
    EXPECT_EQ(StoredLong(W("XPreferenceInteger")), -1) << "unchanged";
    EXPECT_EQ(StoredLong(W("XTitleKind")), 1);

    const std::pair<DWORD, LONG> bits[] = {{580, 0x1},   {582, 0x2},   {581, 0x4},  {584, 0x8},
                                           {583, 0x10},  {585, 0x20},  {586, 0x40}, {587, 0x80},
                                           {588, 0x100}, {589, 0x200}, {590, 0x400}};
    for (const auto& [feature, bit] : bits) {
        press.SetBoolean(feature, false);
        press.Save();
        EXPECT_EQ(StoredLong(W("XPreferenceMask")), 0x7FF & ~bit) << feature;
        press.SetBoolean(feature, true);
    }
    press.model.SetOption(FeatureId(591), 8711);
    press.model.SetOption(FeatureId(50), 8120);
    press.model.GetServices().GetIntegerFeature(FeatureId(571)).SetValue(9);
    press.SetText(82, W("Ann"));
    press.SetBoolean(439, false);
    press.Save();
    EXPECT_EQ(StoredLong(W("XPreferenceCompanion")), 8711);
    EXPECT_EQ(StoredLong(W("XOption50")), 8120);
    EXPECT_EQ(StoredLong(W("XPreferenceInteger")), 9);
    EXPECT_EQ(StoredLong(W("XSenderKind")), 2);
    ByteBuffer sender;
    EXPECT_TRUE(User::GetUserDataBytesFromRegistry(kKey, W("XSender"), sender));
    EXPECT_EQ(sender.getAsStringValue(), CXString(W("Ann")));

    // What was saved comes back into a text whose flag asks for it.
    press.SetText(82, W("other"));
    press.SetBoolean(439, true);
    const auto change = [&] {
        NotificationBundle bundle;
        const FeatureIdWithContext id{FeatureId(82)};
        bundle.Add(
            std::make_unique<FeatureChangeNotification>(FeatureChangeId(22003), SettingsInstanceId(23002), id, id));
        press.preferences.OnNotification(bundle);
    };
    change();
    EXPECT_EQ(press.Text(82), CXString(W("other")));
    press.SetBoolean(472, true);
    change();
    EXPECT_EQ(press.Text(82), CXString(W("Ann")));
    EXPECT_FALSE(press.Boolean(439));
}

TEST(UserPreferences, ProtectedStringsAreNumbersOfTheirFamily) {
    const struct {
        DWORD family;
        const WCHAR *stored, *restored;
    } cases[] = {
        {8434, W("1234"), W("1234")},   {8434, W("123"), W("")}, {8434, W("12a4"), W("")}, {8434, W(""), W("")},
        {8430, W("00000"), W("00000")}, {8432, W("7"), W("7")},  {8433, W("7"), W("7")},   {8433, W(""), W("")}};
    for (const auto& test : cases) {
        const TestStore store;
        CXString name;
        name.Format(W("XProtectedString%u"), test.family);
        StoreProtected(name, test.stored);
        PreferenceModel model(test.family);
        EXPECT_EQ(model.Text(42), CXString(test.restored)) << test.family << " " << CXString(test.stored).ToUtf8();
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
        press.Save();
    }
    ByteBuffer stored, time;
    ASSERT_TRUE(User::GetUserDataBytesFromRegistry(kKey, W("XProtectedString8434"), stored));
    ASSERT_TRUE(User::GetUserDataBytesFromRegistry(kKey, W("XProtectedStringTime8434"), time));
    EXPECT_EQ(time.getDword(), 8u);
    const CXString digits(W("271828"));
    const std::string bytes(reinterpret_cast<const char*>(stored.getLpbyte()), stored.getDword());
    EXPECT_EQ(bytes.find(std::string(reinterpret_cast<const char*>(digits.GetString()), 12)), std::string::npos);
    EXPECT_EQ(bytes.find("271828"), std::string::npos);
    EXPECT_EQ(PreferenceModel().Text(42), digits);

    // Cut and changed: never another text, and nobody is told.
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
