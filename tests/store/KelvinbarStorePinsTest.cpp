#include "tests/fakes/FakeSensorSource.h"
#include "tests/store/StoreFixture.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::kelvinbar_store_pins_test {

namespace {

using fakes::readingOf;
using fakes::setKeys;
using fakes::StoreFixture;
using fakes::temperatureKey;
using fakes::wholeNumberKey;

using Keys = std::vector<std::string>;

struct StorePins : StoreFixture {
    void SetUp() override {
        makeRefreshedStore({temperatureKey("TC0P", 48), temperatureKey("TC1C", 41),
                            wholeNumberKey("F0Ac", 1200), temperatureKey("TG0D", 50)});
        forgetHistory();
    }

    [[nodiscard]] const Keys& pins() const { return store->menuBarKeys().value(); }

    void toggle(std::string key) const { store->toggleMenuBarReading(readingOf(std::move(key))); }

    [[nodiscard]] std::vector<MenuBarReadingChange> menuBarPosts() const {
        return postedUnder(kelvinbarMenuBarReadingChanged);
    }
};

struct StoreMenuBar : StorePins {};

/// A store over a source that names its own readings.
struct StoreSelfNamedKeys : StoreFixture {
    const std::string processor = "k10temp-pci-00c3/temp1";
    const std::string drive = "nvme-pci-0100/temp1";
    const std::shared_ptr<fakes::FakeSensorSource> source = std::make_shared<fakes::FakeSensorSource>();

    void SetUp() override {
        source->readings = {temperature(processor, "Tctl", 48), temperature(drive, "Composite", 41)};
        machineOfStore.source = source;
        makeStore();
        finishPasses();
    }

    static RawReading temperature(const std::string& key, const std::string& name, int degrees) {
        return {.key = key,
                .type = "hwmon",
                .value = std::to_string(degrees),
                .numericValue = degrees,
                .raw = std::to_string(1000 * degrees),
                .name = name,
                .category = "CPU",
                .unit = "°C"};
    }
};

// Pinning

TEST_F(StorePins, ASeventhPinReplacesTheOldest) {
    for (const std::string key : {"K1", "K2", "K3", "K4", "K5", "K6"}) toggle(key);
    EXPECT_EQ(pins(), (Keys{"K1", "K2", "K3", "K4", "K5", "K6"}));
    toggle("K7");
    EXPECT_EQ(pins(), (Keys{"K2", "K3", "K4", "K5", "K6", "K7"}));
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), (TextList{"K2", "K3", "K4", "K5", "K6", "K7"}));
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), "K2");
}

TEST_F(StorePins, TogglingAPinnedKeyRemovesItAndTogglingItAgainAppendsIt) {
    store->setMenuBarKeys({"TC0P", "TC1C", "F0Ac"});
    toggle("TC0P");
    EXPECT_EQ(pins(), (Keys{"TC1C", "F0Ac"}));
    toggle("TC0P");
    EXPECT_EQ(pins(), (Keys{"TC1C", "F0Ac", "TC0P"}));
}

TEST_F(StorePins, UnpinningOneOfSixKeepsTheOthers) {
    store->setMenuBarKeys({"K1", "K2", "K3", "K4", "K5", "K6"});
    toggle("K4");
    EXPECT_EQ(pins(), (Keys{"K1", "K2", "K3", "K5", "K6"}));
}

TEST_F(StorePins, TheToggledKeyIsTrimmed) {
    toggle(" TC0P\n");
    EXPECT_EQ(pins(), Keys{"TC0P"});
    toggle("\tTC0P ");
    EXPECT_EQ(pins(), Keys{});
}

TEST_F(StorePins, TogglingAKeyOfSpacesDoesNothing) {
    store->setMenuBarKeys({"TC0P"});
    forgetHistory();
    toggle(" \n");
    toggle("");
    EXPECT_EQ(pins(), Keys{"TC0P"});
    EXPECT_EQ(defaults.writes, Keys{});
    EXPECT_EQ(posted.size(), 0U);
}

TEST_F(StorePins, AListWithADuplicateIsStoredWithoutItAndPostedOnce) {
    store->setMenuBarKeys({"TC0P", "TC1C", " TC0P "});
    EXPECT_EQ(pins(), (Keys{"TC0P", "TC1C"}));
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), (TextList{"TC0P", "TC1C"}));
    EXPECT_EQ(defaults.writes, (Keys{"KelvinbarMenuBarKeys", "KelvinbarMenuBarKey"}));
    EXPECT_EQ(posted.size(), 1U);
}

TEST_F(StorePins, AListIsCleanedAndLimited) {
    store->setMenuBarKeys({" K1", "", "K2", "K3", "K4", "K5", "K6", "K7"});
    EXPECT_EQ(pins(), (Keys{"K1", "K2", "K3", "K4", "K5", "K6"}));
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), "K1");
}

TEST_F(StorePins, EmptyingTheListRemovesBothStoredForms) {
    store->setMenuBarKeys({"TC0P"});
    forgetHistory();
    store->setMenuBarKeys({});
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), std::nullopt);
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), std::nullopt);
    EXPECT_EQ(defaults.writes, (Keys{"-KelvinbarMenuBarKeys", "-KelvinbarMenuBarKey"}));
    EXPECT_EQ(menuBarPosts().size(), 1U);
}

TEST_F(StorePins, UnpinningTheLastKeyRemovesBothStoredForms) {
    toggle("TC0P");
    toggle("TC0P");
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), std::nullopt);
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), std::nullopt);
}

TEST_F(StorePins, AListOfSpacesCountsAsEmpty) {
    store->setMenuBarKeys({"TC0P"});
    store->setMenuBarKeys({"", " "});
    EXPECT_EQ(pins(), Keys{});
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), std::nullopt);
}

TEST_F(StorePins, SurviveARestart) {
    store->setMenuBarKeys({"F0Ac", "TC0P"});
    makeStore();
    EXPECT_EQ(pins(), (Keys{"F0Ac", "TC0P"}));
}

// Title and tool tip

TEST_F(StoreMenuBar, WithoutPinsTheTitleIsEmptyAndTheToolTipExplainsHowToPin) {
    EXPECT_EQ(store->menuBarReadings(), std::vector<SMCReading>{});
    EXPECT_EQ(store->menuBarTitle(), "");
    EXPECT_EQ(store->menuBarToolTip(), "Kelvinbar - double-click up to 6 sensors to show them here");
}

TEST_F(StoreMenuBar, ShowsThePinnedReadingsInPinOrder) {
    store->setMenuBarKeys({"TC0P", "F0Ac"});
    EXPECT_EQ(store->menuBarTitle(), " 48°  1200rpm");
    EXPECT_EQ(store->menuBarToolTip(), "Kelvinbar • TC0P • CPU Proximity: 48 °C  |  F0Ac • Fan 0: 1200 RPM");
    store->setMenuBarKeys({"F0Ac", "TC0P"});
    EXPECT_EQ(store->menuBarTitle(), " 1200rpm  48°");
    EXPECT_EQ(store->menuBarToolTip(), "Kelvinbar • F0Ac • Fan 0: 1200 RPM  |  TC0P • CPU Proximity: 48 °C");
}

TEST_F(StoreMenuBar, APinnedKeyWithoutADisplayableReadingShowsNothingButStaysPinned) {
    store->setMenuBarKeys({"TC0P", "TC9C", "F0Ac"});
    EXPECT_EQ(pins(), (Keys{"TC0P", "TC9C", "F0Ac"}));
    EXPECT_EQ(store->menuBarReadings().size(), 2U);
    EXPECT_EQ(store->menuBarTitle(), " 48°  1200rpm");
    EXPECT_EQ(store->menuBarToolTip(), "Kelvinbar • TC0P • CPU Proximity: 48 °C  |  F0Ac • Fan 0: 1200 RPM");
}

TEST_F(StoreMenuBar, KeysAreMatchedCaseSensitively) {
    store->setMenuBarKeys({"tc0p", "TC0p"});
    EXPECT_EQ(store->menuBarTitle(), "");
}

TEST_F(StoreMenuBar, TheNotificationCarriesTitleAndToolTip) {
    toggle("TC0P");
    ASSERT_EQ(posted.size(), 1U);
    ASSERT_EQ(posted.front().name, "KelvinbarMenuBarReadingChanged");
    EXPECT_EQ(menuBarPosts().front(),
              (MenuBarReadingChange{.title = " 48°", .toolTip = "Kelvinbar • TC0P • CPU Proximity: 48 °C"}));
}

TEST_F(StoreMenuBar, IsPostedAfterThePinsAreStored) {
    TextList storedWhenPosted;
    Keys pinsWhenPosted;
    const Registration registration =
        notifications.addObserver(kelvinbarMenuBarReadingChanged, {[&](const auto& /*change*/) {
                                      storedWhenPosted =
                                          defaults.textList("KelvinbarMenuBarKeys").value_or(TextList{});
                                      pinsWhenPosted = pins();
                                  }});
    toggle("TC0P");
    EXPECT_EQ(storedWhenPosted, TextList{"TC0P"});
    EXPECT_EQ(pinsWhenPosted, Keys{"TC0P"});
}

TEST_F(StoreMenuBar, TwoRefreshesWithIdenticalResultsPostOnce) {
    store->setMenuBarKeys({"TC0P"});
    forgetHistory();
    setKeys(driver(), {temperatureKey("TC0P", 49)});
    refresh();
    refresh();
    refreshMenuBarOnly();
    EXPECT_EQ(menuBarPosts().size(), 1U);
}

TEST_F(StoreMenuBar, TheFirstRefreshWithoutPinsPostsTheToolTip) {
    makeStore();
    forgetHistory();
    finishPasses();
    ASSERT_EQ(menuBarPosts().size(), 1U);
    EXPECT_EQ(menuBarPosts().front(),
              (MenuBarReadingChange{
                  .title = "", .toolTip = "Kelvinbar - double-click up to 6 sensors to show them here"}));
    refresh();
    EXPECT_EQ(menuBarPosts().size(), 1U);
}

TEST_F(StoreMenuBar, AChangeOfAnUnpinnedReadingPostsNothing) {
    store->setMenuBarKeys({"TC0P"});
    forgetHistory();
    setKeys(driver(), {temperatureKey("TC0P", 48), temperatureKey("TC1C", 60), wholeNumberKey("F0Ac", 900),
                       temperatureKey("TG0D", 70)});
    refresh();
    EXPECT_EQ(posted.size(), 0U);
}

TEST_F(StoreMenuBar, AChangeOfTheToolTipAlonePosts) {
    // Both values are cut to the same twelve characters of the title.
    setKeys(driver(), {fakes::textKey("REV ", "1234567890123"), fakes::textKey("RVBF", "12345678901234")});
    refresh(true);
    store->setMenuBarKeys({"RVBF"});
    forgetHistory();
    setKeys(driver(), {fakes::textKey("RVBF", "12345678901235")});
    refresh();
    ASSERT_EQ(menuBarPosts().size(), 1U);
    EXPECT_EQ(menuBarPosts().front().title, " 123456789012");
}

TEST_F(StoreMenuBar, ReorderingPinsWithoutReadingsPostsNothing) {
    store->setMenuBarKeys({"K1", "K2"});
    forgetHistory();
    store->setMenuBarKeys({"K2", "K1"});
    EXPECT_EQ(posted.size(), 0U);
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), "K2");
}

// Keys of sources that name their own readings

TEST_F(StoreSelfNamedKeys, CanBePinned) {
    store->toggleMenuBarReading(readingOf(processor));
    EXPECT_EQ(store->menuBarKeys().value(), Keys{processor});
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), TextList{processor});
    EXPECT_EQ(store->menuBarTitle(), " 48°");
    EXPECT_EQ(store->menuBarToolTip(), "Kelvinbar • k10temp-pci-00c3/temp1 • Tctl: 48 °C");
}

TEST_F(StoreSelfNamedKeys, StayPinnedAndHiddenWhileTheyAreRead) {
    store->setMenuBarKeys({processor});
    store->hideReading(readingOf(drive));
    refresh(true);
    EXPECT_EQ(store->menuBarKeys().value(), Keys{processor});
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{drive});
    EXPECT_EQ(postedUnder(kelvinbarDisplayModeChanged).back().visibleReadings, 1U);
}

TEST_F(StoreSelfNamedKeys, AreUnpinnedAndShownAgainWhenTheyAreGone) {
    store->setMenuBarKeys({processor});
    store->hideReading(readingOf(drive));
    source->readings = {temperature("coretemp-isa-0000/temp1", "Package", 50)};
    refresh(true);
    EXPECT_EQ(store->menuBarKeys().value(), Keys{});
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{});
}

TEST_F(StoreSelfNamedKeys, APinnedOneAloneIsReadForTheMenuBar) {
    store->setMenuBarKeys({processor});
    source->readings = {temperature(processor, "Tctl", 60), temperature(drive, "Composite", 70)};
    source->requests.clear();
    refreshMenuBarOnly();
    EXPECT_EQ(source->requests, std::vector<Keys>{Keys{processor}});
    EXPECT_EQ(readingsText(store->readings().value()), "k10temp-pci-00c3/temp1=60 nvme-pci-0100/temp1=41");
}

TEST_F(StoreSelfNamedKeys, AreLoadedAsPinsAndHiddenKeys) {
    defaults.values.setTextList("KelvinbarMenuBarKeys", {processor});
    defaults.values.setTextList("KelvinbarHiddenKeys", {drive});
    makeStore();
    finishPasses();
    EXPECT_EQ(store->menuBarKeys().value(), Keys{processor});
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{drive});
}

} // namespace
} // namespace kelvinbar::kelvinbar_store_pins_test
