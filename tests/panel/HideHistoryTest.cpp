#include "panel/HideHistory.h"

#include "tests/store/StoreFixture.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::hide_history_test {

namespace {

using fakes::StoreFixture;
using fakes::temperatureKey;
using Keys = std::vector<std::string>;

struct HideHistoryTest : StoreFixture {
    HideHistory history;

    void SetUp() override {
        makeRefreshedStore({temperatureKey("TC0P", 48), temperatureKey("TC1C", 41),
                            temperatureKey("TC2C", 42), temperatureKey("TC10", 43),
                            temperatureKey("TG0D", 50)});
    }

    void hide(const std::string& key) {
        SMCReading reading;
        reading.key = key;
        history.hide(*store, reading);
    }

    [[nodiscard]] const KeySet& hidden() const { return store->hiddenKeys().value(); }

    [[nodiscard]] const Keys& pins() const { return store->menuBarKeys().value(); }
};

TEST_F(HideHistoryTest, UndoShowsTheReadingHiddenLast) {
    hide("TC0P");
    hide("TG0D");
    history.undo(*store);
    EXPECT_EQ(hidden(), KeySet{"TC0P"});
    history.undo(*store);
    EXPECT_EQ(hidden(), KeySet{});
}

TEST_F(HideHistoryTest, UndoWithoutAHiddenReadingChangesNothing) {
    forgetHistory();
    history.undo(*store);
    EXPECT_EQ(defaults.writes, Keys{});
}

TEST_F(HideHistoryTest, UndoPinsWhereItWasPinned) {
    store->setMenuBarKeys({"TC0P", "TC1C", "TG0D"});
    hide("TC1C");
    hide("TC0P");
    EXPECT_EQ(pins(), Keys{"TG0D"});
    history.undo(*store);
    history.undo(*store);
    EXPECT_EQ(pins(), (Keys{"TC0P", "TC1C", "TG0D"}));
}

TEST_F(HideHistoryTest, UndoPinsAtTheEndWhereFewerAreLeft) {
    store->setMenuBarKeys({"TC0P", "TC1C"});
    hide("TC1C");
    store->setMenuBarKeys({});
    history.undo(*store);
    EXPECT_EQ(pins(), Keys{"TC1C"});
}

TEST_F(HideHistoryTest, UndoTakesNoOtherPinsPlace) {
    store->setMenuBarKeys({"TC0P"});
    hide("TC0P");
    const Keys six{"K1", "K2", "K3", "K4", "K5", "K6"};
    store->setMenuBarKeys(six);
    history.undo(*store);
    EXPECT_EQ(pins(), six);
    EXPECT_EQ(hidden(), KeySet{});
}

TEST_F(HideHistoryTest, UndoPinsNothingThatWasNotPinned) {
    hide("TC0P");
    history.undo(*store);
    EXPECT_EQ(pins(), Keys{});
}

TEST_F(HideHistoryTest, WhatWasShownAgainIsNotUndone) {
    store->setMenuBarKeys({"TC0P"});
    hide("TC0P");
    hide("TC1C");
    store->showReading("TC1C");
    history.undo(*store);
    EXPECT_EQ(hidden(), KeySet{});
    EXPECT_EQ(pins(), Keys{"TC0P"});
}

TEST_F(HideHistoryTest, HiddenReadingsAreInTheOrderOfTheirNames) {
    for (const char* const key : {"TG0D", "TC2C", "TC1C"}) hide(key);
    Keys keys;
    for (const SMCReading* const reading : hiddenReadings(*store)) keys.push_back(reading->key);
    EXPECT_EQ(keys, (Keys{"TC1C", "TC2C", "TG0D"}));
}

} // namespace
} // namespace kelvinbar::hide_history_test
