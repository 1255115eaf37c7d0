// Features of the products' models: what they offer and hold, how they are found, and what they take.
#include "testmodel.h"

#include <mvutil/morvaneexception.h>

#include <products/reader/featurecatalogue.h>

#include <gtest/gtest.h>

namespace {

using DataModelIds::kCurrentValue;

class FeaturesTest : public testing::Test {
protected:
    TestStore store_;
    TestModel model_;
    FeatureServices& services_ = model_.GetServices();
};

// What the model states of a feature: number, default, and what it offers; "!" before one that is required.
std::string Describe(TestModel& model, FeatureId id) {
    IntegrationServices& services = model.GetIntegration();
    std::string text = "\n" + std::string(services.GetCapabilitiesNode(id).IsRequired() ? "!" : "") + TextOf(id);
    const auto add = [&](const auto& value) { text += " " + std::to_string(value); };
    LONG least = 0, most = 0;
    Dimension shortest = Micrometres(0), longest = shortest;
    switch (FindCatalogueFeature(id.GetId())->kind) {
        case facts::FeatureKind::Option: {
            std::vector<ValueId> values;
            services.ListOptionValues(id, values);
            text += " = " + model.GetRoot().GetOptionFeature(id).GetValue().GetDisplayString().ToUtf8() + ":";
            for (const ValueId& value : values) add(value.GetValueEnum());
            break;
        }
        case facts::FeatureKind::Resolution: {
            Resolution preset(0, 0, 0);
            std::vector<Resolution> resolutions;
            model.GetRoot().GetResolutionFeature(id).GetValue(preset, DataModelIds::kDefaultValue);
            services.ListResolutions(id, resolutions);
            resolutions.insert(resolutions.begin(), preset);
            for (const Resolution& each : resolutions)
                text += " " + std::to_string(each.GetFeed()) + "x" + std::to_string(each.GetCrossFeed());
            break;
        }
        case facts::FeatureKind::Integer:
            EXPECT_TRUE(services.GetIntegerRange(id, least, most) &&
                        !services.GetDimensionRange(id, shortest, longest));
            add(least), add(most), add(model.GetInteger(id.GetId()));
            break;
        case facts::FeatureKind::Dimension: {
            EXPECT_TRUE(services.GetDimensionRange(id, shortest, longest) &&
                        !services.GetIntegerRange(id, least, most));
            Dimension value = Micrometres(0);
            model.GetServices().GetDimensionFeature(id).GetValue(value, kCurrentValue);
            for (const Dimension& side : {shortest, longest, value})
                add(side.GetValue(Dimension::Micrometres).GetLongValue(0.5));
            break;
        }
        default:
            break;
    }
    return text;
}

TEST_F(FeaturesTest, TheModelStatesItsProduct) {
    std::vector<FeatureId> features;
    model_.GetIntegration().ListFeaturesPresent(FeatureId(2), features);
    std::string all;
    for (const FeatureId id : features) all += Describe(model_, id);
    EXPECT_EQ(all,
              "\n43 1 9999 1\n!45 = 5410: 5410 5411\n!46 = 5420: 5420 5421 5422\n78\n477\n172 139700 330200 215900"
              "\n173 139700 660400 279400\n210\n175 = Plain: 6800 6801 9636\n!168 = A4: 6430 6436 6441 6408 6700"
              "\n286\n94 600x600 2400x1200 600x600\n201\n191 = Tray 2: 5001 7147 7149\n193 = Tray 2: 5001 7147 7149"
              "\n192\n710 = Tray 2: 5001 7147 7149");
    all.clear();
    for (std::size_t row = 0; row < 2; ++row) {
        ListOfFeaturesRef tray = model_.GetTray(row);
        for (const DWORD id : {710u, 168u, 175u})
            all += tray.GetOptionFeature(FeatureId(id)).GetValue().GetDisplayString().ToUtf8() + "|";
    }
    EXPECT_EQ(all, "Tray 1|Automatic|Automatic|Tray 2|A4|Transparency|");
    std::vector<ValueId> none;
    model_.GetIntegration().ListOptionValues(FeatureId(43), none);
    EXPECT_TRUE(none.empty()) << "copies are no option";
    const TemporaryFolder folder;
    TestModel bare(folder.Write("bare.toml",
                                "model = \"Bare\"\ncontroller_family = 8434\ndriver_version = 1\n"
                                "workflow_library = \"mvwftuC0.dll\"\npapers = [{ size = \"ISOA4\" }]\n"
                                "resolutions = [{ x = 1, y = 1, default = true, name = \"1\" }]\n"),
                   {});
    bare.GetIntegration().ListFeaturesPresent(FeatureId(2), features);
    all.clear();
    for (const FeatureId id : features) all += Describe(bare, id);
    EXPECT_EQ(all, "\n477\n!168 = A4: 6436\n94 1x1 1x1");
}

TEST_F(FeaturesTest, StatesHoldUnderTheirParents) {
    IntegrationServices& services = model_.GetIntegration();
    const struct {
        DWORD parent, feature;
        int state;
        bool holds;
    } cases[] = {{2, 286, 1, true},    {2, 286, 0, false},  {2, 43, 1, true},    {2, 591, 1, false},
                 {2, 591, 0, true},    {477, 175, 1, true}, {210, 175, 1, true}, {201, 175, 1, false},
                 {175, 175, 1, false}, {201, 191, 1, true}, {477, 210, 0, false}};
    for (const auto& test : cases)
        EXPECT_EQ(services.TestFeature(FeatureId(test.parent), FeatureId(test.feature), test.state), test.holds)
            << test.parent << "/" << test.feature;
    model_.GetServices().GetBooleanFeature(FeatureId(286)).SetValue(false);
    EXPECT_FALSE(services.TestFeature(FeatureId(2), FeatureId(286), 1));
    EXPECT_TRUE(services.TestFeature(FeatureId(45)));
    EXPECT_FALSE(services.TestFeature(FeatureId(591)));
    services.SetUsable(FeatureId(45), false);
    EXPECT_FALSE(services.TestFeature(FeatureId(45)));
}

TEST_F(FeaturesTest, ContextsMayLeaveOutLists) {
    EXPECT_TRUE(model_.SetOption(Id({477, 210, 175}), 6801));
    for (const auto& path : {std::vector<DWORD>{175}, {477, 175}, {210, 175}, {477, 210, 175}})
        EXPECT_EQ(model_.GetOption(Id(path)), 6801u);
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
    EXPECT_FALSE(model_.GetRoot().GetResolutionFeature(FeatureId(94)).SetValue(Resolution(601, 600, 3)));
    const DimensionFeatureRef width = services_.GetDimensionFeature(Id({477, 172}));
    EXPECT_TRUE(width.SetValue(Micrometres(1000)));
    Dimension value = Micrometres(0);
    ASSERT_TRUE(width.GetValue(value, kCurrentValue));
    EXPECT_EQ(value.GetValue(Dimension::Micrometres).GetDoubleValue(), 139700);
    const DimensionFeatureRef inTray = model_.GetTray(0).GetDimensionFeature(FeatureId(172));
    EXPECT_FALSE(inTray.GetValue(value, kCurrentValue)) << "the product does not say how wide its paper is";
    for (const auto& [set, want] : {std::pair<LONG, LONG>{-5, 0}, {4000000, 3276700}}) {
        inTray.SetValue(Micrometres(set));
        inTray.GetValue(value, kCurrentValue);
        EXPECT_EQ(value.GetValue(Dimension::Micrometres).GetLongValue(0.5), want);
    }
    EXPECT_TRUE(model_.SetOption(FeatureId(175), 6890)) << "taken, and not listed until it is offered";
    model_.GetIntegration().AddOptionValues(FeatureId(175), {ValueId(6890), ValueId(6800)}, 1);
    EXPECT_EQ(Describe(model_, FeatureId(175)), "\n175 = 6890: 6800 6801 9636 6890");
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
    EXPECT_FALSE(absent.GetValue(text, kCurrentValue));
    EXPECT_EQ(services_.GetListOfValues(FeatureId(199)).GetNumItems(), 0u);
    const std::pair<const char*, std::function<void()>> refused[] = {
        {"setting", [&] { absent.SetValue(CXString(W("x"))); }},
        {"unknown id", [&] { services_.GetOptionFeature(FeatureId(9)); }},
        {"another kind", [&] { services_.GetBooleanFeature(FeatureId(43)); }},
        {"list", [&] { model_.GetRoot().GetListOfFeatures(FeatureId(208)); }},
        {"declaration elsewhere", [&] { integration.DeclareFeaturesPresent(FeatureId(477), {FeatureId(78)}); }},
    };
    for (const auto& [what, call] : refused) EXPECT_THROW(call(), ExceptionUnsupportedFeatureRequest) << what;
    EXPECT_THROW(DataModelManager(1, W("no/such.toml"), ProductStringLoader(0), false, true),
                 ExceptionPrintDriverFailure);
}

TEST_F(FeaturesTest, SourcesAreCalledInTurn) {
    TestSource first([&](IntegrationServices& services) {
        services.DeclareFeaturesPresent(FeatureId(2), {FeatureId(591)});
        services.AddOptionValues(FeatureId(591), {ValueId(8710), ValueId(8711)}, 1);
        ListOfFeaturesRef root;
        services.GetRootListOfFeatures(root);
        root.GetOptionFeature(FeatureId(591)).SetDefault(ValueId(8710));
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
}

// What models of one product share is the product's.
TEST_F(FeaturesTest, WhatOneModelChangesNoOtherOneSees) {
    TestSource source([](IntegrationServices& services) {
        services.AddOptionValues(FeatureId(46), {ValueId(5429)}, 1);
        services.AddOptionValues(FeatureId(168), {ValueId(6999)}, 1);
        services.DeclareFeaturesPresent(FeatureId(2), {FeatureId(591)});
        services.SetRange(FeatureId(43), 1, 5);
    });
    TestModel changed({&source});
    TestModel other;
    for (TestModel* model : {&changed, &other, &model_}) {
        const bool isChanged = model == &changed;
        EXPECT_EQ(model->SetOption(FeatureId(46), 5429), isChanged);
        EXPECT_EQ(model->GetTray(0).GetOptionFeature(FeatureId(168)).SetValue(ValueId(6999)), isChanged);
        EXPECT_EQ(model->GetServices().IsFeatureSupported(FeatureId(591)), isChanged);
        model->GetServices().GetIntegerFeature(FeatureId(43)).SetValue(77);
        EXPECT_EQ(model->GetInteger(43), isChanged ? 5 : 77);
    }
}

}  // namespace
