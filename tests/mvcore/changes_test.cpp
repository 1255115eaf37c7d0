// Who is told of which change, and how often.
#include "testmodel.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

constexpr DWORD kCurrent = DataModelIds::kCurrentSettings;
constexpr DWORD kOffered = DataModelIds::kCapabilities;

class ChangesTest : public testing::Test {
protected:
    FeatureServices& GetServices() { return model_.GetServices(); }
    bool SetCopies(LONG copies) { return GetServices().GetIntegerFeature(FeatureId(43)).SetValue(copies); }

    TestStore store_;
    TestModel model_;
    TestObserver sides_, copies_;
};

using Told = std::vector<std::string>;

TEST_F(ChangesTest, OnlyThoseWhoRegisteredAreToldAndOnlyOfChanges) {
    sides_.Register(GetServices(), kCurrent, FeatureId(46));
    sides_.Register(GetServices(), kCurrent, FeatureId(46));
    copies_.Register(GetServices(), kCurrent, FeatureId(43));
    copies_.Register(GetServices(), kOffered, FeatureId(46));
    model_.SetOption(FeatureId(46), 5421);
    model_.SetOption(FeatureId(46), 5421);
    model_.SetOption(FeatureId(46), 5429);
    model_.SetOption(FeatureId(45), 5411);
    EXPECT_EQ(sides_.told, Told{"23002 22003 46 <- 46"});
    EXPECT_EQ(copies_.told, Told{});
    GetServices().UnregisterFeatureChangeObserver(&sides_);
    model_.SetOption(FeatureId(46), 5422);
    EXPECT_EQ(sides_.told.size(), 1u);
}

TEST_F(ChangesTest, AMassSetIsOneBundleForEach) {
    sides_.Register(GetServices(), kCurrent, FeatureId(46));
    sides_.Register(GetServices(), kCurrent, FeatureId(45));
    copies_.Register(GetServices(), kCurrent, FeatureId(43));
    DataModelManager& manager = model_.GetManager();
    manager.BeginMassSet();
    model_.SetOption(FeatureId(46), 5421);
    manager.BeginMassSet();
    model_.SetOption(FeatureId(46), 5422);
    model_.SetOption(FeatureId(45), 5411);
    manager.EndMassSet();
    SetCopies(7);
    SetCopies(1);
    EXPECT_EQ(sides_.told, Told{}) << "the outer set has not ended";
    manager.EndMassSet();
    EXPECT_EQ(sides_.told, Told{"23002 22003 46 <- 46, 23002 22003 45 <- 45"});
    EXPECT_EQ(copies_.told, Told{}) << "the copies are what they were";
    manager.EndMassSet();
    SetCopies(2);
    EXPECT_EQ(copies_.told.size(), 1u) << "an end too many changes nothing";
}

TEST_F(ChangesTest, AListTellsOfWhatItHolds) {
    TestObserver media, rows;
    media.Register(GetServices(), kCurrent, Id({477, 175}));
    sides_.Register(GetServices(), kCurrent, FeatureId(477));
    rows.Register(GetServices(), kCurrent, FeatureId(192));
    model_.SetOption(FeatureId(175), 6801);
    EXPECT_EQ(media.told, Told{"23002 22003 477/210/175 <- 477/175"});
    EXPECT_EQ(sides_.told, Told{"23002 22003 477/210/175 <- 477"});
    GetServices()
        .GetListOfValues(FeatureId(192))
        .GetListOfFeatures(0)
        .GetOptionFeature(FeatureId(175))
        .SetValue(ValueId(6801));
    EXPECT_EQ(rows.told, Told{"23002 22003 192/477/175 <- 192"});
    EXPECT_EQ(media.told.size(), 1u) << "a tray's media type is not the job's";
}

TEST_F(ChangesTest, WhatIsOfferedIsTold) {
    IntegrationServices& services = model_.GetIntegration();
    for (const DWORD feature : {94u, 168u, 43u, 45u}) copies_.Register(GetServices(), kOffered, FeatureId(feature));
    sides_.Register(GetServices(), kOffered, FeatureId(45), DataModelIds::kUsableChanged);
    copies_.Register(GetServices(), kCurrent, FeatureId(43));
    services.SetResolutions(FeatureId(94), {Resolution(600, 600, 3)});
    services.SetResolutions(FeatureId(94), {Resolution(600, 600, 3)});
    services.AddOptionValues(FeatureId(168), {ValueId(6430)}, 1);
    services.AddOptionValues(FeatureId(168), {ValueId(70000)}, 1);
    SetCopies(500);
    services.SetRange(FeatureId(43), 1, 99);
    services.SetUsable(FeatureId(45), false);
    EXPECT_FALSE(services.TestFeature(FeatureId(45)));
    EXPECT_EQ(copies_.told, (Told{"23004 22003 94 <- 94", "23004 22003 477/168 <- 168", "23002 22003 43 <- 43",
                                  "23004 22003 43 <- 43, 23002 22003 43 <- 43"}));
    EXPECT_EQ(model_.GetInteger(43), 99);
    EXPECT_EQ(sides_.told, Told{"23004 22006 45 <- 45"});
    services.AddOptionValues(FeatureId(46), {ValueId(5422)}, 0);
    EXPECT_EQ(model_.GetOption(FeatureId(46)), 5001u) << "the default is no longer offered";
}

TEST_F(ChangesTest, ObserversMaySetValuesAndLeave) {
    sides_.Register(GetServices(), kCurrent, FeatureId(46));
    copies_.Register(GetServices(), kCurrent, FeatureId(43));
    sides_.onTold = [&] { SetCopies(8); };
    copies_.onTold = [&] { EXPECT_EQ(sides_.told.size(), 1u) << "bundles come one after the other"; };
    model_.SetOption(FeatureId(46), 5421);
    EXPECT_EQ(copies_.told, Told{"23002 22003 43 <- 43"});

    // Two that answer each other for ever are stopped.
    copies_.onTold = [&] { model_.SetOption(FeatureId(46), model_.GetOption(FeatureId(46)) == 5421 ? 5422 : 5421); };
    sides_.onTold = [&] { SetCopies(model_.GetInteger(43) + 1); };
    SetCopies(3);
    EXPECT_LT(copies_.told.size(), 100u);

    sides_.onTold = [&] { GetServices().UnregisterFeatureChangeObserver(&copies_); };
    copies_.onTold = {};
    sides_.told.clear();
    copies_.told.clear();
    model_.GetManager().BeginMassSet();
    model_.SetOption(FeatureId(46), 5420);
    SetCopies(1);
    model_.GetManager().EndMassSet();
    EXPECT_EQ(sides_.told.size(), 1u);
    EXPECT_EQ(copies_.told, Told{}) << "it left before its turn";
}

TEST_F(ChangesTest, AFailingObserverKeepsNobodyFromBeingTold) {
    sides_.Register(GetServices(), kCurrent, FeatureId(46));
    copies_.Register(GetServices(), kCurrent, FeatureId(46));
    sides_.onTold = [] { throw std::runtime_error("observer"); };
    EXPECT_THROW(model_.SetOption(FeatureId(46), 5421), std::runtime_error);
    EXPECT_EQ(copies_.told.size(), 1u);
    sides_.onTold = {};
    model_.SetOption(FeatureId(46), 5422);
    EXPECT_EQ(sides_.told.size(), 2u);
}

TEST_F(ChangesTest, EventsReachTheirObserversInOrder) {
    FeatureServices& services = GetServices();
    for (const DWORD event : {21032u, 21002u}) services.RegisterEventObserver(&sides_, EventId(event), 26016);
    services.RegisterEventObserver(&copies_, EventId(21032), 26016);
    sides_.onTold = [&] {
        EXPECT_EQ(copies_.told.size(), 0u);
        services.RaiseEvent(EventId(21032));
    };
    services.RaiseEvent(EventId(21032));
    services.RaiseEvent(EventId(21003));
    sides_.onTold = {};
    services.UnregisterEventObserver(&copies_);
    services.RaiseEvent(EventId(21002));
    EXPECT_EQ(sides_.told, (Told{"event 21032", "event 21002"}));
    EXPECT_EQ(copies_.told, Told{"event 21032"});
}

}  // namespace
