#include "tests/store/StoreFixture.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::kelvinbar_store_lifetime_test {

namespace {

using fakes::keysRead;
using fakes::readingOf;
using fakes::setKeys;
using fakes::StoreFixture;
using fakes::temperatureKey;

using Connections = std::vector<SMCDriver::Connection>;
using Keys = std::vector<std::string>;

struct StoreShutdown : StoreFixture {
    void SetUp() override {
        defaults.values.setTextList("KelvinbarMenuBarKeys", {"TC0P"});
        makeRefreshedStore({temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
        forgetHistory();
    }
};

struct StoreDestruction : StoreFixture {
    void SetUp() override {
        // Pins and hidden keys that applying a result would remove from the preferences.
        defaults.values.setTextList("KelvinbarMenuBarKeys", {"TG0D", "TC0P"});
        defaults.values.setTextList("KelvinbarHiddenKeys", {"TM0P"});
        setKeys(driver(), {temperatureKey("TC0P", 40)});
    }

    void expectNothingWasPostedOrWritten() const {
        EXPECT_EQ(posted.size(), 0U);
        EXPECT_EQ(defaults.writes, Keys{});
    }
};

TEST_F(StoreShutdown, ClosesTheConnection) {
    store->shutdown();
    EXPECT_EQ(driver().closed, Connections{}); // a driver may take its time, so not on the main thread
    finishPasses();
    EXPECT_EQ(driver().closed, Connections{7});
    store->shutdown();
    finishPasses();
    EXPECT_EQ(driver().closed, Connections{7});
}

TEST_F(StoreShutdown, WithoutARefreshItChangesAndWritesNothing) {
    recordEvents();
    store->shutdown();
    EXPECT_EQ(events, Keys{});
    EXPECT_EQ(defaults.writes, Keys{});
    EXPECT_EQ(readingKeys(), (Keys{"TC0P", "TC1C"}));
}

TEST_F(StoreShutdown, CancelsAFullRefreshWhoseResultIsAppliedLikeAnyOther) {
    store->refresh(true);
    store->shutdown();
    finishPasses();
    EXPECT_EQ(driver().calls.size(), 0U);
    EXPECT_EQ(store->statusMessage().value(), "Refresh cancelled");
    EXPECT_EQ(readingKeys(), Keys{});
    EXPECT_EQ(store->menuBarKeys().value(), Keys{});
    EXPECT_TRUE(store->smcAvailable().value());
    EXPECT_TRUE(store->lastUpdated().value() == wallClock.time);
}

TEST_F(StoreShutdown, CancelsAMenuBarRefreshWhichThenChangesNothing) {
    store->refreshMenuBarOnly();
    store->shutdown();
    finishPasses();
    EXPECT_EQ(driver().calls.size(), 0U);
    EXPECT_EQ(readingKeys(), (Keys{"TC0P", "TC1C"}));
    EXPECT_EQ(store->menuBarKeys().value(), Keys{"TC0P"});
    EXPECT_EQ(posted.size(), 0U);
}

TEST_F(StoreShutdown, CancelsBothRefreshes) {
    store->refreshMenuBarOnly();
    store->refresh(false);
    store->shutdown();
    finishPasses();
    EXPECT_EQ(keysRead(driver()), Keys{});
    EXPECT_EQ(store->statusMessage().value(), "Refresh cancelled");
}

TEST_F(StoreShutdown, DuringDiscoveryNoKeyIsRead) {
    bool shutDown = false;
    driver().intercept = [&](const SMCParamBlock& input, SMCParamBlock& /*output*/) {
        const bool listsKeys = input.command == static_cast<std::uint8_t>(SMCCommand::keyByIndex);
        if (listsKeys && !shutDown) {
            shutDown = true;
            store->shutdown();
        }
        return std::optional<ReturnCode>();
    };
    refresh(true);
    EXPECT_TRUE(shutDown);
    EXPECT_EQ(keysRead(driver()), Keys{});
    EXPECT_EQ(store->statusMessage().value(), "Refresh cancelled");
}

TEST_F(StoreShutdown, AResultThatAlreadyWaitsIsApplied) {
    setKeys(driver(), {temperatureKey("TC0P", 45), temperatureKey("TC1C", 46)});
    store->refresh(false);
    backgroundQueue.runAll();
    store->shutdown();
    mainQueue.drain();
    EXPECT_EQ(readingsText(store->readings().value()), "TC0P=45 TC1C=46");
    EXPECT_EQ(store->statusMessage().value(), "Loaded 2 HWMonitorSMC2-compatible keys");
}

TEST_F(StoreShutdown, EndsTheTasksSoThatNewOnesMayStart) {
    store->refreshMenuBarOnly();
    store->refresh(false);
    store->shutdown();
    const std::size_t started = backgroundQueue.startedCount;
    store->refreshMenuBarOnly();
    EXPECT_EQ(backgroundQueue.startedCount, started + 1);
    store->refresh(false);
    EXPECT_EQ(backgroundQueue.startedCount, started + 2);
}

TEST_F(StoreShutdown, ARefreshAfterItOpensANewConnection) {
    EXPECT_EQ(driver().openCount, 1);
    store->shutdown();
    refresh();
    EXPECT_EQ(driver().openCount, 2);
    EXPECT_EQ(readingKeys(), (Keys{"TC0P", "TC1C"}));
}

TEST_F(StoreShutdown, APassAfterItLeavesNoConnectionOpenInTheEnd) {
    const auto controller = machine.driver;
    store->shutdown();
    refresh(true);
    EXPECT_EQ(controller->openCount, 2);
    store.reset();
    machineOfStore = {};
    machine = {};
    EXPECT_EQ(controller->closed.size(), 2U);
    EXPECT_EQ(controller->openCount, 2);
}

TEST_F(StoreShutdown, APassThatStillWaitsLeavesNoConnectionOpenInTheEnd) {
    const auto controller = machine.driver;
    store->refresh(true);
    store->shutdown();
    finishPasses();
    EXPECT_EQ(controller->openCount, 1);
    EXPECT_EQ(controller->closed.size(), 1U);
}

TEST_F(StoreDestruction, WhileAPassWaitsTheResultIsDropped) {
    makeStore();
    store.reset();
    finishPasses();
    expectNothingWasPostedOrWritten();
    EXPECT_EQ(mainQueue.waitingCount(), 0U);
}

TEST_F(StoreDestruction, WhileAPassRunsTheResultIsDropped) {
    makeStore();
    driver().intercept = [&](const SMCParamBlock& /*input*/, SMCParamBlock& /*output*/) {
        store.reset();
        return std::optional<ReturnCode>();
    };
    finishPasses();
    EXPECT_EQ(store, nullptr);
    EXPECT_EQ(keysRead(driver()), Keys{"TC0P"});
    expectNothingWasPostedOrWritten();
}

TEST_F(StoreDestruction, WhileAResultWaitsItIsDropped) {
    makeStore();
    backgroundQueue.runAll();
    ASSERT_EQ(mainQueue.waitingCount(), 1U);
    store.reset();
    mainQueue.drain();
    expectNothingWasPostedOrWritten();
}

TEST_F(StoreDestruction, AMenuBarResultIsDroppedToo) {
    makeStore();
    finishPasses();
    setKeys(driver(), {temperatureKey("TC0P", 45)});
    store->refreshMenuBarOnly();
    backgroundQueue.runAll();
    ASSERT_EQ(mainQueue.waitingCount(), 1U);
    forgetHistory();
    store.reset();
    mainQueue.drain();
    expectNothingWasPostedOrWritten();
}

TEST_F(StoreDestruction, ItsResultDoesNotReachTheNextStore) {
    makeStore();
    backgroundQueue.runAll();
    store.reset();
    makeStore();
    mainQueue.drain();
    EXPECT_EQ(readingKeys(), Keys{});
    EXPECT_TRUE(store->isLoading().value());
    finishPasses();
    EXPECT_EQ(readingKeys(), Keys{"TC0P"});
}

/// Releases the store while it tells its observers of a change.
struct StoreRelease : StoreFixture {
    int changes = 0;
    int fatalChange = 0; ///< the number of the change at which the store is released

    template <typename Content>
    void releaseAfter(const NotificationName<Content>& name) {
        registrations.push_back(
            notifications.addObserver<Content>(name, [this](const auto&) { countChange(); }));
    }

    void releaseAfter(const auto& field) {
        registrations.push_back(field.observe([this](const auto&) { countChange(); }));
    }

    void countChange() {
        if (++changes == fatalChange) store.reset();
    }

    void observeEverything() {
        releaseAfter(store->readings());
        releaseAfter(store->isLoading());
        releaseAfter(store->lastUpdated());
        releaseAfter(store->statusMessage());
        releaseAfter(store->smcAvailable());
        releaseAfter(store->samplingRate());
        releaseAfter(store->displayMode());
        releaseAfter(store->manualPopoverWidth());
        releaseAfter(store->manualPopoverHeight());
        releaseAfter(store->menuBarKeys());
        releaseAfter(store->hiddenKeys());
        releaseAfter(store->selectedCategory());
        releaseAfter(store->searchText());
        releaseAfter(kelvinbarSamplingRateChanged);
        releaseAfter(kelvinbarMenuBarReadingChanged);
        releaseAfter(kelvinbarDisplayModeChanged);
        releaseAfter(kelvinbarManualSizeChanged);
    }

    /// Changes every field, until the store is gone.
    void useStore() {
        const std::vector<std::function<void()>> uses{
            [this] { store->toggleMenuBarReading(readingOf("TC0P")); },
            [this] { store->toggleMenuBarReading(readingOf("TC1C")); },
            [this] { refreshMenuBarOnly(); },
            [this] { store->hideReading(readingOf("TC0P")); },
            [this] { store->unhideAllReadings(); },
            [this] { store->setMenuBarKeys({"TC0P"}); },
            [this] { store->setSamplingRate(SMCSamplingRate::fast); },
            [this] { store->setDisplayMode(SMCWindowDisplayMode::dynamic); },
            [this] { store->setManualPopoverHeight(700); },
            [this] { store->setSelectedCategory(SMCCategory::fans); },
            [this] { store->setSearchText("text"); },
            [this] {
                setKeys(driver(), {temperatureKey("TC2C", 40)}); // drops pins and hidden keys
                refresh(true);
            },
        };
        for (const auto& use : uses) {
            if (store == nullptr) return;
            wallClock.time += std::chrono::seconds(1);
            setKeys(driver(), {temperatureKey("TC0P", ++temperature_), temperatureKey("TC1C", 41)});
            use();
        }
    }

    /// Returns whether the store lived to see the end.
    bool survivesWithReleaseAt(int change) {
        registrations.clear();
        defaults.values = {};
        changes = 0;
        fatalChange = change;
        makeRefreshedStore({temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
        observeEverything();
        useStore();
        return std::exchange(store, nullptr) != nullptr;
    }

  private:
    std::uint8_t temperature_ = 40;
};

TEST_F(StoreRelease, ByAnObserverOfAnyChangeLetsTheStoreFinishItsCall) {
    ASSERT_TRUE(survivesWithReleaseAt(0));
    const int all = changes;
    EXPECT_GT(all, 20);
    for (int change = 1; change <= all; ++change) EXPECT_FALSE(survivesWithReleaseAt(change)) << change;
}

TEST_F(StoreRelease, ByAnObserverEndsItAfterTheCall) {
    makeRefreshedStore({temperatureKey("TC0P", 40)});
    const std::weak_ptr<KelvinbarStore> witness = store;
    observeEverything();
    fatalChange = 1;
    store->setDisplayMode(SMCWindowDisplayMode::dynamic);
    EXPECT_TRUE(witness.expired());
    EXPECT_EQ(defaults.values.text("KelvinbarWindowDisplayMode"), "dynamic");
}

} // namespace
} // namespace kelvinbar::kelvinbar_store_lifetime_test
