#include "tests/store/StoreFixture.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

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

    [[nodiscard]] std::vector<Notification> menuBarPosts() const {
        return postedUnder(kelvinbarMenuBarReadingChanged);
    }
};

struct StoreMenuBar : StorePins {};

// Pinning

TEST_F(StorePins, ASeventhPinGivesTheOldestUp) {
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

TEST_F(StorePins, TogglingABlankKeyDoesNothing) {
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

TEST_F(StorePins, AListOfBlanksCountsAsEmpty) {
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

TEST_F(StoreMenuBar, WithoutPinsTheTitleIsEmptyAndTheToolTipTellsHowToPin) {
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
    EXPECT_EQ(posted.front().name, "KelvinbarMenuBarReadingChanged");
    EXPECT_FALSE(posted.front().object.has_value());
    EXPECT_EQ(posted.front().userInfo,
              (Dictionary{{"title", std::string(" 48°")},
                          {"tooltip", std::string("Kelvinbar • TC0P • CPU Proximity: 48 °C")}}));
}

TEST_F(StoreMenuBar, IsPostedAfterThePinsAreStored) {
    TextList storedWhenPosted;
    Keys pinsWhenPosted;
    const Registration registration =
        notifications.addObserver(kelvinbarMenuBarReadingChanged, [&](const Notification& /*notification*/) {
            storedWhenPosted = defaults.textList("KelvinbarMenuBarKeys").value_or(TextList{});
            pinsWhenPosted = pins();
        });
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
    EXPECT_EQ(
        menuBarPosts().front().userInfo,
        (Dictionary{{"title", std::string()},
                    {"tooltip", std::string("Kelvinbar - double-click up to 6 sensors to show them here")}}));
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
    EXPECT_EQ(menuBarPosts().front().userInfo.textOr("title", "none"), " 123456789012");
}

TEST_F(StoreMenuBar, ReorderingPinsWithoutReadingsPostsNothing) {
    store->setMenuBarKeys({"K1", "K2"});
    forgetHistory();
    store->setMenuBarKeys({"K2", "K1"});
    EXPECT_EQ(posted.size(), 0U);
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), "K2");
}

} // namespace

} // namespace kelvinbar
