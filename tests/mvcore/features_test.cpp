// Features of the products' models: what they offer and hold, how they are found, and what they take.
#include "testmodel.h"

#include <mvcore/deviceinterface.h>
#include <mvutil/morvaneexception.h>
#include <products/reader/productdescription.h>
#include <workflow/productdata.h>

#include <gtest/gtest.h>

namespace {

using DataModelIds::kCurrentValue;

class FeaturesTest : public testing::Test {
protected:
    TestStore store_;
    TestModel model_;
    FeatureServices& services_ = model_.GetServices();
};

// What an option feature offers, by number.
std::vector<DWORD> ListValues(TestModel& model, const FeatureIdWithContext& feature) {
    std::vector<ValueId> values;
    model.GetIntegration().ListOptionValues(feature, values);
    std::vector<DWORD> numbers;
    for (const ValueId& value : values) numbers.push_back(value.GetValueEnum());
    return numbers;
}

TEST_F(FeaturesTest, ModelsOfferWhatTheirProductsTell) {
    for (const char* name : {kPress, kOffice, kScript}) {
        SCOPED_TRACE(name);
        const auto product = LoadProduct(ProductFile(name));
        TestModel model(ProductFile(name), {});
        for (const ProductFeature& feature : product->features) {
            SCOPED_TRACE(feature.id);
            EXPECT_TRUE(model.GetServices().IsFeatureSupported(Id(feature.path)));
            if (feature.kind == ProductFeatureKind::Option) {
                EXPECT_EQ(ListValues(model, Id(feature.path)), feature.values);
                EXPECT_EQ(model.GetOption(Id(feature.path)), static_cast<DWORD>(feature.defaultNumber));
            } else if (feature.kind == ProductFeatureKind::Integer) {
                EXPECT_EQ(model.GetInteger(feature.id), feature.defaultNumber);
            }
        }
        std::vector<DWORD> papers, trays, media;
        for (const ProductPaper& paper : product->papers)
            if (paper.type != PageSizeRow::kCustom) papers.push_back(paper.value);
        for (const ProductTray& tray : product->trays) trays.push_back(tray.value);
        for (const ProductMediaType& type : product->mediaTypes)
            if (type.value != 5001) media.push_back(type.value);
        EXPECT_EQ(ListValues(model, Id({477, 168})), papers);
        EXPECT_EQ(ListValues(model, Id({477, 175})), media);
        for (const auto& path : {std::vector<DWORD>{201, 191}, {193}, {192, 710}})
            EXPECT_EQ(ListValues(model, Id(path)), trays);
    }
}

TEST_F(FeaturesTest, TheAutomaticChoiceIsNoValueAndListsTellWhatTheyHold) {
    EXPECT_TRUE(services_.GetCapabilitiesNode(Id({477, 168})).IsRequired());
    EXPECT_FALSE(services_.GetCapabilitiesNode(Id({477, 175})).IsRequired());
    LONG minimum = 0, maximum = 0;
    EXPECT_FALSE(model_.GetIntegration().GetIntegerRange(FeatureId(45), minimum, maximum));
    std::vector<FeatureId> present;
    model_.GetIntegration().ListFeaturesPresent(FeatureId(210), present);
    EXPECT_EQ(present, (std::vector<FeatureId>{FeatureId(175)}));
}

TEST_F(FeaturesTest, ContextsMayLeaveOutLists) {
    EXPECT_TRUE(model_.SetOption(Id({477, 210, 175}), 6801));
    for (const auto& path : {std::vector<DWORD>{175}, {477, 175}, {210, 175}, {477, 210, 175}})
        EXPECT_EQ(model_.GetOption(Id(path)), 6801u);
    const ListOfFeaturesRef stock =
        model_.GetRoot().GetListOfFeatures(FeatureId(477)).GetListOfFeatures(FeatureId(210));
    EXPECT_EQ(stock.GetOptionFeature(FeatureId(175)).GetValue().GetValueEnum(), 6801u);
    EXPECT_FALSE(services_.IsFeatureSupported(Id({201, 175})));
    EXPECT_FALSE(services_.IsFeatureSupported(Id({210, 477, 175}))) << "the wrong way round";
    EXPECT_EQ(model_.GetOption(Id({201, 175})), 5001u);
    EXPECT_THROW(Id({1, 2, 3, 4, 5, 6, 7, 8, 9}), std::length_error);
}

TEST_F(FeaturesTest, ValuesAreFittedToWhatIsOffered) {
    for (const auto& [set, want] : {std::pair<LONG, LONG>{5, 5}, {-7, 1}, {100000, 9999}}) {
        EXPECT_TRUE(services_.GetIntegerFeature(FeatureId(43)).SetValue(set));
        EXPECT_EQ(model_.GetInteger(43), want);
    }
    EXPECT_FALSE(model_.SetOption(FeatureId(46), 5429));
    EXPECT_EQ(model_.GetOption(FeatureId(46)), 5420u);
    EXPECT_TRUE(model_.SetOption(FeatureId(46), 5001)) << "any option may be left unset";
    EXPECT_TRUE(model_.SetOption(FeatureId(168), DataModelIds::kPageSizeCustom)) << "offered, though it is not listed";
    EXPECT_FALSE(model_.GetRoot().GetResolutionFeature(FeatureId(94)).SetValue(Resolution(601, 600, 3)));
    const DimensionFeatureRef width = services_.GetDimensionFeature(Id({477, 172}));
    EXPECT_TRUE(width.SetValue(Micrometres(1000)));
    Dimension value = Micrometres(0);
    ASSERT_TRUE(width.GetValue(value, kCurrentValue));
    EXPECT_EQ(value.GetValue(Dimension::Micrometres).GetDoubleValue(), 139700);
}

TEST_F(FeaturesTest, TextsAreCutBetweenCharactersAndEmptyOnesAreNoValue) {
    const StringFeatureRef title = services_.GetStringFeature(FeatureId(78));
    CXString value(W("unchanged"));
    EXPECT_FALSE(title.GetValue(value, kCurrentValue));
    EXPECT_EQ(value, W("unchanged"));
    const WideString many(254, W('x'));
    title.SetValue(CXString(many) + W("\xD83D\xDE00"));
    ASSERT_TRUE(title.GetValue(value, kCurrentValue));
    EXPECT_EQ(value.AsWideString(), many);
    title.SetValue(CXString());
    EXPECT_FALSE(title.GetValue(value, kCurrentValue));
}

TEST_F(FeaturesTest, UnsupportedFeaturesAreRefused) {
    IntegrationServices& integration = model_.GetIntegration();
    const StringFeatureRef absent = services_.GetStringFeature(FeatureId(716));
    CXString text;
    EXPECT_FALSE(services_.IsFeatureSupported(FeatureId(716)));
    EXPECT_FALSE(services_.GetCapabilitiesNode(FeatureId(716)).IsSupported());
    EXPECT_FALSE(absent.GetValue(text, kCurrentValue));
    EXPECT_EQ(services_.GetListOfValues(FeatureId(199)).GetNumItems(), 0u);
    const std::pair<const char*, std::function<void()>> refused[] = {
        {"setting", [&] { absent.SetValue(CXString(W("x"))); }},
        {"unknown id", [&] { services_.GetOptionFeature(FeatureId(9)); }},
        {"another kind", [&] { services_.GetBooleanFeature(FeatureId(43)); }},
        {"kind of an absent one", [&] { services_.GetBooleanFeature(FeatureId(716)); }},
        {"list", [&] { model_.GetRoot().GetListOfFeatures(FeatureId(208)); }},
        {"values", [&] { integration.AddOptionValues(FeatureId(59), {ValueId(5510)}, 1); }},
        {"declaration", [&] { integration.DeclareFeaturesPresent(FeatureId(2), {FeatureId(9)}); }},
        {"declaration elsewhere", [&] { integration.DeclareFeaturesPresent(FeatureId(477), {FeatureId(78)}); }},
    };
    for (const auto& [what, call] : refused) EXPECT_THROW(call(), ExceptionUnsupportedFeatureRequest) << what;
    EXPECT_THROW(DataModelManager(1, W("no/such.toml"), ProductStringLoader(0), false, true),
                 ExceptionPrintDriverFailure);
}

TEST_F(FeaturesTest, EachTrayHasARowOfWhatItHolds) {
    ASSERT_EQ(services_.GetListOfValues(FeatureId(192)).GetNumItems(), 2u) << "the automatic tray holds nothing";
    const auto option = [&](std::size_t tray, const FeatureIdWithContext& id) {
        return model_.GetTray(tray).GetOptionFeature(id).GetValue().GetDisplayString().ToUtf8();
    };
    EXPECT_EQ(option(0, FeatureId(168)), "Automatic") << "not known";
    EXPECT_EQ(option(1, FeatureId(710)), "Tray 2");
    EXPECT_EQ(option(1, FeatureId(168)), "A4");
    EXPECT_EQ(option(1, Id({477, 175})), "Transparency");
    EXPECT_TRUE(
        model_.GetTray(0).GetListOfFeatures(FeatureId(477)).GetOptionFeature(FeatureId(175)).SetValue(ValueId(6801)));
    EXPECT_EQ(model_.GetOption(FeatureId(175)), 6800u) << "what a tray holds is not what the job asks for";
    EXPECT_THROW(model_.GetTray(2), std::out_of_range);
}

TEST_F(FeaturesTest, SourcesAreCalledInTurn) {
    TestSource first([&](IntegrationServices& services) {
        services.DeclareFeaturesPresent(FeatureId(2), {FeatureId(591), FeatureId(580)});
        services.AddOptionValues(FeatureId(591), {ValueId(8710), ValueId(8711)}, 1);
        ListOfFeaturesRef root;
        services.GetRootListOfFeatures(root);
        root.GetOptionFeature(FeatureId(591)).SetDefault(ValueId(8710));
        root.GetBooleanFeature(FeatureId(580)).SetDefault(true);
        EXPECT_TRUE(services.TestFeature(FeatureId(2), FeatureId(580), 1));
        EXPECT_FALSE(services.TestFeature(FeatureId(2), FeatureId(599), 1));
    });
    TestSource second([&](IntegrationServices&) { EXPECT_EQ(first.calls, "ab"); });
    second.useServices = [&](FeatureServices& services) {
        EXPECT_EQ(first.calls, "abcd");
        services.GetOptionFeature(FeatureId(591)).SetValue(ValueId(8711));
    };
    TestModel model({&first, &second});
    EXPECT_EQ(model.GetOption(FeatureId(591)), 8711u);
    model.GetManager().ReleaseSourceData();
    EXPECT_EQ(second.calls, "abcdef");
    std::vector<DataSource*> none;
    EXPECT_THROW(model.GetManager().PopulateFromSourceData(none), std::logic_error);
}

class FamilyData final : public ProductData {
public:
    DWORD GetControllerFamily() const override { return 8434; }
    CXString GetInfo(int) const override { return CXString(); }
    CXString GetPath(int) const override { return CXString(); }
    CXString GetModelName() const override { return CXString(); }
};

TEST_F(FeaturesTest, TheDeviceTellsItsControllerFamily) {
    const FamilyData data;
    DeviceInterface device(W("Press"), CXString(), nullptr, 0, 0, &data, nullptr, CXString());
    TestModel model({device.GetDataSource()});
    EXPECT_EQ(model.GetOption(FeatureId(285)), 8434u);
    EXPECT_TRUE(model.SetOption(FeatureId(285), 8430));
    EXPECT_FALSE(model.SetOption(FeatureId(285), 8429));
}

}  // namespace
