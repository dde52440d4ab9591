#include "tests/store/StoreFixture.h"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::kelvinbar_store_settings_test {

namespace {

using fakes::readingOf;
using fakes::setKeys;
using fakes::StoreFixture;
using fakes::temperatureKey;

using Keys = std::vector<std::string>;

struct StoreSettings : StoreFixture {
    void SetUp() override { makeStore(); }
};

struct StoreDisplayMode : StoreFixture {
    void SetUp() override { makeStore(); }

    [[nodiscard]] std::vector<DisplayModeChange> modePosts() const {
        return postedUnder(kelvinbarDisplayModeChanged);
    }
};

struct StoreHiddenReadings : StoreFixture {
    void SetUp() override {
        makeRefreshedStore(
            {temperatureKey("TC0P", 48), temperatureKey("TC1C", 41), temperatureKey("TG0D", 50)});
        forgetHistory();
    }

    void hide(std::string key) const { store->hideReading(readingOf(std::move(key))); }

    [[nodiscard]] const KeySet& hidden() const { return store->hiddenKeys().value(); }
};

struct StorePopoverSize : StoreFixture {
    [[nodiscard]] std::vector<ManualSizeChange> sizePosts() const {
        return postedUnder(kelvinbarManualSizeChanged);
    }

    void expectSize(double width, double height) const {
        EXPECT_EQ(store->manualPopoverWidth().value(), width);
        EXPECT_EQ(store->manualPopoverHeight().value(), height);
    }
};

struct StoreExport : StoreFixture {};

// Sampling rate

TEST_F(StoreSettings, ANewSamplingRateIsStoredAndPosted) {
    store->setSamplingRate(SMCSamplingRate::fast);
    EXPECT_EQ(store->samplingRate().value(), SMCSamplingRate::fast);
    EXPECT_EQ(defaults.text("KelvinbarSamplingRate"), "fast");
    ASSERT_EQ(posted.size(), 1U);
    EXPECT_EQ(posted.front().name, "KelvinbarSamplingRateChanged");
    EXPECT_EQ(postedUnder(kelvinbarSamplingRateChanged), std::vector{SMCSamplingRate::fast});
}

TEST_F(StoreSettings, TheSameSamplingRateWritesAndPostsNothing) {
    store->setSamplingRate(SMCSamplingRate::medium);
    EXPECT_EQ(defaults.writes, Keys{});
    EXPECT_EQ(posted.size(), 0U);
    store->setSamplingRate(SMCSamplingRate::fast);
    store->setSamplingRate(SMCSamplingRate::fast);
    EXPECT_EQ(posted.size(), 1U);
}

TEST_F(StoreSettings, AnUnknownStoredRateIsNotRewrittenUntilItChanges) {
    defaults.values.setText("KelvinbarSamplingRate", "often");
    makeStore();
    EXPECT_EQ(store->samplingRate().value(), SMCSamplingRate::medium);
    finishPasses();
    store->setSamplingRate(SMCSamplingRate::medium);
    EXPECT_EQ(defaults.text("KelvinbarSamplingRate"), "often");
    store->setSamplingRate(SMCSamplingRate::fast);
    EXPECT_EQ(defaults.text("KelvinbarSamplingRate"), "fast");
}

TEST_F(StoreSettings, FilterAndSearchAreNotStored) {
    store->setSelectedCategory(SMCCategory::fans);
    store->setSearchText("fan");
    EXPECT_EQ(store->selectedCategory().value(), SMCCategory::fans);
    EXPECT_EQ(store->searchText().value(), "fan");
    EXPECT_EQ(defaults.writes, Keys{});
    EXPECT_EQ(posted.size(), 0U);
    makeStore();
    EXPECT_EQ(store->selectedCategory().value(), std::nullopt);
    EXPECT_EQ(store->searchText().value(), "");
}

// Display mode

TEST_F(StoreDisplayMode, FromFixedToDynamicAndBackPostsTwice) {
    store->setDisplayMode(SMCWindowDisplayMode::dynamic);
    EXPECT_EQ(defaults.text("KelvinbarWindowDisplayMode"), "dynamic");
    store->setDisplayMode(SMCWindowDisplayMode::fixed);
    EXPECT_EQ(defaults.text("KelvinbarWindowDisplayMode"), "fixed");
    ASSERT_EQ(posted.size(), 2U);
    EXPECT_EQ(posted[0].name, "KelvinbarDisplayModeChanged");
    EXPECT_EQ(modePosts(), (std::vector{DisplayModeChange{SMCWindowDisplayMode::dynamic, 0},
                                        DisplayModeChange{SMCWindowDisplayMode::fixed, 0}}));
}

TEST_F(StoreDisplayMode, TheSameModeWritesAndPostsNothing) {
    store->setDisplayMode(SMCWindowDisplayMode::fixed);
    EXPECT_EQ(defaults.writes, Keys{});
    EXPECT_EQ(posted.size(), 0U);
}

TEST_F(StoreDisplayMode, TheFirstRefreshPostsEvenWithoutReadings) {
    finishPasses();
    ASSERT_EQ(modePosts().size(), 1U);
    EXPECT_EQ(modePosts().front(), (DisplayModeChange{SMCWindowDisplayMode::fixed, 0}));
}

TEST_F(StoreDisplayMode, ARefreshPostsOnlyANewVisibleCount) {
    setKeys(driver(), {temperatureKey("TC0P", 48), temperatureKey("TC1C", 41)});
    finishPasses();
    ASSERT_EQ(modePosts().size(), 1U);
    EXPECT_EQ(modePosts().back(), (DisplayModeChange{SMCWindowDisplayMode::fixed, 2}));
    setKeys(driver(), {temperatureKey("TC0P", 50), temperatureKey("TC1C", 51)});
    refresh();
    EXPECT_EQ(modePosts().size(), 1U);
    setKeys(driver(), {temperatureKey("TC0P", 50)});
    refresh();
    ASSERT_EQ(modePosts().size(), 2U);
    EXPECT_EQ(modePosts().back(), (DisplayModeChange{SMCWindowDisplayMode::fixed, 1}));
}

TEST_F(StoreDisplayMode, AModeThatWasPostedAlreadyIsNotPostedByTheRefresh) {
    driver().hasService = false;
    finishPasses();
    store->setDisplayMode(SMCWindowDisplayMode::dynamic);
    refresh();
    ASSERT_EQ(modePosts().size(), 2U);
    EXPECT_EQ(modePosts().back(), (DisplayModeChange{SMCWindowDisplayMode::dynamic, 3}));
}

// Hidden readings

TEST_F(StoreHiddenReadings, AHiddenKeyIsStoredTrimmed) {
    hide(" TG0D\n");
    hide("TC0P");
    EXPECT_EQ(hidden(), (KeySet{"TC0P", "TG0D"}));
    EXPECT_EQ(defaults.textList("KelvinbarHiddenKeys"), (TextList{"TC0P", "TG0D"}));
}

TEST_F(StoreHiddenReadings, HidingAPinnedReadingUnpinsIt) {
    store->setMenuBarKeys({"TC0P", "TG0D", "TC1C"});
    forgetHistory();
    hide("TG0D");
    EXPECT_EQ(store->menuBarKeys().value(), (Keys{"TC0P", "TC1C"}));
    EXPECT_EQ(defaults.writes, (Keys{"KelvinbarHiddenKeys", "KelvinbarMenuBarKeys", "KelvinbarMenuBarKey"}));
    ASSERT_EQ(posted.size(), 1U);
    ASSERT_EQ(posted.front().name, kelvinbarMenuBarReadingChanged.name);
    EXPECT_EQ(postedUnder(kelvinbarMenuBarReadingChanged).front().title, " 48°  41°");
}

TEST_F(StoreHiddenReadings, HidingAReadingThatIsNotPinnedLeavesThePinsAlone) {
    store->setMenuBarKeys({"TC0P"});
    forgetHistory();
    hide("TG0D");
    EXPECT_EQ(defaults.writes, Keys{"KelvinbarHiddenKeys"});
    EXPECT_EQ(store->menuBarKeys().value(), Keys{"TC0P"});
}

TEST_F(StoreHiddenReadings, HidingAHiddenReadingWritesNothing) {
    hide("TG0D");
    forgetHistory();
    recordEvents();
    hide("TG0D");
    EXPECT_EQ(defaults.writes, Keys{});
    EXPECT_EQ(events, Keys{});
}

TEST_F(StoreHiddenReadings, HidingAHiddenReadingThatWasPinnedAgainUnpinsIt) {
    hide("TG0D");
    store->setMenuBarKeys({"TG0D"});
    forgetHistory();
    hide("TG0D");
    EXPECT_EQ(store->menuBarKeys().value(), Keys{});
    EXPECT_EQ(defaults.writes, (Keys{"-KelvinbarMenuBarKeys", "-KelvinbarMenuBarKey"}));
}

TEST_F(StoreHiddenReadings, AKeyOfSpacesIsIgnored) {
    hide("");
    hide(" \n");
    EXPECT_EQ(hidden(), KeySet{});
    EXPECT_EQ(defaults.writes, Keys{});
}

TEST_F(StoreHiddenReadings, ReadingsKeepHiddenOnes) {
    hide("TG0D");
    refresh();
    EXPECT_EQ(readingKeys(), (Keys{"TC0P", "TC1C", "TG0D"}));
    EXPECT_EQ(hidden(), KeySet{"TG0D"});
}

TEST_F(StoreHiddenReadings, ShowingAllAgainRemovesTheEntryAndRestoresNoPin) {
    store->setMenuBarKeys({"TC0P"});
    hide("TC0P");
    hide("TG0D");
    forgetHistory();
    store->unhideAllReadings();
    EXPECT_EQ(hidden(), KeySet{});
    EXPECT_EQ(defaults.writes, Keys{"-KelvinbarHiddenKeys"});
    EXPECT_EQ(store->menuBarKeys().value(), Keys{});
}

TEST_F(StoreHiddenReadings, ShowingAllAgainWithNoneHiddenWritesNothing) {
    store->unhideAllReadings();
    EXPECT_EQ(defaults.writes, Keys{});
    EXPECT_EQ(posted.size(), 0U);
}

TEST_F(StoreHiddenReadings, TheVisibleCountIsPostedByTheNextRefresh) {
    hide("TG0D");
    EXPECT_EQ(posted.size(), 0U);
    refreshMenuBarOnly();
    EXPECT_EQ(posted.size(), 0U);
    refresh();
    ASSERT_EQ(posted.size(), 1U);
    EXPECT_EQ(postedUnder(kelvinbarDisplayModeChanged),
              (std::vector{DisplayModeChange{SMCWindowDisplayMode::fixed, 2}}));
}

TEST_F(StoreHiddenReadings, TheVisibleCountIsPostedByTheNextModeChange) {
    hide("TG0D");
    hide("TC0P");
    store->setDisplayMode(SMCWindowDisplayMode::dynamic);
    ASSERT_EQ(posted.size(), 1U);
    EXPECT_EQ(postedUnder(kelvinbarDisplayModeChanged),
              (std::vector{DisplayModeChange{SMCWindowDisplayMode::dynamic, 1}}));
    store->unhideAllReadings();
    EXPECT_EQ(posted.size(), 1U);
}

// Size of the panel

TEST_F(StorePopoverSize, TheHeightIsKeptToItsBounds) {
    struct Case {
        double requested;
        double stored;
    };

    for (const auto& [requested, stored] : std::vector<Case>{{300, 560},
                                                             {2000, 1400},
                                                             {560, 560},
                                                             {559.4, 560},
                                                             {1400, 1400},
                                                             {1400.6, 1400},
                                                             {561, 561},
                                                             {1399, 1399},
                                                             {-1, 560}}) {
        SCOPED_TRACE(requested);
        makeStore();
        defaults.values.remove("KelvinbarManualPopoverHeight");
        forgetHistory();
        store->setManualPopoverHeight(requested);
        expectSize(462, stored);
        EXPECT_EQ(defaults.number("KelvinbarManualPopoverHeight"), stored);
        EXPECT_EQ(defaults.number("KelvinbarManualPopoverWidth"), 462);
        EXPECT_EQ(defaults.writes, (Keys{"KelvinbarManualPopoverWidth", "KelvinbarManualPopoverHeight"}));
        defaults.values.remove("KelvinbarManualPopoverHeight");
    }
}

TEST_F(StorePopoverSize, TheSameHeightTwiceIsPostedTwiceButWrittenOnce) {
    makeStore();
    store->setManualPopoverHeight(700);
    store->setManualPopoverHeight(700);
    EXPECT_EQ(defaults.writes, (Keys{"KelvinbarManualPopoverWidth", "KelvinbarManualPopoverHeight"}));
    EXPECT_EQ(posted.size(), 2U);
    EXPECT_EQ(posted.front().name, "KelvinbarManualSizeChanged");
    EXPECT_EQ(sizePosts(), (std::vector{ManualSizeChange{462, 700}, ManualSizeChange{462, 700}}));
}

TEST_F(StorePopoverSize, ADifferenceOfHalfAPointIsNoChange) {
    makeStore();
    store->setManualPopoverHeight(690.5);
    store->setManualPopoverHeight(689.5);
    expectSize(462, 690);
    EXPECT_EQ(defaults.writes, Keys{});
    ASSERT_EQ(posted.size(), 2U);
    EXPECT_EQ(sizePosts().back(), (ManualSizeChange{462, 690}));
    store->setManualPopoverHeight(690.625);
    expectSize(462, 690.625);
    EXPECT_EQ(defaults.writes.size(), 2U);
}

TEST_F(StorePopoverSize, AnotherStoredWidthIsReplacedAtTheFirstChange) {
    defaults.values.setNumber("KelvinbarManualPopoverWidth", 500);
    defaults.values.setNumber("KelvinbarManualPopoverHeight", 700);
    makeStore();
    store->setManualPopoverHeight(700);
    expectSize(462, 700);
    EXPECT_EQ(defaults.number("KelvinbarManualPopoverWidth"), 462);
    EXPECT_EQ(sizePosts().back(), (ManualSizeChange{462, 700}));
}

TEST_F(StorePopoverSize, AStoredWidthWithinHalfAPointStays) {
    defaults.values.setNumber("KelvinbarManualPopoverWidth", 462.5);
    makeStore();
    store->setManualPopoverHeight(690);
    expectSize(462.5, 690);
    EXPECT_EQ(defaults.writes, Keys{});
    EXPECT_EQ(sizePosts().back(), (ManualSizeChange{462.5, 690}));
}

TEST_F(StorePopoverSize, AStoredHeightBeyondTheBoundsIsKeptUntilTheFirstChange) {
    defaults.values.setNumber("KelvinbarManualPopoverHeight", 2000);
    makeStore();
    expectSize(462, 2000);
    store->setManualPopoverHeight(2000);
    expectSize(462, 1400);
    EXPECT_EQ(defaults.number("KelvinbarManualPopoverHeight"), 1400);
}

TEST_F(StorePopoverSize, FieldsAndPreferencesChangeBeforeThePost) {
    makeStore();
    double height = 0;
    double stored = 0;
    const Registration registration =
        notifications.addObserver(kelvinbarManualSizeChanged, {[&](const auto& /*change*/) {
                                      height = store->manualPopoverHeight().value();
                                      stored = defaults.number("KelvinbarManualPopoverHeight");
                                  }});
    store->setManualPopoverHeight(800);
    EXPECT_EQ(height, 800);
    EXPECT_EQ(stored, 800);
}

// Snapshot

TEST_F(StoreExport, BeforeTheFirstResultTheTimeIsNow) {
    makeStore();
    wallClock.time = std::chrono::system_clock::time_point(std::chrono::seconds(1'772'373'909));
    EXPECT_EQ(store->exportText(), "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: 0\n");
    wallClock.time += std::chrono::seconds(1);
    EXPECT_EQ(store->exportText(), "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:10Z\nActive keys: 0\n");
}

TEST_F(StoreExport, CoversHiddenReadingsAtTheTimeOfTheLastUpdate) {
    wallClock.time = std::chrono::system_clock::time_point(std::chrono::seconds(1'772'373'909));
    makeRefreshedStore({temperatureKey("TG0D", 50), fakes::wholeNumberKey("F0Ac", 1200),
                        fakes::wholeNumberKey("V9AB", 9), fakes::wholeNumberKey("V12R", 12),
                        fakes::textKey("REV ", "2.4")});
    store->hideReading(readingOf("F0Ac"));
    wallClock.time += std::chrono::hours(1);
    EXPECT_EQ(store->exportText(), "Kelvinbar snapshot\n"
                                   "Generated: 2026-03-01T14:05:09Z\n"
                                   "Active keys: 5\n"
                                   "\n"
                                   "F0Ac\tui16\tFan 0\t1200 RPM\tRAW=04B0\n"
                                   "REV \tch8*\tSMC Revision\t2.4\tRAW=322E34\n"
                                   "TG0D\tsp78\tGPU 0 Die\t50 °C\tRAW=3200\n"
                                   "V9AB\tui16\tV9AB\t9 V\tRAW=0009\n"
                                   "V12R\tui16\t+12V\t12 V\tRAW=000C");
}

TEST_F(StoreExport, ChangesNothing) {
    makeRefreshedStore({temperatureKey("TC0P", 48)});
    forgetHistory();
    recordEvents();
    EXPECT_EQ(store->exportText(), store->exportText());
    EXPECT_EQ(events, Keys{});
    EXPECT_EQ(defaults.writes, Keys{});
    EXPECT_EQ(driver().calls.size(), 0U);
}

} // namespace
} // namespace kelvinbar::kelvinbar_store_settings_test
