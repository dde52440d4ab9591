#include "sensors/Machine.h"
#include "tests/store/StoreFixture.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::kelvinbar_store_menu_bar_refresh_test {

namespace {

using fakes::ControllerKey;
using fakes::discoveryCount;
using fakes::keysRead;
using fakes::setKeys;
using fakes::StoreFixture;
using fakes::temperatureKey;
using fakes::wholeNumberKey;

using Events = std::vector<std::string>;
using Keys = std::vector<std::string>;
using namespace std::chrono_literals;

struct StoreMenuBarRefresh : StoreFixture {
    /// A store with `pins` that has read `keys` once.
    void makeStoreWithPins(const Keys& pins, const std::vector<ControllerKey>& keys) {
        defaults.values.setTextList("KelvinbarMenuBarKeys", pins);
        makeRefreshedStore(keys);
        forgetHistory();
        recordEvents();
    }

    [[nodiscard]] std::string readings() const { return readingsText(store->readings().value()); }
};

// When it starts

TEST_F(StoreMenuBarRefresh, DoesNotStartWithoutPins) {
    makeStoreWithPins({}, {temperatureKey("TC0P", 40)});
    store->refreshMenuBarOnly();
    EXPECT_EQ(backgroundQueue.waitingCount(), 0U);
}

TEST_F(StoreMenuBarRefresh, DoesNotStartWhileAFullRefreshRuns) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40)});
    store->refresh(false);
    store->refreshMenuBarOnly();
    EXPECT_EQ(backgroundQueue.waitingCount(), 1U);
    backgroundQueue.runAll();
    store->refreshMenuBarOnly();
    EXPECT_EQ(backgroundQueue.waitingCount(), 0U);
    mainQueue.drain();
    store->refreshMenuBarOnly();
    EXPECT_EQ(backgroundQueue.waitingCount(), 1U);
}

TEST_F(StoreMenuBarRefresh, DoesNotStartWhileAnotherRuns) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40)});
    store->refreshMenuBarOnly();
    store->refreshMenuBarOnly();
    EXPECT_EQ(backgroundQueue.waitingCount(), 1U);
    backgroundQueue.runAll();
    store->refreshMenuBarOnly();
    EXPECT_EQ(backgroundQueue.waitingCount(), 0U);
    mainQueue.drain();
    store->refreshMenuBarOnly();
    EXPECT_EQ(backgroundQueue.waitingCount(), 1U);
}

TEST_F(StoreMenuBarRefresh, AFullRefreshMayStartWhileItRuns) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
    store->refreshMenuBarOnly();
    store->refresh(false);
    EXPECT_EQ(backgroundQueue.waitingCount(), 2U);
    setKeys(driver(), {temperatureKey("TC0P", 45), temperatureKey("TC1C", 46)});
    finishPasses();
    EXPECT_EQ(readings(), "TC0P=45 TC1C=46");
}

TEST_F(StoreMenuBarRefresh, AResultThatIsCompleteLaterIsAppliedLater) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
    bool fullPassRan = false;
    driver().intercept = [&](const SMCParamBlock& /*input*/, SMCParamBlock& /*output*/) {
        if (!fullPassRan) {
            fullPassRan = true;
            backgroundQueue.runNext();
            setKeys(driver(), {temperatureKey("TC0P", 50), temperatureKey("TC1C", 51)});
        }
        return std::optional<ReturnCode>();
    };
    store->refreshMenuBarOnly();
    store->refresh(false);
    finishPasses();
    EXPECT_TRUE(fullPassRan);
    EXPECT_EQ(readings(), "TC0P=50 TC1C=41");
}

TEST_F(StoreMenuBarRefresh, StartingChangesNoField) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40)});
    store->refreshMenuBarOnly();
    backgroundQueue.runAll();
    EXPECT_EQ(events, Events{});
}

// What it reads

TEST_F(StoreMenuBarRefresh, ReadsExactlyThePinnedKeys) {
    makeStoreWithPins({"TG0D", "TC0P"},
                      {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41), temperatureKey("TG0D", 50)});
    refreshMenuBarOnly();
    EXPECT_EQ(keysRead(driver()), (Keys{"TC0P", "TG0D"}));
    EXPECT_EQ(discoveryCount(driver()), 0U);
}

TEST_F(StoreMenuBarRefresh, ReadsThePinsOfItsStart) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
    store->refreshMenuBarOnly();
    store->setMenuBarKeys({"TC1C"});
    finishPasses();
    EXPECT_EQ(keysRead(driver()), Keys{"TC0P"});
}

TEST_F(StoreMenuBarRefresh, ReadsRegistryFansOnlyWhenAPinBeginsWithTheirPrefix) {
    Dictionary properties;
    properties.set("CPU Fan Speed", std::int64_t{1450});
    machine.registry->add("SMCSuperIO", "Sensors", properties);

    struct Case {
        Keys pins;
        std::size_t walks;
    };

    const std::vector<Case> cases{
        {{"FNum"}, 0}, {{"FAN0"}, 1}, {{"F0Ac", "Fan9", "TC0P"}, 0}, {{"TC0P", "FNum", "FAN0"}, 1}};
    for (const auto& [pins, walks] : cases) {
        SCOPED_TRACE(pins.back());
        makeStoreWithPins(pins, {temperatureKey("TC0P", 40), wholeNumberKey("FNum", 2),
                                 wholeNumberKey("F0Ac", 900), wholeNumberKey("Fan9", 800)});
        ASSERT_EQ(store->menuBarKeys().value(), pins);
        machine.clock->advance(15s);
        refreshMenuBarOnly();
        EXPECT_EQ(machine.registry->walkedPlanes.size(), walks);
        machine.clock->advance(15s);
    }
}

TEST_F(StoreMenuBarRefresh, APinnedRegistryFanIsKeptCurrent) {
    Dictionary properties;
    properties.set("CPU Fan Speed", std::int64_t{1450});
    machine.registry->add("SMCSuperIO", "Sensors", properties);
    makeStoreWithPins({"FAN0"}, {temperatureKey("TC0P", 40)});
    EXPECT_EQ(readings(), "TC0P=40 FAN0=1450");
    properties.set("CPU Fan Speed", std::int64_t{1500});
    machine.registry->entries.clear();
    machine.registry->add("SMCSuperIO", "Sensors", properties);
    machine.clock->advance(15s);
    refreshMenuBarOnly();
    EXPECT_EQ(readings(), "TC0P=40 FAN0=1500");
    EXPECT_EQ(store->menuBarTitle(), " 1500rpm");
}

// What it changes

TEST_F(StoreMenuBarRefresh, PatchesPinnedReadingsWhereTheyStand) {
    makeStoreWithPins({"TG0D", "TC0P"},
                      {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41), temperatureKey("TG0D", 50)});
    setKeys(driver(), {temperatureKey("TC0P", 60), temperatureKey("TC1C", 61), temperatureKey("TG0D", 70)});
    refreshMenuBarOnly();
    EXPECT_EQ(readings(), "TC0P=60 TC1C=41 TG0D=70");
}

TEST_F(StoreMenuBarRefresh, AppendsNewReadingsWithoutSortingAgain) {
    makeStoreWithPins({"TC1C"}, {temperatureKey("TC1C", 41), temperatureKey("TG0D", 50)});
    setKeys(driver(), {temperatureKey("TC0P", 40), temperatureKey("TC1C", 42), wholeNumberKey("B0AV", 12)});
    store->setMenuBarKeys({"TC0P", "TC1C", "B0AV"});
    refreshMenuBarOnly();
    EXPECT_EQ(readings(), "TC1C=42 TG0D=50 B0AV=12 TC0P=40");
    refreshMenuBarOnly();
    EXPECT_EQ(readings(), "TC1C=42 TG0D=50 B0AV=12 TC0P=40");
}

TEST_F(StoreMenuBarRefresh, ReportsItsChangesInOrder) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40)});
    setKeys(driver(), {temperatureKey("TC0P", 45)});
    wallClock.time += 1s;
    refreshMenuBarOnly();
    EXPECT_EQ(events,
              (Events{"readings: TC0P=45", "lastUpdated: now", "post: KelvinbarMenuBarReadingChanged"}));
    EXPECT_TRUE(store->lastUpdated().value() == wallClock.time);
}

TEST_F(StoreMenuBarRefresh, DropsThePinsThatItDidNotGetBack) {
    makeStoreWithPins({"TG0D", "TC1C", "TC0P"},
                      {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41), temperatureKey("TG0D", 50)});
    setKeys(driver(), {temperatureKey("TC0P", 45), temperatureKey("TG0D", 50)});
    wallClock.time += 1s;
    refreshMenuBarOnly();
    EXPECT_EQ(events, (Events{"readings: TC0P=45 TC1C=41 TG0D=50", "menuBarKeys: TG0D TC0P",
                              "post: KelvinbarMenuBarReadingChanged", "lastUpdated: now"}));
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), (TextList{"TG0D", "TC0P"}));
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), "TG0D");
}

TEST_F(StoreMenuBarRefresh, WithoutAnyReadingThePinsStay) {
    makeStoreWithPins({"TC1C", "TC0P"}, {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
    setKeys(driver(), {});
    wallClock.time += 1s;
    refreshMenuBarOnly();
    EXPECT_EQ(events, Events{"lastUpdated: now"});
    EXPECT_EQ(store->menuBarKeys().value(), (Keys{"TC1C", "TC0P"}));
    EXPECT_EQ(defaults.writes, Keys{});
    EXPECT_EQ(store->menuBarTitle(), " 41°  40°");
}

TEST_F(StoreMenuBarRefresh, AnUnchangedResultReportsOnlyTheTime) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40)});
    wallClock.time += 1s;
    refreshMenuBarOnly();
    EXPECT_EQ(events, Events{"lastUpdated: now"});
}

TEST_F(StoreMenuBarRefresh, LeavesStatusHiddenKeysAndDisplayModeAlone) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40), temperatureKey("TG0D", 50)});
    store->hideReading(fakes::readingOf("TG0D"));
    setKeys(driver(), {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
    store->setMenuBarKeys({"TC0P", "TC1C"});
    forgetHistory();
    wallClock.time += 1s;
    refreshMenuBarOnly();
    // One more visible reading. The hidden one is not in the results.
    EXPECT_EQ(events, (Events{"readings: TC0P=40 TG0D=50 TC1C=41", "lastUpdated: now",
                              "post: KelvinbarMenuBarReadingChanged"}));
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{"TG0D"});
    EXPECT_EQ(store->statusMessage().value(), "Loaded 2 HWMonitorSMC2-compatible keys");
}

TEST_F(StoreMenuBarRefresh, LeavesTheDiscoveryStateAlone) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
    machine.clock->advance(200s);
    refreshMenuBarOnly();
    forgetHistory();
    refresh();
    EXPECT_EQ(discoveryCount(driver()), 0U);
    EXPECT_EQ(keysRead(driver()), (Keys{"TC0P", "TC1C"}));
    machine.clock->advance(101s);
    refresh();
    EXPECT_EQ(discoveryCount(driver()), 1U);
}

TEST_F(StoreMenuBarRefresh, WithoutControllerNativeReadingsAreAppended) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40)});
    store->shutdown();
    driver().hasService = false;
    refreshMenuBarOnly();
    EXPECT_EQ(readingKeys(), (Keys{"TC0P", "NARC", "NTHR", "NLPM"}));
    EXPECT_EQ(store->menuBarKeys().value(), Keys{"TC0P"});
    EXPECT_EQ(store->statusMessage().value(), "Loaded 1 HWMonitorSMC2-compatible keys");
}

TEST_F(StoreMenuBarRefresh, WithNothingAtAllOnlyTheTaskEnds) {
    machineOfStore.system = nullptr;
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40)});
    const auto updated = wallClock.time;
    machine.bridge->close();
    driver().hasService = false;
    wallClock.time += 1s;
    refreshMenuBarOnly();
    EXPECT_EQ(events, Events{});
    EXPECT_TRUE(store->lastUpdated().value() == updated);
    EXPECT_TRUE(store->smcAvailable().value());
    store->refreshMenuBarOnly();
    EXPECT_EQ(backgroundQueue.waitingCount(), 1U);
}

TEST_F(StoreMenuBarRefresh, AnotherMayStartFromItsLastNotification) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40)});
    setKeys(driver(), {temperatureKey("TC0P", 45)});
    const std::size_t started = backgroundQueue.startedCount;
    const Registration registration = notifications.addObserver(
        kelvinbarMenuBarReadingChanged, {[this](const auto& /*change*/) { store->refreshMenuBarOnly(); }});
    refreshMenuBarOnly();
    EXPECT_EQ(backgroundQueue.startedCount, started + 2);
}

// A refresh of a selection

TEST_F(StoreMenuBarRefresh, OfASelectionReadsItsKeysAlone) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40), temperatureKey("TC0D", 50)});
    setKeys(driver(), {temperatureKey("TC0P", 41), temperatureKey("TC0D", 51)});
    store->refreshOnly(std::make_shared<const KeySet>(KeySet{"TC0D"}));
    EXPECT_TRUE(store->isReading());
    EXPECT_FALSE(store->isRefreshing());
    finishPasses();
    EXPECT_FALSE(store->isReading());
    EXPECT_EQ(keysRead(driver()), Keys{"TC0D"});
    EXPECT_EQ(discoveryCount(driver()), 0);
}

TEST_F(StoreMenuBarRefresh, OfASelectionLeavesOnlyItsReadingsAndAllPins) {
    makeStoreWithPins({"TC0P"}, {temperatureKey("TC0P", 40), temperatureKey("TC0D", 50)});
    store->refreshOnly(std::make_shared<const KeySet>(KeySet{"TC0D", "gone"}));
    finishPasses();
    ASSERT_EQ(store->readings().value().size(), 1U);
    EXPECT_EQ(store->readings().value().front().key, "TC0D");
    EXPECT_EQ(store->menuBarKeys().value(), Keys{"TC0P"});
}

TEST_F(StoreMenuBarRefresh, OfASelectionDoesNotStartWhileARefreshRuns) {
    makeStoreWithPins({}, {temperatureKey("TC0P", 40)});
    store->refresh(false);
    store->refreshOnly(std::make_shared<const KeySet>(KeySet{"TC0P"}));
    EXPECT_EQ(backgroundQueue.waitingCount(), 1U);
}

} // namespace
} // namespace kelvinbar::kelvinbar_store_menu_bar_refresh_test
