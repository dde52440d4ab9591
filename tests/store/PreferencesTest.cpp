#include "store/Preferences.h"

#include "tests/fakes/RecordingUserDefaults.h"

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::preferences_test {

namespace {

using Keys = std::vector<std::string>;

struct LoadPreferences : testing::Test {
    fakes::RecordingUserDefaults defaults;

    [[nodiscard]] InMemoryUserDefaults& stored() { return defaults.values; }

    [[nodiscard]] Keys loadedMenuBarKeys() const { return loadPreferences(defaults).menuBarKeys; }

    [[nodiscard]] KeySet loadedHiddenKeys() const { return loadPreferences(defaults).hiddenKeys; }
};

struct StorePreferences : LoadPreferences {};

TEST_F(LoadPreferences, WithoutStoredValuesTheDefaultsApply) {
    const Preferences preferences = loadPreferences(defaults);
    EXPECT_EQ(preferences.samplingRate, SMCSamplingRate::medium);
    EXPECT_EQ(preferences.displayMode, SMCWindowDisplayMode::fixed);
    EXPECT_EQ(preferences.manualPopoverSize.width, 462);
    EXPECT_EQ(preferences.manualPopoverSize.height, 690);
    EXPECT_EQ(preferences.menuBarKeys, Keys{});
    EXPECT_EQ(preferences.hiddenKeys, KeySet{});
}

TEST_F(LoadPreferences, StoredValuesApply) {
    stored().setText("KelvinbarSamplingRate", "fast");
    stored().setText("KelvinbarWindowDisplayMode", "dynamic");
    stored().setNumber("KelvinbarManualPopoverWidth", 500.5);
    stored().setNumber("KelvinbarManualPopoverHeight", 720.25);
    stored().setTextList("KelvinbarMenuBarKeys", {"TC0P", "F0Ac"});
    stored().setTextList("KelvinbarHiddenKeys", {"VC0C", "B0AV"});
    const Preferences preferences = loadPreferences(defaults);
    EXPECT_EQ(preferences.samplingRate, SMCSamplingRate::fast);
    EXPECT_EQ(preferences.displayMode, SMCWindowDisplayMode::dynamic);
    EXPECT_EQ(preferences.manualPopoverSize.width, 500.5);
    EXPECT_EQ(preferences.manualPopoverSize.height, 720.25);
    EXPECT_EQ(preferences.menuBarKeys, (Keys{"TC0P", "F0Ac"}));
    EXPECT_EQ(preferences.hiddenKeys, (KeySet{"B0AV", "VC0C"}));
}

TEST_F(LoadPreferences, NothingIsWritten) {
    stored().setText("KelvinbarSamplingRate", "often");
    stored().setNumber("KelvinbarManualPopoverWidth", -1);
    stored().setTextList("KelvinbarMenuBarKeys", {" TC0P ", "TC0P"});
    stored().setTextList("KelvinbarHiddenKeys", {" TC0P ", ""});
    EXPECT_EQ(loadPreferences(defaults).menuBarKeys, Keys{"TC0P"});
    EXPECT_EQ(defaults.writes, std::vector<std::string>{});
}

TEST_F(LoadPreferences, AnUnknownRateOrModeReadsAsTheDefault) {
    for (const std::string text : {"", "slow", "Fast", " fast", "fast ", "DYNAMIC", "dynamic\n"}) {
        SCOPED_TRACE(text);
        stored().setText("KelvinbarSamplingRate", text);
        stored().setText("KelvinbarWindowDisplayMode", text);
        EXPECT_EQ(loadPreferences(defaults).samplingRate, SMCSamplingRate::medium);
        EXPECT_EQ(loadPreferences(defaults).displayMode, SMCWindowDisplayMode::fixed);
    }
}

TEST_F(LoadPreferences, AValueOfAnotherTypeReadsAsTheDefault) {
    stored().setNumber("KelvinbarSamplingRate", 1);
    stored().setTextList("KelvinbarWindowDisplayMode", {"dynamic"});
    stored().setText("KelvinbarManualPopoverWidth", "500");
    stored().setTextList("KelvinbarManualPopoverHeight", {"700"});
    stored().setNumber("KelvinbarMenuBarKeys", 2);
    stored().setTextList("KelvinbarMenuBarKey", {"TC0P"});
    stored().setText("KelvinbarHiddenKeys", "TC0P");
    const Preferences preferences = loadPreferences(defaults);
    EXPECT_EQ(preferences.samplingRate, SMCSamplingRate::medium);
    EXPECT_EQ(preferences.displayMode, SMCWindowDisplayMode::fixed);
    EXPECT_EQ(preferences.manualPopoverSize.width, 462);
    EXPECT_EQ(preferences.manualPopoverSize.height, 690);
    EXPECT_EQ(preferences.menuBarKeys, Keys{});
    EXPECT_EQ(preferences.hiddenKeys, KeySet{});
}

TEST_F(LoadPreferences, ASizeHasToBeGreaterThanZero) {
    const std::vector<std::pair<double, PopoverSize>> cases{
        {0, {.width = 462, .height = 690}},
        {-0.5, {.width = 462, .height = 690}},
        {-500, {.width = 462, .height = 690}},
        {std::numeric_limits<double>::quiet_NaN(), {.width = 462, .height = 690}},
        {0.5, {.width = 0.5, .height = 0.5}},
    };
    for (const auto& [number, size] : cases) {
        SCOPED_TRACE(number);
        stored().setNumber("KelvinbarManualPopoverWidth", number);
        stored().setNumber("KelvinbarManualPopoverHeight", number);
        EXPECT_EQ(loadPreferences(defaults).manualPopoverSize.width, size.width);
        EXPECT_EQ(loadPreferences(defaults).manualPopoverSize.height, size.height);
    }
}

TEST_F(LoadPreferences, AStoredSizeIsNotKeptToItsBounds) {
    stored().setNumber("KelvinbarManualPopoverHeight", 2000);
    EXPECT_EQ(loadPreferences(defaults).manualPopoverSize.height, 2000);
    stored().setNumber("KelvinbarManualPopoverHeight", 10);
    EXPECT_EQ(loadPreferences(defaults).manualPopoverSize.height, 10);
    EXPECT_EQ(loadPreferences(defaults).manualPopoverSize.width, 462);
}

TEST_F(LoadPreferences, EightPinnedKeysLoadAsTheFirstSixDistinctNonEmptyOnes) {
    stored().setTextList("KelvinbarMenuBarKeys",
                         {"K1", " ", "K2", "K1 ", "K3", "K4", "K5", "K6", "K7", "K8"});
    EXPECT_EQ(loadedMenuBarKeys(), (Keys{"K1", "K2", "K3", "K4", "K5", "K6"}));
    stored().setTextList("KelvinbarMenuBarKeys", {"K8", "K7", "K6", "K5", "K4", "K3", "K2", "K1"});
    EXPECT_EQ(loadedMenuBarKeys(), (Keys{"K8", "K7", "K6", "K5", "K4", "K3"}));
}

TEST_F(LoadPreferences, ASinglePinnedKeyOfAnOlderVersionIsTrimmed) {
    stored().setText("KelvinbarMenuBarKey", "  TC0P \n");
    EXPECT_EQ(loadedMenuBarKeys(), Keys{"TC0P"});
}

TEST_F(LoadPreferences, ASinglePinnedKeyOfSpacesPinsNothing) {
    for (const std::string text : {"", "  ", "\n\t "}) {
        stored().setText("KelvinbarMenuBarKey", text);
        EXPECT_EQ(loadedMenuBarKeys(), Keys{});
    }
}

TEST_F(LoadPreferences, TheListOfPinnedKeysTakesPrecedenceOverTheSingleKey) {
    stored().setText("KelvinbarMenuBarKey", "TC0P");
    stored().setTextList("KelvinbarMenuBarKeys", {"F0Ac", "TG0D"});
    EXPECT_EQ(loadedMenuBarKeys(), (Keys{"F0Ac", "TG0D"}));
}

TEST_F(LoadPreferences, AnEmptyListOfPinnedKeysTakesPrecedenceOverTheSingleKey) {
    stored().setText("KelvinbarMenuBarKey", "TC0P");
    stored().setTextList("KelvinbarMenuBarKeys", {});
    EXPECT_EQ(loadedMenuBarKeys(), Keys{});
    stored().setTextList("KelvinbarMenuBarKeys", {" "});
    EXPECT_EQ(loadedMenuBarKeys(), Keys{});
}

TEST_F(LoadPreferences, APinnedListOfAnotherTypeIsReplacedByTheSingleKey) {
    stored().setText("KelvinbarMenuBarKey", "TC0P");
    stored().setText("KelvinbarMenuBarKeys", "F0Ac");
    EXPECT_EQ(loadedMenuBarKeys(), Keys{"TC0P"});
    stored().setNumber("KelvinbarMenuBarKeys", 3);
    EXPECT_EQ(loadedMenuBarKeys(), Keys{"TC0P"});
}

TEST_F(LoadPreferences, HiddenKeysAreCleanedButNotLimited) {
    stored().setTextList("KelvinbarHiddenKeys",
                         {" K1 ", "K1", "", "\n", "K2", "K3", "K4", "K5", "K6", "K7", "k7"});
    EXPECT_EQ(loadedHiddenKeys(), (KeySet{"K1", "K2", "K3", "K4", "K5", "K6", "K7", "k7"}));
}

TEST_F(StorePreferences, RateAndModeAreStoredByTheirRawValues) {
    storeSamplingRate(defaults, SMCSamplingRate::fast);
    storeDisplayMode(defaults, SMCWindowDisplayMode::dynamic);
    EXPECT_EQ(defaults.text("KelvinbarSamplingRate"), "fast");
    EXPECT_EQ(defaults.text("KelvinbarWindowDisplayMode"), "dynamic");
    storeSamplingRate(defaults, SMCSamplingRate::medium);
    storeDisplayMode(defaults, SMCWindowDisplayMode::fixed);
    EXPECT_EQ(defaults.text("KelvinbarSamplingRate"), "medium");
    EXPECT_EQ(defaults.text("KelvinbarWindowDisplayMode"), "fixed");
}

TEST_F(StorePreferences, TheSizeIsStoredAsTwoNumbers) {
    storeManualPopoverSize(defaults, {.width = 462, .height = 700.5});
    EXPECT_EQ(defaults.number("KelvinbarManualPopoverWidth"), 462);
    EXPECT_EQ(defaults.number("KelvinbarManualPopoverHeight"), 700.5);
}

TEST_F(StorePreferences, PinnedKeysAreStoredInPinOrderAndTheFirstByItself) {
    storeMenuBarKeys(defaults, {"TG0D", "F0Ac"});
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), (TextList{"TG0D", "F0Ac"}));
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), "TG0D");
}

TEST_F(StorePreferences, NoPinnedKeysRemoveBothForms) {
    storeMenuBarKeys(defaults, {"TG0D", "F0Ac"});
    storeMenuBarKeys(defaults, {});
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), std::nullopt);
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), std::nullopt);
}

TEST_F(StorePreferences, HiddenKeysAreStoredAscendingInCodeUnitOrder) {
    storeHiddenKeys(defaults, {"TC0p", "TC0P", "B0AV", "V9AA", "V12R", "a"});
    EXPECT_EQ(defaults.textList("KelvinbarHiddenKeys"),
              (TextList{"B0AV", "TC0P", "TC0p", "V12R", "V9AA", "a"}));
}

TEST_F(StorePreferences, NoHiddenKeysRemoveTheEntry) {
    storeHiddenKeys(defaults, {"TC0P"});
    storeHiddenKeys(defaults, {});
    EXPECT_EQ(defaults.textList("KelvinbarHiddenKeys"), std::nullopt);
    EXPECT_EQ(defaults.writes.back(), "-KelvinbarHiddenKeys");
}

TEST_F(StorePreferences, WhatIsStoredIsLoaded) {
    storeSamplingRate(defaults, SMCSamplingRate::fast);
    storeDisplayMode(defaults, SMCWindowDisplayMode::dynamic);
    storeManualPopoverSize(defaults, {.width = 462, .height = 812.5});
    storeMenuBarKeys(defaults, {"TG0D", "F0Ac"});
    storeHiddenKeys(defaults, {"VC0C"});
    const Preferences preferences = loadPreferences(defaults);
    EXPECT_EQ(preferences.samplingRate, SMCSamplingRate::fast);
    EXPECT_EQ(preferences.displayMode, SMCWindowDisplayMode::dynamic);
    EXPECT_EQ(preferences.manualPopoverSize.height, 812.5);
    EXPECT_EQ(preferences.menuBarKeys, (Keys{"TG0D", "F0Ac"}));
    EXPECT_EQ(preferences.hiddenKeys, KeySet{"VC0C"});
}

TEST(SanitizedHiddenKeys, KeysAreTrimmedAndEmptyOnesDropped) {
    EXPECT_EQ(sanitizedHiddenKeys({" TC0P\n", "", " \t", "TC0P", "tc0p", "a longer key", "\u00A0F0Ac"}),
              (KeySet{"F0Ac", "TC0P", "a longer key", "tc0p"}));
    EXPECT_EQ(sanitizedHiddenKeys({}), KeySet{});
}

} // namespace
} // namespace kelvinbar::preferences_test
