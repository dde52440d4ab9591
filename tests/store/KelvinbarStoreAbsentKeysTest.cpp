#include "tests/fakes/FakeSensorSource.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/store/StoreFixture.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::kelvinbar_store_absent_keys_test {

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr std::string_view pinsEntry = "KelvinbarMenuBarKeys";
constexpr std::string_view hiddenEntry = "KelvinbarHiddenKeys";
constexpr std::string_view absentPinsEntry = "KelvinbarAbsentPins";
constexpr std::string_view absentHiddenEntry = "KelvinbarAbsentHiddenKeys";

/// A store over a source whose sensors come and go.
class KelvinbarStoreAbsentKeysTest : public fakes::StoreFixture {
  protected:
    using Sensors = std::vector<std::string>;

    KelvinbarStoreAbsentKeysTest() {
        machineOfStore.source = source;
        absent = AbsentSelections(defaults, wallClock, recording.log);
    }

    void setSensors(const Sensors& keys) {
        source->readings.clear();
        for (const std::string& key : keys) {
            RawReading reading;
            reading.key = key;
            reading.value = "42";
            reading.numericValue = 42;
            reading.name = "Sensor";
            reading.category = "CPU";
            reading.unit = "°C";
            source->readings.push_back(reading);
        }
    }

    void startWith(const TextList& pinned, const TextList& hiddenKeys) {
        if (!pinned.empty()) defaults.values.setTextList(pinsEntry, pinned);
        if (!hiddenKeys.empty()) defaults.values.setTextList(hiddenEntry, hiddenKeys);
        start();
    }

    /// Starts the program again with the same preferences.
    void start() {
        makeStore();
        finishPasses();
    }

    void refreshWith(const Sensors& keys) {
        setSensors(keys);
        refresh(true);
    }

    [[nodiscard]] const std::vector<std::string>& pins() const { return store->menuBarKeys().value(); }

    [[nodiscard]] const KeySet& hidden() const { return store->hiddenKeys().value(); }

    std::shared_ptr<fakes::FakeSensorSource> source = std::make_shared<fakes::FakeSensorSource>();
    fakes::RecordingLog recording;
};

TEST_F(KelvinbarStoreAbsentKeysTest, APinThatAFullPassDropsComesBackWithItsReading) {
    setSensors({"a/1", "b/1", "c/1"});
    startWith({"a/1", "b/1", "c/1"}, {});
    refreshWith({"a/1", "c/1"});
    EXPECT_THAT(pins(), ElementsAre("a/1", "c/1"));
    EXPECT_EQ(defaults.textList(pinsEntry), (TextList{"a/1", "c/1"}));
    EXPECT_EQ(store->menuBarReadings().size(), 2U);
    refreshWith({"a/1", "b/1", "c/1"});
    EXPECT_THAT(pins(), ElementsAre("a/1", "b/1", "c/1"));
    EXPECT_EQ(defaults.textList(pinsEntry), (TextList{"a/1", "b/1", "c/1"}));
    EXPECT_EQ(store->menuBarReadings().size(), 3U);
}

TEST_F(KelvinbarStoreAbsentKeysTest, AHiddenKeyThatAFullPassDropsComesBackWithItsReading) {
    setSensors({"a/1", "b/1"});
    startWith({}, {"a/1", "b/1"});
    refreshWith({"a/1"});
    EXPECT_THAT(hidden(), ElementsAre("a/1"));
    EXPECT_EQ(defaults.textList(hiddenEntry), TextList{"a/1"});
    refreshWith({"a/1", "b/1"});
    EXPECT_THAT(hidden(), ElementsAre("a/1", "b/1"));
    EXPECT_EQ(defaults.textList(absentHiddenEntry), std::nullopt);
}

TEST_F(KelvinbarStoreAbsentKeysTest, WithoutAMemoryWhatAPassDropsIsGone) {
    absent = {};
    setSensors({"a/1", "b/1"});
    startWith({"a/1", "b/1"}, {"b/1"});
    refreshWith({"a/1"});
    refreshWith({"a/1", "b/1"});
    EXPECT_THAT(pins(), ElementsAre("a/1"));
    EXPECT_THAT(hidden(), IsEmpty());
    EXPECT_EQ(defaults.textList(absentPinsEntry), std::nullopt);
}

TEST_F(KelvinbarStoreAbsentKeysTest, WhatIsAbsentAtLoginComesBackInALaterSession) {
    setSensors({"a/1"});
    startWith({"b/1", "a/1"}, {"c/1"});
    EXPECT_THAT(pins(), ElementsAre("a/1"));
    absent = AbsentSelections(defaults, wallClock, recording.log);
    setSensors({"a/1", "b/1", "c/1"});
    start();
    EXPECT_THAT(pins(), ElementsAre("b/1", "a/1"));
    EXPECT_THAT(hidden(), ElementsAre("c/1"));
}

TEST_F(KelvinbarStoreAbsentKeysTest, AllComesBackAfterAFullPassWithoutReadings) {
    setSensors({"a/1", "b/1"});
    startWith({"b/1", "a/1"}, {"c/1"});
    refreshWith({});
    EXPECT_THAT(pins(), IsEmpty());
    EXPECT_EQ(defaults.textList(pinsEntry), std::nullopt);
    refreshWith({"a/1", "b/1", "c/1"});
    EXPECT_THAT(pins(), ElementsAre("b/1", "a/1"));
    EXPECT_THAT(hidden(), ElementsAre("c/1"));
}

TEST_F(KelvinbarStoreAbsentKeysTest, AKeyThatWasPinnedAndHiddenComesBackAsBoth) {
    setSensors({"a/1", "b/1"});
    startWith({"b/1", "a/1"}, {"b/1"});
    refreshWith({"a/1"});
    refreshWith({"a/1", "b/1"});
    EXPECT_THAT(pins(), ElementsAre("b/1", "a/1"));
    EXPECT_THAT(hidden(), ElementsAre("b/1"));
}

TEST_F(KelvinbarStoreAbsentKeysTest, APinThatAMenuBarPassDropsComesBackWithTheNextOne) {
    setSensors({"a/1", "b/1"});
    startWith({"b/1", "a/1"}, {});
    setSensors({"a/1"});
    refreshMenuBarOnly();
    EXPECT_THAT(pins(), ElementsAre("a/1"));
    setSensors({"a/1", "b/1"});
    refreshMenuBarOnly();
    EXPECT_THAT(source->requests.back(), ElementsAre("a/1", "b/1"));
    EXPECT_THAT(pins(), ElementsAre("b/1", "a/1"));
}

TEST_F(KelvinbarStoreAbsentKeysTest, AMenuBarPassThatFindsOnlyAnAbsentPinKeepsTheOthers) {
    setSensors({"a/1", "b/1"});
    startWith({"a/1", "b/1"}, {});
    refreshWith({"a/1"});
    setSensors({"b/1"});
    refreshMenuBarOnly();
    EXPECT_THAT(pins(), ElementsAre("a/1", "b/1"));
}

TEST_F(KelvinbarStoreAbsentKeysTest, NothingIsWrittenWhileADeviceStaysAway) {
    setSensors({"a/1"});
    startWith({"a/1", "b/1"}, {"c/1"});
    forgetHistory();
    refresh();
    refreshMenuBarOnly();
    refresh(true);
    EXPECT_THAT(defaults.writes, IsEmpty());
    EXPECT_THAT(posted, IsEmpty());
}

TEST_F(KelvinbarStoreAbsentKeysTest, WhatIsRememberedIsStoredBeforeThePinsLoseIt) {
    setSensors({"a/1", "b/1"});
    startWith({"a/1", "b/1"}, {});
    forgetHistory();
    refreshWith({"a/1"});
    ASSERT_GE(defaults.writes.size(), 2U);
    EXPECT_EQ(defaults.writes[0], absentPinsEntry);
    EXPECT_EQ(defaults.writes[1], pinsEntry);
}

// What the user changes meanwhile

TEST_F(KelvinbarStoreAbsentKeysTest, SixPinsByTheUserLeaveNoSlotForAnAbsentOne) {
    setSensors({"a/1", "c/1", "d/1", "e/1", "f/1", "g/1"});
    startWith({"a/1", "b/1", "c/1", "d/1", "e/1", "f/1"}, {});
    store->toggleMenuBarReading(fakes::readingOf("g/1"));
    EXPECT_EQ(defaults.textList(absentPinsEntry), std::nullopt);
    refreshWith({"a/1", "b/1", "c/1", "d/1", "e/1", "f/1", "g/1"});
    EXPECT_THAT(pins(), ElementsAre("a/1", "c/1", "d/1", "e/1", "f/1", "g/1"));
}

TEST_F(KelvinbarStoreAbsentKeysTest, APinThatTheUserRemovesDoesNotComeBack) {
    setSensors({"a/1", "b/1"});
    startWith({"a/1", "b/1"}, {});
    store->toggleMenuBarReading(fakes::readingOf("b/1"));
    refreshWith({"a/1"});
    refreshWith({"a/1", "b/1"});
    EXPECT_THAT(pins(), ElementsAre("a/1"));
}

TEST_F(KelvinbarStoreAbsentKeysTest, ThePinThatASeventhReplacesDoesNotComeBack) {
    setSensors({"a/1", "b/1", "c/1", "d/1", "e/1", "f/1", "g/1"});
    startWith({"a/1", "b/1", "c/1", "d/1", "e/1", "f/1"}, {});
    store->toggleMenuBarReading(fakes::readingOf("g/1"));
    store->toggleMenuBarReading(fakes::readingOf("b/1"));
    refresh();
    EXPECT_THAT(pins(), ElementsAre("c/1", "d/1", "e/1", "f/1", "g/1"));
}

TEST_F(KelvinbarStoreAbsentKeysTest, AnAbsentPinThatTheUserPinsAnewIsTheLast) {
    setSensors({"a/1", "b/1"});
    startWith({"b/1", "a/1"}, {});
    setSensors({"a/1"});
    refreshMenuBarOnly(); // the panel still shows the old reading
    store->toggleMenuBarReading(fakes::readingOf("b/1"));
    refreshWith({"a/1", "b/1"});
    EXPECT_THAT(pins(), ElementsAre("a/1", "b/1"));
}

TEST_F(KelvinbarStoreAbsentKeysTest, AnAbsentPinThatTheUserHidesIsNotPinnedAgain) {
    setSensors({"a/1", "b/1"});
    startWith({"b/1", "a/1"}, {});
    setSensors({"a/1"});
    refreshMenuBarOnly();
    store->hideReading(fakes::readingOf("b/1"));
    refreshWith({"a/1", "b/1"});
    EXPECT_THAT(pins(), ElementsAre("a/1"));
    EXPECT_THAT(hidden(), ElementsAre("b/1"));
}

TEST_F(KelvinbarStoreAbsentKeysTest, ShowingAllForgetsAbsentHiddenKeysToo) {
    setSensors({"a/1"});
    startWith({"a/1"}, {"b/1"});
    EXPECT_THAT(hidden(), IsEmpty());
    store->unhideAllReadings();
    EXPECT_EQ(defaults.textList(absentHiddenEntry), std::nullopt);
    refreshWith({"a/1", "b/1"});
    EXPECT_THAT(hidden(), IsEmpty());
}

TEST_F(KelvinbarStoreAbsentKeysTest, WhatIsAbsentFor91DaysIsForgotten) {
    setSensors({"a/1"});
    startWith({"a/1", "b/1"}, {"c/1"});
    wallClock.time += std::chrono::days(91);
    refresh();
    EXPECT_EQ(defaults.textList(absentPinsEntry), std::nullopt);
    EXPECT_EQ(defaults.textList(absentHiddenEntry), std::nullopt);
    refreshWith({"a/1", "b/1", "c/1"});
    EXPECT_THAT(pins(), ElementsAre("a/1"));
    EXPECT_THAT(hidden(), IsEmpty());
}

// Devices with another number

class StoreOverAbsentDevices : public KelvinbarStoreAbsentKeysTest {
  protected:
    static constexpr const char* first = "disk-0/temp1";
    static constexpr const char* second = "disk-1/temp1";

    void SetUp() override {
        setSensors({"a/1", first});
        source->history.places = {{first, "bay 1"}};
        startWith({first, "a/1"}, {});
    }

    void find(const Sensors& keys, std::map<std::string, std::string> places) {
        source->history.places = std::move(places);
        refreshWith(keys);
    }
};

TEST_F(StoreOverAbsentDevices, APinComesBackUnderTheNewKeyOfItsDevice) {
    find({"a/1"}, {});
    EXPECT_THAT(pins(), ElementsAre("a/1"));
    find({"a/1", second}, {{second, "bay 1"}});
    EXPECT_THAT(pins(), ElementsAre(second, "a/1"));
    find({"a/1", first}, {{first, "bay 1"}});
    EXPECT_THAT(pins(), ElementsAre(first, "a/1"));
}

TEST_F(StoreOverAbsentDevices, APinComesBackUnderTheNewKeyOfItsDeviceInALaterSession) {
    find({"a/1"}, {});
    absent = AbsentSelections(defaults, wallClock, recording.log);
    setSensors({"a/1", second});
    source->history.places = {{second, "bay 1"}};
    start();
    EXPECT_THAT(pins(), ElementsAre(second, "a/1"));
}

TEST_F(StoreOverAbsentDevices, AnotherDeviceWithTheKeyDoesNotTakeThePin) {
    find({"a/1", first}, {{first, "bay 2"}});
    EXPECT_THAT(pins(), ElementsAre("a/1"));
    refresh();
    refreshMenuBarOnly();
    EXPECT_THAT(source->requests.back(), ElementsAre("a/1"));
    EXPECT_THAT(pins(), ElementsAre("a/1"));
    find({"a/1", first, second}, {{first, "bay 2"}, {second, "bay 1"}});
    EXPECT_THAT(pins(), ElementsAre(second, "a/1"));
}

TEST_F(StoreOverAbsentDevices, TheUserMayPinAnotherDeviceWithTheKey) {
    find({"a/1", first}, {{first, "bay 2"}});
    store->toggleMenuBarReading(fakes::readingOf(first));
    EXPECT_THAT(pins(), ElementsAre("a/1", first));
    find({"a/1", first, second}, {{first, "bay 1"}, {second, "bay 2"}});
    EXPECT_THAT(pins(), ElementsAre("a/1", second));
}

TEST_F(StoreOverAbsentDevices, ThePlaceOfAForgottenPinIsNotKept) {
    find({"a/1"}, {});
    EXPECT_NE(defaults.textList("KelvinbarKeyPlaces"), std::nullopt);
    wallClock.time += std::chrono::days(91);
    refresh(true);
    EXPECT_EQ(defaults.textList("KelvinbarKeyPlaces"), std::nullopt);
}

} // namespace
} // namespace kelvinbar::kelvinbar_store_absent_keys_test
