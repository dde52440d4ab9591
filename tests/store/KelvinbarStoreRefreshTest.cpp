#include "catalogue/SMCKeyDatabase.h"
#include "sensors/Machine.h"
#include "tests/store/StoreFixture.h"

#include <chrono>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::kelvinbar_store_refresh_test {

namespace {

using fakes::discoveryCount;
using fakes::keysRead;
using fakes::readingOf;
using fakes::setKeys;
using fakes::StoreFixture;
using fakes::temperatureKey;
using fakes::textKey;
using fakes::wholeNumberKey;

using Events = std::vector<std::string>;
using Keys = std::vector<std::string>;
using namespace std::chrono_literals;

struct StoreConstruction : StoreFixture {};

struct StoreRefresh : StoreFixture {
    /// Removes the service and closes the connection, which would otherwise still work.
    void removeController() {
        store->shutdown();
        driver().hasService = false;
    }
};

struct StoreDiscovery : StoreRefresh {
    void SetUp() override { makeRefreshedStore({temperatureKey("TC0P", 40)}); }

    /// Refreshes and returns how often that discovered keys.
    [[nodiscard]] std::size_t discoveriesOfARefresh() {
        const std::size_t before = discoveryCount(driver());
        refresh();
        return discoveryCount(driver()) - before;
    }
};

struct StoreResult : StoreRefresh {};

// Construction

TEST_F(StoreConstruction, BeginsEmptyAndLoading) {
    makeStore();
    EXPECT_EQ(readingKeys(), Keys{});
    EXPECT_TRUE(store->isLoading().value());
    EXPECT_EQ(store->statusMessage().value(), "Reading AppleSMC keys…");
    EXPECT_TRUE(store->lastUpdated().value() == std::nullopt);
    EXPECT_FALSE(store->smcAvailable().value());
    EXPECT_EQ(store->samplingRate().value(), SMCSamplingRate::medium);
    EXPECT_EQ(store->displayMode().value(), SMCWindowDisplayMode::fixed);
    EXPECT_EQ(store->manualPopoverWidth().value(), 462);
    EXPECT_EQ(store->manualPopoverHeight().value(), 690);
    EXPECT_EQ(store->menuBarKeys().value(), Keys{});
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{});
    EXPECT_EQ(store->selectedCategory().value(), std::nullopt);
    EXPECT_EQ(store->searchText().value(), "");
    EXPECT_EQ(store->totalCandidates(), SMCKeyDatabase::allKeys().size());
}

TEST_F(StoreConstruction, TakesThePreferences) {
    defaults.values.setText("KelvinbarSamplingRate", "fast");
    defaults.values.setText("KelvinbarWindowDisplayMode", "dynamic");
    defaults.values.setNumber("KelvinbarManualPopoverWidth", 500);
    defaults.values.setNumber("KelvinbarManualPopoverHeight", 2000);
    defaults.values.setTextList("KelvinbarMenuBarKeys", {"F0Ac", "TC0P"});
    defaults.values.setTextList("KelvinbarHiddenKeys", {"VC0C"});
    makeStore();
    EXPECT_EQ(store->samplingRate().value(), SMCSamplingRate::fast);
    EXPECT_EQ(store->displayMode().value(), SMCWindowDisplayMode::dynamic);
    EXPECT_EQ(store->manualPopoverWidth().value(), 500);
    EXPECT_EQ(store->manualPopoverHeight().value(), 2000);
    EXPECT_EQ(store->menuBarKeys().value(), (Keys{"F0Ac", "TC0P"}));
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{"VC0C"});
}

TEST_F(StoreConstruction, StartsOneRefreshInTheBackground) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    makeStore();
    EXPECT_EQ(backgroundQueue.startedCount, 1U);
    EXPECT_EQ(driver().searchedClasses.size(), 0U);
    EXPECT_EQ(mainQueue.waitingCount(), 0U);
    finishPasses();
    EXPECT_EQ(discoveryCount(driver()), 1U);
    EXPECT_EQ(readingKeys(), Keys{"TC0P"});
}

TEST_F(StoreConstruction, WritesAndPostsNothing) {
    defaults.values.setText("KelvinbarSamplingRate", "often");
    defaults.values.setText("KelvinbarWindowDisplayMode", "wide");
    defaults.values.setNumber("KelvinbarManualPopoverHeight", -3);
    defaults.values.setTextList("KelvinbarMenuBarKeys",
                                {" K1", "K1", "", "K2", "K3", "K4", "K5", "K6", "K7"});
    defaults.values.setTextList("KelvinbarHiddenKeys", {" K9 ", ""});
    makeStore();
    EXPECT_EQ(store->menuBarKeys().value(), (Keys{"K1", "K2", "K3", "K4", "K5", "K6"}));
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{"K9"});
    EXPECT_EQ(defaults.writes, Keys{});
    EXPECT_EQ(posted.size(), 0U);
}

// Starting a full refresh

TEST_F(StoreRefresh, ASecondOneWhileOneRunsChangesNothing) {
    makeStore();
    recordEvents();
    store->refresh(false);
    store->refresh(true);
    EXPECT_EQ(backgroundQueue.startedCount, 1U);
    EXPECT_EQ(events, Events{});
    EXPECT_EQ(store->statusMessage().value(), "Reading AppleSMC keys…");
}

TEST_F(StoreRefresh, ASecondOneWhileAResultWaitsChangesNothing) {
    makeStore();
    backgroundQueue.runAll();
    recordEvents();
    store->refresh(true);
    EXPECT_EQ(backgroundQueue.startedCount, 1U);
    EXPECT_EQ(events, Events{});
}

TEST_F(StoreRefresh, ASecondOneOverReadingsWhileOneRunsDoesNotTouchTheStatus) {
    makeRefreshedStore({temperatureKey("TC0P", 40)});
    store->refresh(false);
    recordEvents();
    store->refresh(true);
    EXPECT_EQ(events, Events{});
    EXPECT_EQ(backgroundQueue.startedCount, 2U);
}

TEST_F(StoreRefresh, WithReadingsPresentIsLoadingStaysFalseThroughout) {
    makeRefreshedStore({temperatureKey("TC0P", 40)});
    recordEvents();
    wallClock.time += 3s;
    setKeys(driver(), {temperatureKey("TC0P", 41)});
    refresh();
    EXPECT_EQ(events, (Events{"statusMessage: Reading AppleSMC keys…", "readings: TC0P=41",
                              "lastUpdated: now", "statusMessage: Loaded 1 HWMonitorSMC2-compatible keys"}));
    EXPECT_FALSE(store->isLoading().value());
}

TEST_F(StoreRefresh, WithoutReadingsItShowsThatItIsLoading) {
    makeRefreshedStore({});
    EXPECT_FALSE(store->isLoading().value());
    recordEvents();
    store->refresh(false);
    EXPECT_TRUE(store->isLoading().value());
    EXPECT_EQ(events, (Events{"isLoading: true", "statusMessage: Reading AppleSMC keys…"}));
}

TEST_F(StoreRefresh, ReadsTheCatalogueOnlyWhileNothingIsDiscovered) {
    makeRefreshedStore({});
    EXPECT_EQ(keysRead(driver()), Keys(SMCKeyDatabase::allKeys().begin(), SMCKeyDatabase::allKeys().end()));
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    refresh();
    forgetHistory();
    refresh();
    EXPECT_EQ(keysRead(driver()), Keys{"TC0P"});
}

TEST_F(StoreRefresh, ReadsRegistryFans) {
    Dictionary properties;
    properties.set("FAN1", std::int64_t{1450});
    machine.registry->add("IOService", "Anything", properties);
    makeRefreshedStore({temperatureKey("TC0P", 40)});
    EXPECT_EQ(readingKeys(), (Keys{"TC0P", "FAN1"}));
}

// Discovery

TEST_F(StoreDiscovery, IsNotRepeatedAfterExactly300Seconds) {
    machine.clock->advance(300s);
    EXPECT_EQ(discoveriesOfARefresh(), 0U);
}

TEST_F(StoreDiscovery, IsRepeatedAfter300Seconds1Millisecond) {
    machine.clock->advance(300s + 1ms);
    EXPECT_EQ(discoveriesOfARefresh(), 1U);
}

TEST_F(StoreDiscovery, OnlyAnotherDiscoveryMakesTheListYoungAgain) {
    machine.clock->advance(200s);
    EXPECT_EQ(discoveriesOfARefresh(), 0U);
    machine.clock->advance(101s);
    EXPECT_EQ(discoveriesOfARefresh(), 1U);
    machine.clock->advance(300s);
    EXPECT_EQ(discoveriesOfARefresh(), 0U);
}

TEST_F(StoreDiscovery, TheTimeOfDayDoesNotCount) {
    wallClock.time += 24h;
    EXPECT_EQ(discoveriesOfARefresh(), 0U);
}

TEST_F(StoreDiscovery, TheAgeCountsFromWhenTheResultWasApplied) {
    store->refresh(true);
    backgroundQueue.runAll();
    machine.clock->advance(100s);
    mainQueue.drain();
    machine.clock->advance(300s);
    EXPECT_EQ(discoveriesOfARefresh(), 0U);
    machine.clock->advance(1ns);
    EXPECT_EQ(discoveriesOfARefresh(), 1U);
}

TEST_F(StoreDiscovery, TheAgeIsJudgedWhenTheRefreshStarts) {
    forgetHistory();
    machine.clock->advance(299s);
    store->refresh(false);
    machine.clock->advance(10s);
    finishPasses();
    EXPECT_EQ(discoveryCount(driver()), 0U);
}

TEST_F(StoreDiscovery, IsRepeatedWhenForced) {
    forgetHistory();
    refresh(true);
    EXPECT_EQ(discoveryCount(driver()), 1U);
}

TEST_F(StoreDiscovery, AForcedRefreshDuringAnotherIsNotMadeUpFor) {
    forgetHistory();
    store->refresh(false);
    store->refresh(true);
    finishPasses();
    refresh();
    EXPECT_EQ(discoveryCount(driver()), 0U);
}

TEST_F(StoreDiscovery, BetweenDiscoveriesTheFoundKeysAreRead) {
    setKeys(driver(), {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
    refresh();
    EXPECT_EQ(readingKeys(), Keys{"TC0P"});
    machine.clock->advance(301s);
    refresh();
    EXPECT_EQ(readingKeys(), (Keys{"TC0P", "TC1C"}));
    refresh();
    EXPECT_EQ(readingKeys(), (Keys{"TC0P", "TC1C"}));
}

TEST_F(StoreDiscovery, AnEmptyOneIsRepeatedByTheNextRefresh) {
    setKeys(driver(), {temperatureKey("ZZZZ", 1)});
    refresh(true);
    EXPECT_EQ(readingKeys(), Keys{});
    EXPECT_EQ(discoveriesOfARefresh(), 1U);
    setKeys(driver(), {temperatureKey("TC1C", 41)});
    EXPECT_EQ(discoveriesOfARefresh(), 1U);
    EXPECT_EQ(readingKeys(), Keys{"TC1C"});
    EXPECT_EQ(discoveriesOfARefresh(), 0U);
}

TEST_F(StoreDiscovery, APassWithoutControllerLeavesTheFoundKeysAlone) {
    removeController();
    refresh();
    EXPECT_EQ(readingKeys(), (Keys{"NARC", "NTHR", "NLPM"}));
    driver().hasService = true;
    EXPECT_EQ(discoveriesOfARefresh(), 0U);
    EXPECT_EQ(readingKeys(), Keys{"TC0P"});
}

TEST_F(StoreDiscovery, APassWithoutControllerLeavesADueDiscoveryDue) {
    removeController();
    machine.clock->advance(301s);
    refresh();
    driver().hasService = true;
    EXPECT_EQ(discoveriesOfARefresh(), 1U);
}

TEST_F(StoreDiscovery, ACancelledOneKeepsTheKnownKeysAndCountsAsMade) {
    machine.clock->advance(301s);
    store->refresh(false);
    store->shutdown();
    finishPasses();
    EXPECT_EQ(store->statusMessage().value(), "Refresh cancelled");
    EXPECT_EQ(discoveriesOfARefresh(), 0U);
    EXPECT_EQ(readingKeys(), Keys{"TC0P"});
}

// Applying a full result

TEST_F(StoreResult, IsAppliedFieldByField) {
    defaults.values.setTextList("KelvinbarMenuBarKeys", {"TC1C", "TC0P"});
    defaults.values.setTextList("KelvinbarHiddenKeys", {"TG0D", "TM0P"});
    setKeys(driver(), {temperatureKey("TC0P", 40), temperatureKey("TG0D", 50), wholeNumberKey("F0Ac", 1200)});
    makeStore();
    recordEvents();
    finishPasses();
    EXPECT_EQ(events, (Events{"smcAvailable: true", "readings: TC0P=40 F0Ac=1200 TG0D=50",
                              "menuBarKeys: TC0P", "post: KelvinbarMenuBarReadingChanged", "hiddenKeys: TG0D",
                              "lastUpdated: now", "statusMessage: Loaded 3 HWMonitorSMC2-compatible keys",
                              "isLoading: false", "post: KelvinbarDisplayModeChanged"}));
}

TEST_F(StoreResult, PostsAtTheEndWhenThePinsStay) {
    defaults.values.setTextList("KelvinbarMenuBarKeys", {"TC0P"});
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    makeStore();
    recordEvents();
    finishPasses();
    EXPECT_EQ(events, (Events{"smcAvailable: true", "readings: TC0P=40", "lastUpdated: now",
                              "statusMessage: Loaded 1 HWMonitorSMC2-compatible keys", "isLoading: false",
                              "post: KelvinbarMenuBarReadingChanged", "post: KelvinbarDisplayModeChanged"}));
}

TEST_F(StoreResult, IsAppliedOnlyOnTheMainThread) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    makeStore();
    recordEvents();
    backgroundQueue.runAll();
    EXPECT_EQ(events, Events{});
    EXPECT_EQ(mainQueue.waitingCount(), 1U);
    mainQueue.drain();
    EXPECT_EQ(readingKeys(), Keys{"TC0P"});
}

TEST_F(StoreResult, ObserversSeeTheOldValueWhileTheyAreCalled) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    makeStore();
    std::size_t before = 99;
    std::size_t after = 99;
    const Registration registration =
        store->readings().observe([&](const std::vector<SMCReading>& newReadings) {
            before = store->readings().value().size();
            after = newReadings.size();
        });
    finishPasses();
    EXPECT_EQ(before, 0U);
    EXPECT_EQ(after, 1U);
}

TEST_F(StoreResult, AnUnchangedResultReportsOnlyTheTimeAndTheStatus) {
    defaults.values.setTextList("KelvinbarMenuBarKeys", {"TC0P"});
    defaults.values.setTextList("KelvinbarHiddenKeys", {"TC0P"});
    makeRefreshedStore({temperatureKey("TC0P", 40)});
    forgetHistory();
    recordEvents();
    wallClock.time += 1s;
    refresh();
    EXPECT_EQ(events, (Events{"statusMessage: Reading AppleSMC keys…", "lastUpdated: now",
                              "statusMessage: Loaded 1 HWMonitorSMC2-compatible keys"}));
    EXPECT_EQ(defaults.writes, Keys{});
}

TEST_F(StoreResult, ADifferenceInAnyFieldOfAReadingCounts) {
    makeRefreshedStore({{.name = "VC0C", .type = "fp88", .bytes = {1, 0x80}}});
    recordEvents();
    // The same value and number with other bytes.
    setKeys(driver(), {{.name = "VC0C", .type = "fp88", .bytes = {1, 0x80, 0}}});
    refresh();
    EXPECT_EQ(events.at(1), "readings: VC0C=1.5");
    EXPECT_EQ(store->readings().value().front().raw, "018000");
}

TEST_F(StoreResult, TheTimeIsThatOfItsApplication) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    makeStore();
    backgroundQueue.runAll();
    wallClock.time += 5s;
    mainQueue.drain();
    EXPECT_TRUE(store->lastUpdated().value() == wallClock.time);
}

TEST_F(StoreResult, PinnedKeysWithoutAReadingAreDroppedInOrder) {
    defaults.values.setTextList("KelvinbarMenuBarKeys", {"TG0D", "TC1C", "TC0P", "F0Ac"});
    makeRefreshedStore({temperatureKey("TC0P", 40), temperatureKey("TG0D", 50)});
    EXPECT_EQ(store->menuBarKeys().value(), (Keys{"TG0D", "TC0P"}));
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), (TextList{"TG0D", "TC0P"}));
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), "TG0D");
    EXPECT_EQ(postedUnder(kelvinbarMenuBarReadingChanged).size(), 1U);
}

TEST_F(StoreResult, HiddenKeysWithoutAReadingAreDropped) {
    defaults.values.setTextList("KelvinbarHiddenKeys", {"TG0D", "TC1C", "TC0P"});
    makeRefreshedStore({temperatureKey("TC0P", 40), temperatureKey("TG0D", 50)});
    EXPECT_EQ(store->hiddenKeys().value(), (KeySet{"TC0P", "TG0D"}));
    EXPECT_EQ(defaults.textList("KelvinbarHiddenKeys"), (TextList{"TC0P", "TG0D"}));
    EXPECT_EQ(defaults.writes, Keys{"KelvinbarHiddenKeys"});
}

TEST_F(StoreResult, AReadingWithoutADisplayableValueLosesItsPin) {
    defaults.values.setTextList("KelvinbarMenuBarKeys", {"RVBF", "TC0P"});
    makeRefreshedStore({temperatureKey("TC0P", 40), textKey("RVBF", "n/a")});
    EXPECT_EQ(store->menuBarKeys().value(), Keys{"TC0P"});
}

TEST_F(StoreResult, WithoutReadingsPinsAndHiddenKeysAreEmptied) {
    defaults.values.setTextList("KelvinbarMenuBarKeys", {"TC0P"});
    defaults.values.setText("KelvinbarMenuBarKey", "TC0P");
    defaults.values.setTextList("KelvinbarHiddenKeys", {"TG0D"});
    makeRefreshedStore({temperatureKey("ZZZZ", 1)});
    EXPECT_EQ(store->menuBarKeys().value(), Keys{});
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{});
    EXPECT_EQ(defaults.writes,
              (Keys{"-KelvinbarMenuBarKeys", "-KelvinbarMenuBarKey", "-KelvinbarHiddenKeys"}));
    EXPECT_TRUE(store->smcAvailable().value());
    EXPECT_TRUE(store->lastUpdated().value() == wallClock.time);
    EXPECT_EQ(store->statusMessage().value(),
              "AppleSMC connected, but no compatible sensor key returned a real value");
}

TEST_F(StoreResult, NativeReadingsAreShownAsANormalPass) {
    makeRefreshedStore({temperatureKey("TC0P", 40)});
    removeController();
    wallClock.time += 1s;
    refresh();
    EXPECT_TRUE(store->smcAvailable().value());
    EXPECT_EQ(readingKeys(), (Keys{"NARC", "NTHR", "NLPM"}));
    EXPECT_EQ(store->statusMessage().value(), "AppleSMC unavailable; showing native macOS telemetry");
    EXPECT_TRUE(store->lastUpdated().value() == wallClock.time);
}

TEST_F(StoreResult, WithNothingAtAllTheTimeStaysAndTheMessageShows) {
    defaults.values.setTextList("KelvinbarMenuBarKeys", {"TC0P"});
    defaults.values.setTextList("KelvinbarHiddenKeys", {"TG0D"});
    machineOfStore.system = nullptr;
    makeRefreshedStore({temperatureKey("TC0P", 40), temperatureKey("TG0D", 50)});
    const auto updated = wallClock.time;
    removeController();
    recordEvents();
    wallClock.time += 1s;
    refresh();
    const std::string message = "AppleSMC service not available. This app is intended for "
                                "Hackintosh/macOS systems with SMC emulation.";
    EXPECT_EQ(store->statusMessage().value(), message);
    EXPECT_EQ(events,
              (Events{"statusMessage: Reading AppleSMC keys…", "smcAvailable: false",
                      "readings: ", "menuBarKeys: ", "post: KelvinbarMenuBarReadingChanged",
                      "hiddenKeys: ", "statusMessage: " + message, "post: KelvinbarDisplayModeChanged"}));
    EXPECT_TRUE(store->lastUpdated().value() == updated);
    EXPECT_FALSE(store->isLoading().value());
}

TEST_F(StoreResult, ANewRefreshMayStartFromItsNotifications) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    makeStore();
    const Registration registration = notifications.addObserver(
        kelvinbarMenuBarReadingChanged, {[this](const auto& /*change*/) { store->refresh(false); }});
    finishPasses();
    EXPECT_EQ(backgroundQueue.startedCount, 2U);
}

TEST_F(StoreResult, TheRefreshStillRunsWhileItsFieldsAreAssigned) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    makeStore();
    int calls = 0;
    const Registration registration = store->isLoading().observe([&](bool /*isLoading*/) {
        ++calls;
        store->refresh(true);
    });
    finishPasses();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(backgroundQueue.startedCount, 1U);
}

/// A store whose driver runs out of memory when the test says so.
struct StoreWithoutMemory : StoreRefresh {
    void endMemory() {
        driver().intercept = [](const SMCParamBlock&, SMCParamBlock&) -> std::optional<ReturnCode> {
            throw std::bad_alloc();
        };
    }
};

TEST_F(StoreWithoutMemory, KeepsReadingsPinsAndHiddenKeys) {
    makeRefreshedStore({temperatureKey("TC0P", 40), temperatureKey("TG0D", 50)});
    store->toggleMenuBarReading(fakes::readingOf("TC0P"));
    store->hideReading(fakes::readingOf("TG0D"));
    const auto before = readingKeys();
    endMemory();
    refresh(true);
    EXPECT_EQ(readingKeys(), before);
    EXPECT_EQ(store->menuBarKeys().value(), std::vector<std::string>{"TC0P"});
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{"TG0D"});
}

TEST_F(StoreWithoutMemory, GoesOnWithTheNextRefresh) {
    makeRefreshedStore({temperatureKey("TC0P", 40)});
    endMemory();
    refresh(true);
    EXPECT_FALSE(store->isRefreshing());
    driver().intercept = nullptr;
    setKeys(driver(), {temperatureKey("TG0D", 50)});
    refresh(true);
    EXPECT_EQ(readingKeys(), std::vector<std::string>{"TG0D"});
}

TEST_F(StoreWithoutMemory, IsLoadingUntilItHasItsFirstResult) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    endMemory();
    makeStore();
    finishPasses();
    EXPECT_TRUE(store->isLoading().value());
    EXPECT_FALSE(store->isRefreshing());
}

} // namespace
} // namespace kelvinbar::kelvinbar_store_refresh_test
