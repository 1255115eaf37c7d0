// Features of the products' models: what they offer and hold, how they are found, and what they take.
#include "testmodel.h"

#include <mvcore/deviceinterface.h>
#include <mvutil/morvaneexception.h>
#include <products/reader/productdescription.h>
#include <workflow/productdata.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

class FeaturesTest : public testing::Test {
protected:
    TestStore store_;
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

TEST_F(FeaturesTest, FeaturesHaveDefaultsAndCapabilities) {
    struct Case {
        std::vector<DWORD> feature;
        std::size_t offered;
        DWORD preset;
        bool required;
    };
    const Case cases[] = {
        {{45}, 2, 5410, true},        {{46}, 3, 5420, true},   {{477, 168}, 5, 6430, true},
        {{477, 175}, 3, 6800, false}, {{193}, 3, 5001, false}, {{201, 191}, 3, 5001, false},
        {{192, 710}, 3, 5001, false},
    };
    TestModel model;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.feature.back());
        EXPECT_EQ(model.GetOption(Id(c.feature)), c.preset);
        const CapabilitiesNode& node = model.GetServices().GetCapabilitiesNode(Id(c.feature));
        EXPECT_TRUE(node.IsSupported() && node.IsUsable());
        EXPECT_EQ(node.IsRequired(), c.required);
        EXPECT_EQ(node.GetNumValues(), c.offered);
    }
}

TEST_F(FeaturesTest, RangesAndResolutionsComeFromTheProduct) {
    TestModel press;
    LONG minimum = 0, maximum = 0;
    ASSERT_TRUE(press.GetIntegration().GetIntegerRange(FeatureId(43), minimum, maximum));
    EXPECT_EQ(minimum, 1);
    EXPECT_EQ(maximum, 9999);
    EXPECT_FALSE(press.GetIntegration().GetIntegerRange(FeatureId(45), minimum, maximum));
    Dimension least(0, Dimension::Micrometres), most = least;
    ASSERT_TRUE(press.GetIntegration().GetDimensionRange(Id({477, 173}), least, most));
    EXPECT_EQ(least.GetValue(Dimension::Micrometres).GetDoubleValue(), 139700);
    EXPECT_EQ(most.GetValue(Dimension::Micrometres).GetDoubleValue(), 660400);
    std::vector<Resolution> resolutions;
    press.GetIntegration().ListResolutions(FeatureId(94), resolutions);
    EXPECT_EQ(resolutions, (std::vector<Resolution>{{600, 600, 3}, {2400, 1200, 3}}));
    Resolution preset(0, 0, 0);
    ASSERT_TRUE(press.GetRoot().GetResolutionFeature(FeatureId(94)).GetValue(preset, DataModelIds::kDefaultValue));
    EXPECT_EQ(preset, Resolution(600, 600, Resolution::kDotsPerInch));

    std::vector<FeatureId> present;
    press.GetIntegration().ListFeaturesPresent(FeatureId(DataModelIds::kRootFeature), present);
    for (const DWORD id : {477u, 210u, 168u, 175u, 192u, 710u, 94u, 45u})
        EXPECT_EQ(std::count(present.begin(), present.end(), FeatureId(id)), 1) << id;
    press.GetIntegration().ListFeaturesPresent(FeatureId(210), present);
    EXPECT_EQ(present, (std::vector<FeatureId>{FeatureId(175)}));
}

TEST_F(FeaturesTest, ContextsMayLeaveOutLists) {
    TestModel model;
    EXPECT_TRUE(model.SetOption(Id({477, 210, 175}), 6801));
    const std::vector<std::vector<DWORD>> same = {{175}, {477, 175}, {210, 175}, {477, 210, 175}};
    for (const auto& path : same) EXPECT_EQ(model.GetOption(Id(path)), 6801u);
    EXPECT_EQ(model.GetRoot()
                  .GetListOfFeatures(FeatureId(477))
                  .GetListOfFeatures(FeatureId(210))
                  .GetOptionFeature(FeatureId(175))
                  .GetValue()
                  .GetValueEnum(),
              6801u);
    EXPECT_FALSE(model.GetServices().IsFeatureSupported(Id({201, 175})));
    EXPECT_FALSE(model.GetServices().IsFeatureSupported(Id({210, 477, 175}))) << "the wrong way round";
    EXPECT_EQ(model.GetOption(Id({201, 175})), 5001u);
    EXPECT_THROW(Id({1, 2, 3, 4, 5, 6, 7, 8, 9}), std::length_error);
}

TEST_F(FeaturesTest, ValuesAreFittedToWhatIsOffered) {
    TestModel model;
    for (const auto& [set, want] : {std::pair<LONG, LONG>{5, 5}, {0, 1}, {-7, 1}, {100000, 9999}}) {
        EXPECT_TRUE(model.GetServices().GetIntegerFeature(FeatureId(43)).SetValue(set));
        EXPECT_EQ(model.GetInteger(43), want);
    }
    EXPECT_FALSE(model.SetOption(FeatureId(46), 5429));
    EXPECT_EQ(model.GetOption(FeatureId(46)), 5420u);
    EXPECT_TRUE(model.SetOption(FeatureId(46), 5001)) << "any option may be left unset";
    EXPECT_TRUE(model.SetOption(FeatureId(168), DataModelIds::kPageSizeCustom)) << "offered, though it is not listed";
    EXPECT_FALSE(model.GetRoot().GetResolutionFeature(FeatureId(94)).SetValue(Resolution(601, 600, 3)));
    const DimensionFeatureRef width = model.GetServices().GetDimensionFeature(Id({477, 172}));
    EXPECT_TRUE(width.SetValue(Dimension(1, Dimension::Millimetres)));
    Dimension value(0, Dimension::Micrometres);
    ASSERT_TRUE(width.GetValue(value, DataModelIds::kCurrentValue));
    EXPECT_EQ(value.GetValue(Dimension::Micrometres).GetDoubleValue(), 139700);
}

TEST_F(FeaturesTest, TextsAreCutBetweenCharactersAndEmptyOnesAreNoValue) {
    TestModel model;
    const StringFeatureRef title = model.GetServices().GetStringFeature(FeatureId(78));
    CXString value(W("unchanged"));
    EXPECT_FALSE(title.GetValue(value, DataModelIds::kCurrentValue));
    EXPECT_EQ(value, W("unchanged"));
    const WideString many(254, W('x'));
    title.SetValue(CXString(many) + W("\xD83D\xDE00"));
    ASSERT_TRUE(title.GetValue(value, DataModelIds::kCurrentValue));
    EXPECT_EQ(value.AsWideString(), many);
    title.SetValue(CXString());
    EXPECT_FALSE(title.GetValue(value, DataModelIds::kCurrentValue));
}

TEST_F(FeaturesTest, UnsupportedFeaturesAreRefused) {
    TestModel model;
    FeatureServices& services = model.GetServices();
    CXString text;
    EXPECT_FALSE(services.IsFeatureSupported(FeatureId(716)));
    EXPECT_FALSE(services.GetCapabilitiesNode(FeatureId(716)).IsSupported());
    EXPECT_FALSE(services.GetStringFeature(FeatureId(716)).GetValue(text, DataModelIds::kCurrentValue));
    EXPECT_EQ(services.GetListOfValues(FeatureId(199)).GetNumItems(), 0u);
    const std::pair<const char*, std::function<void()>> refused[] = {
        {"setting", [&] { services.GetStringFeature(FeatureId(716)).SetValue(CXString(W("x"))); }},
        {"default", [&] { services.GetStringFeature(FeatureId(716)).SetDefault(CXString(W("x"))); }},
        {"unknown id", [&] { services.GetOptionFeature(FeatureId(9)); }},
        {"another kind", [&] { services.GetBooleanFeature(FeatureId(43)); }},
        {"kind of an absent one", [&] { services.GetBooleanFeature(FeatureId(716)); }},
        {"list", [&] { model.GetRoot().GetListOfFeatures(FeatureId(208)); }},
        {"values", [&] { model.GetIntegration().AddOptionValues(FeatureId(59), {ValueId(5510)}, 1); }},
        {"declaration", [&] { model.GetIntegration().DeclareFeaturesPresent(FeatureId(2), {FeatureId(9)}); }},
        {"declaration elsewhere",
         [&] { model.GetIntegration().DeclareFeaturesPresent(FeatureId(477), {FeatureId(78)}); }},
    };
    for (const auto& [what, call] : refused) EXPECT_THROW(call(), ExceptionUnsupportedFeatureRequest) << what;
    EXPECT_THROW(DataModelManager(1, W("no/such.toml"), ProductStringLoader(0), false, true),
                 ExceptionPrintDriverFailure);
    const CXString file = CXString::FromUtf8(GetTestProductFile().string());
    EXPECT_THROW(DataModelManager(2, file, ProductStringLoader(0), false, true), std::invalid_argument);
}

TEST_F(FeaturesTest, EachTrayHasARowOfItsOwn) {
    TestModel model;
    const ListOfValuesRef rows = model.GetServices().GetListOfValues(FeatureId(192));
    ASSERT_EQ(rows.GetNumItems(), 2u) << "the automatic tray holds nothing";
    const ListOfFeaturesRef row = rows.GetListOfFeatures(1);
    EXPECT_EQ(row.GetOptionFeature(FeatureId(710)).GetValue().GetDisplayString(), W("Tray 2"));
    EXPECT_EQ(row.GetOptionFeature(FeatureId(168)).GetValue().GetValueEnum(), 5001u);
    EXPECT_TRUE(row.GetListOfFeatures(FeatureId(477)).GetOptionFeature(FeatureId(175)).SetValue(ValueId(6801)));
    EXPECT_EQ(row.GetOptionFeature(Id({477, 175})).GetValue().GetDisplayString(), W("Transparency"));
    EXPECT_EQ(model.GetOption(FeatureId(175)), 6800u) << "what a tray holds is not what the job asks for";
    EXPECT_THROW(rows.GetListOfFeatures(2), std::out_of_range);
}

TEST_F(FeaturesTest, SourcesAreCalledInTurn) {
    std::vector<std::string> order;
    TestSource first([&](IntegrationServices& services) {
        order.push_back("first");
        services.DeclareFeaturesPresent(FeatureId(2), {FeatureId(591), FeatureId(580), FeatureId(571)});
        services.AddOptionValues(FeatureId(591), {ValueId(8710), ValueId(8711)}, 1);
        ListOfFeaturesRef root;
        services.GetRootListOfFeatures(root);
        root.GetOptionFeature(FeatureId(591)).SetDefault(ValueId(8710));
        root.GetBooleanFeature(FeatureId(580)).SetDefault(true);
        EXPECT_TRUE(services.TestFeature(FeatureId(2), FeatureId(580), 1));
        EXPECT_FALSE(services.TestFeature(FeatureId(2), FeatureId(599), 1));
        EXPECT_TRUE(services.TestFeature(FeatureId(45)));
    });
    TestSource second([&](IntegrationServices&) { order.push_back("second"); });
    second.useServices = [&](FeatureServices& services) {
        EXPECT_EQ(services.GetOptionFeature(FeatureId(591)).GetValue().GetValueEnum(), 8710u);
        services.GetOptionFeature(FeatureId(591)).SetValue(ValueId(8711));
    };
    TestModel model({&first, &second});
    EXPECT_EQ(order, (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(model.GetOption(FeatureId(591)), 8711u);
    EXPECT_EQ(model.GetInteger(571), -1) << "no default was told";
    model.GetManager().ReleaseSourceData();
    EXPECT_EQ(first.calls,
              (std::vector<std::string>{"register to integrate", "integrate", "register for settings", "services",
                                        "unregister to integrate", "unregister for settings"}));
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
    EXPECT_EQ(device.GetPrinterName(), W("Press"));
    TestModel model({device.GetDataSource()});
    EXPECT_EQ(model.GetOption(FeatureId(285)), 8434u);
    EXPECT_TRUE(model.SetOption(FeatureId(285), 8430));
    EXPECT_FALSE(model.SetOption(FeatureId(285), 8429));
}

}  // namespace
