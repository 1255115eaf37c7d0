// Features of the products' models: what they offer and hold, how they are found, and what they take.
#include "testmodel.h"

#include <mvutil/morvaneexception.h>

#include <gtest/gtest.h>

namespace {

using DataModelIds::kCurrentValue;

class FeaturesTest : public testing::Test {
protected:
    TestStore store_;
    TestModel model_;
    FeatureServices& services_ = model_.GetServices();
};

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
