#include "store/KeyContinuity.h"

#include "tests/fakes/RecordingUserDefaults.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::key_continuity_test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Keys = std::map<std::string, std::string>;

constexpr std::string_view placesEntry = "KelvinbarKeyPlaces";
constexpr std::string_view carriedOverEntry = "KelvinbarKeysCarriedOver";

class KeyContinuityTest : public testing::Test {
  protected:
    fakes::RecordingUserDefaults defaults;
    KeyContinuity continuity{defaults};

    /// The state after the program has been started again.
    [[nodiscard]] KeyContinuity restarted() { return KeyContinuity(defaults); }

    [[nodiscard]] std::optional<TextList> storedPlaces() const { return defaults.textList(placesEntry); }
};

// Keys of version 0.1

TEST_F(KeyContinuityTest, FormerKeysAreWantedUntilTheyWereCarriedOver) {
    EXPECT_TRUE(continuity.needsFormerKeys());
    continuity.learn({.places = {}, .formerKeys = Keys{{"TC0T", "cpu/temp1"}}});
    EXPECT_TRUE(continuity.needsFormerKeys());
    continuity.remember({}, {});
    EXPECT_FALSE(continuity.needsFormerKeys());
    EXPECT_FALSE(restarted().needsFormerKeys());
}

TEST_F(KeyContinuityTest, AFormerKeyBecomesTheKeyOfToday) {
    continuity.learn({.places = {}, .formerKeys = Keys{{"TC0T", "cpu/temp1"}}});
    EXPECT_EQ(continuity.currentKey("TC0T"), "cpu/temp1");
}

TEST_F(KeyContinuityTest, AKeyThatNoOtherSensorHadIsKept) {
    continuity.learn({.places = {}, .formerKeys = Keys{{"TC0T", "cpu/temp1"}}});
    EXPECT_EQ(continuity.currentKey("TC0P"), "TC0P");
    EXPECT_EQ(continuity.currentKey("cpu/temp1"), "cpu/temp1");
    EXPECT_EQ(continuity.currentKey(""), "");
}

TEST_F(KeyContinuityTest, AFormerKeyIsLeftAloneOnceKeysWereCarriedOver) {
    const KeyHistory history{.places = {}, .formerKeys = Keys{{"TC0T", "cpu/temp1"}}};
    continuity.learn(history);
    continuity.remember({}, {});
    EXPECT_EQ(continuity.currentKey("TC0T"), "TC0T");
    KeyContinuity later = restarted();
    later.learn(history);
    EXPECT_EQ(later.currentKey("TC0T"), "TC0T");
}

TEST_F(KeyContinuityTest, ThatKeysWereCarriedOverIsStoredOnceAndWithoutAnyKeyToo) {
    const KeyHistory history{.places = {}, .formerKeys = Keys{}};
    for (int discovery = 0; discovery < 3; ++discovery) {
        continuity.learn(history);
        continuity.remember({"TC0P"}, {"TC0D"});
    }
    EXPECT_THAT(defaults.writes, ElementsAre(carriedOverEntry));
}

TEST_F(KeyContinuityTest, AKeyThatIsCarriedOverIsStoredWithItsPlace) {
    continuity.learn(
        {.places = {{"ram-i2c-0-50/temp1", "bus/50"}}, .formerKeys = Keys{{"TM1P", "ram-i2c-0-50/temp1"}}});
    continuity.remember({continuity.currentKey("TM1P").value_or("")}, {});
    KeyContinuity later = restarted();
    later.learn({.places = {{"ram-i2c-7-50/temp1", "bus/50"}}, .formerKeys = std::nullopt});
    EXPECT_EQ(later.currentKey("ram-i2c-0-50/temp1"), "ram-i2c-7-50/temp1");
}

TEST_F(KeyContinuityTest, AKeyThatAnotherDeviceHasNowIsNotTheSensorThatWasChosen) {
    continuity.learn({.places = {{"drivetemp-scsi-1-0/temp1", "port 1"}}, .formerKeys = std::nullopt});
    continuity.remember({"drivetemp-scsi-1-0/temp1"}, {});
    KeyContinuity later = restarted();
    later.learn({.places = {{"drivetemp-scsi-1-0/temp1", "port 2"}}, .formerKeys = std::nullopt});
    EXPECT_EQ(later.currentKey("drivetemp-scsi-1-0/temp1"), std::nullopt);
}

// Without changes

TEST_F(KeyContinuityTest, NothingIsWrittenForASourceWithoutHistory) {
    for (int discovery = 0; discovery < 3; ++discovery) {
        continuity.learn({});
        EXPECT_EQ(continuity.currentKey("TC0P"), "TC0P");
        continuity.remember({"TC0P"}, {"TC0D"});
    }
    EXPECT_THAT(defaults.writes, IsEmpty());
    EXPECT_TRUE(continuity.needsFormerKeys());
}

TEST_F(KeyContinuityTest, NothingIsWrittenBeforeADiscovery) {
    continuity.remember({"TC0P"}, {"TC0D"});
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_F(KeyContinuityTest, PlacesAreWrittenOnlyWhenTheyChange) {
    continuity.learn({.places = {{"a-i2c-0-50/temp1", "bus/50"}, {"a-i2c-0-51/temp1", "bus/51"}},
                      .formerKeys = std::nullopt});
    for (int pass = 0; pass < 3; ++pass) continuity.remember({"a-i2c-0-50/temp1"}, {});
    EXPECT_THAT(defaults.writes, ElementsAre(placesEntry));
    KeyContinuity later = restarted();
    later.learn({.places = {{"a-i2c-0-50/temp1", "bus/50"}}, .formerKeys = std::nullopt});
    later.remember({"a-i2c-0-50/temp1"}, {});
    EXPECT_THAT(defaults.writes, ElementsAre(placesEntry));
}

// Devices with another number

class MovedDevices : public KeyContinuityTest {
  protected:
    static constexpr const char* first = "ram-i2c-0-50/temp1";
    static constexpr const char* second = "ram-i2c-1-50/temp1";

    void SetUp() override {
        continuity.learn({.places = {{first, "a/50"}, {second, "b/50"}}, .formerKeys = std::nullopt});
    }

    [[nodiscard]] KeyContinuity restartedWith(Keys places) {
        KeyContinuity later = restarted();
        later.learn({.places = std::move(places), .formerKeys = std::nullopt});
        return later;
    }
};

TEST_F(MovedDevices, APinnedKeyFollowsItsDevice) {
    continuity.remember({first}, {});
    const KeyContinuity later = restartedWith({{"ram-i2c-9-50/temp1", "a/50"}, {first, "b/50"}});
    EXPECT_EQ(later.currentKey(first), "ram-i2c-9-50/temp1");
}

TEST_F(MovedDevices, AHiddenKeyFollowsItsDevice) {
    continuity.remember({}, {first});
    const KeyContinuity later = restartedWith({{"ram-i2c-9-50/temp1", "a/50"}, {first, "b/50"}});
    EXPECT_EQ(later.currentKey(first), "ram-i2c-9-50/temp1");
}

TEST_F(MovedDevices, TwoDevicesThatSwapTheirNumbersKeepTheirKeysApart) {
    continuity.remember({first}, {second});
    KeyContinuity later = restartedWith({{first, "b/50"}, {second, "a/50"}});
    EXPECT_EQ(later.currentKey(first), second);
    EXPECT_EQ(later.currentKey(second), first);
    later.remember({second}, {first});
    const KeyContinuity again = restartedWith({{first, "a/50"}, {second, "b/50"}});
    EXPECT_EQ(again.currentKey(second), first) << "the pinned one";
    EXPECT_EQ(again.currentKey(first), second) << "the hidden one";
}

TEST_F(MovedDevices, AKeyThatWasNotChosenIsLeftAlone) {
    continuity.remember({first}, {});
    const KeyContinuity later = restartedWith({{first, "b/50"}, {second, "a/50"}});
    EXPECT_EQ(later.currentKey(second), second);
}

TEST_F(MovedDevices, OnlyThePlacesOfChosenKeysAreStored) {
    continuity.remember({"cpu/temp1", first}, {});
    EXPECT_EQ(storedPlaces(), (TextList{std::string(first).append("\ta/50")}));
}

TEST_F(MovedDevices, ThePlaceOfAnAbsentDeviceIsKeptAsLongAsItsKeyIsChosen) {
    continuity.remember({first}, {second});
    KeyContinuity absent = restartedWith({});
    EXPECT_EQ(absent.currentKey(first), first);
    absent.remember({first}, {second});
    const KeyContinuity returned =
        restartedWith({{"ram-i2c-4-50/temp1", "a/50"}, {"ram-i2c-5-50/temp1", "b/50"}});
    EXPECT_EQ(returned.currentKey(first), "ram-i2c-4-50/temp1");
    EXPECT_EQ(returned.currentKey(second), "ram-i2c-5-50/temp1");
}

TEST_F(MovedDevices, ThePlaceOfAnAbsentDeviceIsKeptAlthoughAnotherHasItsKey) {
    continuity.remember({first}, {});
    KeyContinuity later = restartedWith({{first, "c/50"}});
    later.remember({}, {}, {first});
    EXPECT_EQ(storedPlaces(), (TextList{std::string(first).append("\ta/50")}));
    later.remember({first}, {}, {first});
    EXPECT_EQ(storedPlaces(), (TextList{std::string(first).append("\tc/50")})) << "chosen for the other one";
}

TEST_F(MovedDevices, ThePlaceGoesWithItsKey) {
    continuity.remember({first}, {second});
    continuity.remember({first}, {});
    EXPECT_EQ(storedPlaces(), (TextList{std::string(first).append("\ta/50")}));
    continuity.remember({}, {});
    EXPECT_EQ(storedPlaces(), std::nullopt);
    EXPECT_EQ(defaults.writes.back(), "-KelvinbarKeyPlaces");
}

TEST_F(MovedDevices, AKeyMayMoveWhileTheProgramRuns) {
    continuity.remember({first}, {});
    continuity.learn({.places = {{second, "a/50"}}, .formerKeys = std::nullopt});
    EXPECT_EQ(continuity.currentKey(first), second);
}

TEST_F(MovedDevices, AStoredPlaceCountsMoreThanAFormerKey) {
    continuity.remember({first}, {});
    continuity.learn({.places = {{second, "a/50"}}, .formerKeys = Keys{{first, "cpu/temp1"}}});
    EXPECT_EQ(continuity.currentKey(first), second);
}

TEST_F(MovedDevices, APlaceMayHoldAnyText) {
    continuity.learn({.places = {{first, "a\tb/ °#2"}}, .formerKeys = std::nullopt});
    continuity.remember({first}, {});
    EXPECT_EQ(restartedWith({{second, "a\tb/ °#2"}}).currentKey(first), second);
}

// Damaged preferences

TEST_F(KeyContinuityTest, DamagedEntriesAreIgnored) {
    defaults.values.setTextList(placesEntry,
                                {"", "no place", "\t", "\tno key", "empty\t", "good\ta/50", "good\tb/50"});
    KeyContinuity damaged = restarted();
    damaged.learn({.places = {{"now", "a/50"}, {"other", "b/50"}}, .formerKeys = std::nullopt});
    EXPECT_EQ(damaged.currentKey("no place"), "no place");
    EXPECT_EQ(damaged.currentKey("empty"), "empty");
    EXPECT_EQ(damaged.currentKey(""), "");
    EXPECT_EQ(damaged.currentKey("good"), "now") << "the first of two";
    damaged.remember({"now"}, {});
    EXPECT_EQ(storedPlaces(), TextList{"now\ta/50"});
}

TEST_F(KeyContinuityTest, AnEntryOfAnotherTypeCountsAsAbsent) {
    defaults.values.setText(placesEntry, "a\ta/50");
    defaults.values.setText(carriedOverEntry, "1");
    KeyContinuity damaged = restarted();
    EXPECT_TRUE(damaged.needsFormerKeys());
    damaged.learn({.places = {{"b", "a/50"}}, .formerKeys = std::nullopt});
    EXPECT_EQ(damaged.currentKey("a"), "a");
}

TEST_F(KeyContinuityTest, AFlagThatIsNoPositiveNumberMeansThatKeysAreStillToBeCarriedOver) {
    for (const double flag : {0.0, -1.0}) {
        defaults.values.setNumber(carriedOverEntry, flag);
        EXPECT_TRUE(restarted().needsFormerKeys()) << flag;
    }
    defaults.values.setNumber(carriedOverEntry, 1);
    EXPECT_FALSE(restarted().needsFormerKeys());
}

} // namespace
} // namespace kelvinbar::key_continuity_test
