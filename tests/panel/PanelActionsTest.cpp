#include "panel/PanelActions.h"

#include "tests/store/StoreFixture.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::panel_actions_test {

namespace {

using fakes::StoreFixture;

using Names = std::vector<std::string>;

constexpr double infinity = std::numeric_limits<double>::infinity();

struct PanelActions : StoreFixture {
    void SetUp() override { makeStore(); }

    [[nodiscard]] Names postedNames() const {
        Names names;
        for (const fakes::Posted& each : posted) names.emplace_back(each.name);
        return names;
    }

    [[nodiscard]] SMCSamplingRate rate() const { return store->samplingRate().value(); }

    [[nodiscard]] SMCWindowDisplayMode mode() const { return store->displayMode().value(); }
};

struct PanelHeight : StoreFixture {
    /// Makes the store with `height` among its preferences.
    void makeStoreOfHeight(double height) {
        defaults.values.setNumber("KelvinbarManualPopoverHeight", height);
        makeStore();
    }

    void expectHeight(double height) const { EXPECT_EQ(store->manualPopoverHeight().value(), height); }

    void expectShown(double stored, long long shown) {
        makeStoreOfHeight(stored);
        EXPECT_EQ(shownHeight(*store), shown) << stored;
    }
};

// Sampling rate

TEST_F(PanelActions, TheSamplingRateIsToggledFromMediumToFastAndBack) {
    EXPECT_EQ(rate(), SMCSamplingRate::medium);
    toggleSamplingRate(*store);
    EXPECT_EQ(rate(), SMCSamplingRate::fast);
    toggleSamplingRate(*store);
    EXPECT_EQ(rate(), SMCSamplingRate::medium);
}

TEST_F(PanelActions, AStoredFastRateIsToggledToMediumAndBack) {
    defaults.values.setText("KelvinbarSamplingRate", "fast");
    makeStore();
    toggleSamplingRate(*store);
    EXPECT_EQ(rate(), SMCSamplingRate::medium);
    EXPECT_EQ(defaults.text("KelvinbarSamplingRate"), "medium");
    toggleSamplingRate(*store);
    EXPECT_EQ(rate(), SMCSamplingRate::fast);
    EXPECT_EQ(defaults.text("KelvinbarSamplingRate"), "fast");
}

TEST_F(PanelActions, EveryToggleOfTheSamplingRateIsPosted) {
    toggleSamplingRate(*store);
    toggleSamplingRate(*store);
    EXPECT_EQ(postedNames(), (Names{"KelvinbarSamplingRateChanged", "KelvinbarSamplingRateChanged"}));
    EXPECT_EQ(postedUnder(kelvinbarSamplingRateChanged),
              (std::vector{SMCSamplingRate::fast, SMCSamplingRate::medium}));
}

TEST_F(PanelActions, TheSamplingRateLeavesTheOtherSettings) {
    toggleSamplingRate(*store);
    EXPECT_EQ(mode(), SMCWindowDisplayMode::fixed);
    EXPECT_EQ(store->manualPopoverHeight().value(), 690);
    EXPECT_EQ(defaults.writes, Names{"KelvinbarSamplingRate"});
}

// Display mode

TEST_F(PanelActions, TheDisplayModeIsToggledFromFixedToDynamicAndBack) {
    EXPECT_EQ(mode(), SMCWindowDisplayMode::fixed);
    toggleDisplayMode(*store);
    EXPECT_EQ(mode(), SMCWindowDisplayMode::dynamic);
    toggleDisplayMode(*store);
    EXPECT_EQ(mode(), SMCWindowDisplayMode::fixed);
}

TEST_F(PanelActions, AStoredDynamicModeIsToggledToFixedAndBack) {
    defaults.values.setText("KelvinbarWindowDisplayMode", "dynamic");
    makeStore();
    toggleDisplayMode(*store);
    EXPECT_EQ(mode(), SMCWindowDisplayMode::fixed);
    EXPECT_EQ(defaults.text("KelvinbarWindowDisplayMode"), "fixed");
    toggleDisplayMode(*store);
    EXPECT_EQ(mode(), SMCWindowDisplayMode::dynamic);
    EXPECT_EQ(defaults.text("KelvinbarWindowDisplayMode"), "dynamic");
}

TEST_F(PanelActions, EveryToggleOfTheDisplayModeIsPosted) {
    toggleDisplayMode(*store);
    toggleDisplayMode(*store);
    EXPECT_EQ(postedNames(), (Names{"KelvinbarDisplayModeChanged", "KelvinbarDisplayModeChanged"}));
}

TEST_F(PanelActions, TheDisplayModeLeavesTheOtherSettings) {
    toggleDisplayMode(*store);
    EXPECT_EQ(rate(), SMCSamplingRate::medium);
    EXPECT_EQ(store->manualPopoverHeight().value(), 690);
    EXPECT_EQ(defaults.writes, Names{"KelvinbarWindowDisplayMode"});
}

TEST_F(PanelActions, TheToolTipOfTheDisplayModeFollowsTheMode) {
    EXPECT_EQ(displayModeToolTip(mode()), "Keeps the window at the compact standard size.");
    toggleDisplayMode(*store);
    EXPECT_EQ(displayModeToolTip(mode()), "Expands only the window height to show more keys, limited by the "
                                          "current screen visible area.");
}

// Tool tips

TEST(PanelToolTips, TheSamplingRateTellsBothRates) {
    EXPECT_EQ(samplingRateToolTip, "On: fast 1s sampling. Off: medium 3s sampling.");
}

TEST(PanelToolTips, TheLoginItemTellsWhatAClickDoes) {
    EXPECT_EQ(loginItemToolTip({}, true), "Enable or disable Kelvinbar as a macOS login item.");
    EXPECT_EQ(loginItemToolTip({}, false),
              "Open Login Items in System Settings; automatic registration requires "
              "macOS 13 or newer.");
}

TEST(PanelToolTips, TheLoginItemIsCalledAsTheMachineCallsIt) {
    EXPECT_EQ(loginItemToolTip({.loginItem = "with the session"}, true), "with the session");
}

// Height

TEST_F(PanelHeight, TheStepsAreUnequal) {
    makeStore();
    increaseHeight(*store);
    expectHeight(786);
    decreaseHeight(*store);
    expectHeight(706);
    decreaseHeight(*store);
    expectHeight(626);
    increaseHeight(*store);
    expectHeight(722);
}

TEST_F(PanelHeight, ItDecreasesToTheLeastHeightAndStaysThere) {
    makeStore();
    decreaseHeight(*store);
    expectHeight(610);
    decreaseHeight(*store);
    expectHeight(560);
    decreaseHeight(*store);
    expectHeight(560);
}

TEST_F(PanelHeight, ItIncreasesToTheGreatestHeightAndStaysThere) {
    makeStore();
    for (const double height : {786, 882, 978, 1074, 1170, 1266, 1362, 1400, 1400}) {
        increaseHeight(*store);
        expectHeight(height);
    }
}

TEST_F(PanelHeight, StepsFromTheLimitsAreWhole) {
    makeStoreOfHeight(1400);
    decreaseHeight(*store);
    expectHeight(1320);
    makeStoreOfHeight(560);
    increaseHeight(*store);
    expectHeight(656);
}

TEST_F(PanelHeight, AResetGivesTheStandardHeight) {
    for (const double height : {560.0, 690.0, 786.0, 1400.0, 3.0, 1e300}) {
        makeStoreOfHeight(height);
        resetHeight(*store);
        expectHeight(690);
    }
}

TEST_F(PanelHeight, EveryClickIsPostedAlsoAtTheLimits) {
    makeStoreOfHeight(1400);
    increaseHeight(*store);
    decreaseHeight(*store);
    resetHeight(*store);
    resetHeight(*store);
    EXPECT_EQ(postedUnder(kelvinbarManualSizeChanged),
              (std::vector<ManualSizeChange>{{462, 1400}, {462, 1320}, {462, 690}, {462, 690}}));
}

TEST_F(PanelHeight, ANewHeightIsStored) {
    makeStore();
    increaseHeight(*store);
    EXPECT_EQ(defaults.number("KelvinbarManualPopoverHeight"), 786);
    decreaseHeight(*store);
    EXPECT_EQ(defaults.number("KelvinbarManualPopoverHeight"), 706);
    resetHeight(*store);
    EXPECT_EQ(defaults.number("KelvinbarManualPopoverHeight"), 690);
}

TEST_F(PanelHeight, AStepFromAnAbsurdStoredHeightEndsAtALimit) {
    for (const double height : {1e300, infinity}) {
        makeStoreOfHeight(height);
        decreaseHeight(*store);
        expectHeight(1400);
        makeStoreOfHeight(height);
        increaseHeight(*store);
        expectHeight(1400);
    }
    makeStoreOfHeight(5e-324);
    decreaseHeight(*store);
    expectHeight(560);
}

TEST_F(PanelHeight, ItIsShownInWholePoints) {
    makeStore();
    EXPECT_EQ(shownHeight(*store), 690);
    increaseHeight(*store);
    EXPECT_EQ(shownHeight(*store), 786);
    expectShown(560, 560);
    expectShown(812.25, 812);
    expectShown(0.25, 0);
}

TEST_F(PanelHeight, AStoredHeightBeyondTheLimitsIsShownAsItIs) {
    expectShown(2000, 2000);
    expectShown(300, 300);
    expectShown(999'998, 999'998);
}

TEST_F(PanelHeight, AnAbsurdStoredHeightIsShownAsAGreatNumber) {
    expectShown(1e7, 999'999);
    expectShown(1e19, 999'999);
    expectShown(1e300, 999'999);
    expectShown(infinity, 999'999);
}

TEST_F(PanelHeight, AnUnusableStoredHeightIsShownAsTheStandard) {
    expectShown(0, 690);
    expectShown(-1e300, 690);
    expectShown(-infinity, 690);
    expectShown(std::numeric_limits<double>::quiet_NaN(), 690);
}

} // namespace
} // namespace kelvinbar::panel_actions_test
