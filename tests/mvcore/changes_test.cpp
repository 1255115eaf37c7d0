// Who is notified of which change, and how often.
#include "testmodel.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

constexpr DWORD kCurrent = DataModelIds::kCurrentSettings;
constexpr DWORD kOffered = DataModelIds::kCapabilities;

using Told = std::vector<std::string>;

class ChangesTest : public testing::Test {
protected:
    bool SetCopies(LONG copies) { return services_.GetIntegerFeature(FeatureId(43)).SetValue(copies); }

    TestStore store_;
    TestModel model_;
    FeatureServices& services_ = model_.GetServices();
    TestObserver sides_, copies_;
};

TEST_F(ChangesTest, OnlyThoseWhoRegisteredAreToldAndOnlyOfChanges) {
    for (int twice = 0; twice < 2; ++twice) sides_.Register(services_, kCurrent, FeatureId(46));
    copies_.Register(services_, kCurrent, FeatureId(43));
    copies_.Register(services_, kOffered, FeatureId(46));
    for (const DWORD sides : {5421u, 5421u, 5429u}) model_.SetOption(FeatureId(46), sides);
    model_.SetOption(FeatureId(45), 5411);
    EXPECT_EQ(sides_.told, Told{"23002 22003 46 <- 46"});
    EXPECT_EQ(copies_.told, Told{});
    services_.UnregisterFeatureChangeObserver(&sides_);
    model_.SetOption(FeatureId(46), 5422);
    EXPECT_EQ(sides_.told.size(), 1u);
}

TEST_F(ChangesTest, AMassSetIsOneBundleForEach) {
    for (const DWORD feature : {46u, 45u}) sides_.Register(services_, kCurrent, FeatureId(feature));
    copies_.Register(services_, kCurrent, FeatureId(43));
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
}

TEST_F(ChangesTest, AListTellsOfWhatItHolds) {
    TestObserver media, rows;
    media.Register(services_, kCurrent, Id({477, 175}));
    sides_.Register(services_, kCurrent, FeatureId(477));
    rows.Register(services_, kCurrent, FeatureId(192));
    model_.SetOption(FeatureId(175), 6801);
    EXPECT_EQ(media.told, Told{"23002 22003 477/210/175 <- 477/175"});
    EXPECT_EQ(sides_.told, Told{"23002 22003 477/210/175 <- 477"});
    model_.GetTray(0).GetOptionFeature(FeatureId(175)).SetValue(ValueId(6801));
    EXPECT_EQ(rows.told, Told{"23002 22003 192/477/175 <- 192"});
    EXPECT_EQ(media.told.size(), 1u) << "a tray's media type is not the job's";
}

TEST_F(ChangesTest, WhatIsOfferedIsTold) {
    IntegrationServices& integration = model_.GetIntegration();
    LONG copies = 0;
    for (const DWORD feature : {94u, 168u, 43u, 45u}) copies_.Register(services_, kOffered, FeatureId(feature));
    sides_.Register(services_, kOffered, FeatureId(45), DataModelIds::kUsableChanged);
    copies_.Register(services_, kCurrent, FeatureId(43));
    for (int twice = 0; twice < 2; ++twice) integration.SetResolutions(FeatureId(94), {Resolution(600, 600, 3)});
    for (const DWORD value : {6430u, 70000u}) integration.AddOptionValues(FeatureId(168), {ValueId(value)}, 1);
    SetCopies(500);
    integration.SetRange(FeatureId(43), 1, 99);
    integration.SetUsable(FeatureId(45), false);
    EXPECT_EQ(copies_.told, (Told{"23004 22003 94 <- 94", "23004 22003 477/168 <- 168", "23002 22003 43 <- 43",
                                  "23004 22003 43 <- 43, 23002 22003 43 <- 43"}));
    EXPECT_EQ(model_.GetInteger(43), 99);
    EXPECT_EQ(sides_.told, Told{"23004 22006 45 <- 45"});
    integration.AddOptionValues(FeatureId(46), {ValueId(5422)}, 0);
    EXPECT_EQ(model_.GetOption(FeatureId(46)), 5001u) << "the default is no longer offered";
    EXPECT_FALSE(model_.SetOption(FeatureId(46), 5421)) << "withdrawn";
    integration.AddOptionValues(FeatureId(46), {ValueId(5420), ValueId(5422)}, 0);
    EXPECT_EQ(model_.GetOption(FeatureId(46)), 5001u) << "a default that went does not come back";
    std::vector<ValueId> values;
    integration.ListOptionValues(FeatureId(46), values);
    EXPECT_EQ(values.size(), 2u);
    integration.SetRange(FeatureId(43), 5, 5);
    EXPECT_EQ(model_.GetInteger(43), 5);
    integration.SetRange(FeatureId(43), 1, 99);
    services_.GetIntegerFeature(FeatureId(43)).GetValue(copies, DataModelIds::kDefaultValue);
    EXPECT_EQ(copies, 5) << "the default moved with the range";
    sides_.told.clear();
    sides_.Register(services_, kOffered, FeatureId(45));
    sides_.Register(services_, kCurrent, FeatureId(45));
    for (int twice = 0; twice < 2; ++twice) model_.GetRoot().GetOptionFeature(FeatureId(45)).SetDefault(ValueId(5411));
    EXPECT_EQ(sides_.told, Told{"23004 22003 45 <- 45, 23002 22003 45 <- 45"});
}

TEST_F(ChangesTest, ObserversMaySetValuesLeaveAndFail) {
    sides_.Register(services_, kCurrent, FeatureId(46));
    copies_.Register(services_, kCurrent, FeatureId(43));
    sides_.onTold = [&] { SetCopies(8); };
    copies_.onTold = [&] { EXPECT_EQ(sides_.told.size(), 1u) << "bundles come one after the other"; };
    model_.SetOption(FeatureId(46), 5421);
    EXPECT_EQ(copies_.told, Told{"23002 22003 43 <- 43"});

    // Two that answer each other for ever are stopped.
    copies_.onTold = [&] { model_.SetOption(FeatureId(46), model_.GetOption(FeatureId(46)) == 5421 ? 5422 : 5421); };
    sides_.onTold = [&] { SetCopies(model_.GetInteger(43) + 1); };
    SetCopies(3);
    EXPECT_LT(copies_.told.size(), 100u);

    copies_.onTold = {};
    for (const bool leaves : {false, true}) {
        sides_.onTold = [&] {
            if (leaves) services_.UnregisterFeatureChangeObserver(&copies_);
            throw std::runtime_error("observer");
        };
        copies_.told.clear();
        model_.GetManager().BeginMassSet();
        model_.SetOption(FeatureId(46), leaves ? 5420 : 5001);
        SetCopies(leaves ? 1 : 2);
        EXPECT_THROW(model_.GetManager().EndMassSet(), std::runtime_error);
        EXPECT_EQ(copies_.told.size(), leaves ? 0u : 1u) << "told after a failure, unless it left before its turn";
    }
}

TEST_F(ChangesTest, EventsReachTheirObserversInOrder) {
    for (TestObserver* observer : {&sides_, &copies_}) services_.RegisterEventObserver(observer, EventId(21032), 26016);
    sides_.onTold = [&] {
        EXPECT_EQ(copies_.told.size(), 0u);
        services_.RaiseEvent(EventId(21032));
    };
    for (const DWORD event : {21032u, 21003u}) services_.RaiseEvent(EventId(event));
    EXPECT_EQ(sides_.told, Told{"event 21032"});
    EXPECT_EQ(copies_.told, Told{"event 21032"});

    sides_.onTold = [&] { services_.UnregisterEventObserver(&copies_); };
    services_.RaiseEvent(EventId(21032));
    EXPECT_EQ(copies_.told.size(), 1u) << "it left before its turn";
    services_.RegisterEventObserver(&copies_, EventId(21032), 26016);
    sides_.onTold = [] { throw std::runtime_error("observer"); };
    for (int twice = 0; twice < 2; ++twice) EXPECT_THROW(services_.RaiseEvent(EventId(21032)), std::runtime_error);
    EXPECT_EQ(copies_.told.size(), 3u) << "after a failure, and again";
}

// A source that is an observer; it may ask for one event.
struct ObservingSource : TestObserver, DataSource {
    void IntegrateSourceData(IntegrationInterface&) override {}
    void SetFeatureServices(FeatureServices& services) override {
        if (asks) services.RegisterEventObserver(this, EventId(21032), 26016);
    }
    bool asks = false;
};

TEST_F(ChangesTest, SourcesAreToldOfEventsUntilTheyAreReleased) {
    ObservingSource silent, asking;
    asking.asks = true;
    TestModel model({&silent, &asking});
    for (const DWORD event : {21032u, 21004u}) model.GetServices().RaiseEvent(EventId(event));
    model.GetManager().ReleaseSourceData();
    model.GetServices().RaiseEvent(EventId(21032));
    EXPECT_EQ(silent.told, (Told{"event 21032", "event 21004"}));
    EXPECT_EQ(asking.told, Told{"event 21032"}) << "of what it asked for, and once";
}

}  // namespace
