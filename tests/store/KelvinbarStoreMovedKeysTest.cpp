#include "tests/fakes/FakeSensorSource.h"
#include "tests/store/StoreFixture.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::kelvinbar_store_moved_keys_test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using Keys = std::map<std::string, std::string>;

constexpr std::string_view pinsEntry = "KelvinbarMenuBarKeys";
constexpr std::string_view hiddenEntry = "KelvinbarHiddenKeys";
constexpr std::string_view carriedOverEntry = "KelvinbarKeysCarriedOver";

/// A store over a source whose sensors get other keys.
class KelvinbarStoreMovedKeysTest : public fakes::StoreFixture {
  protected:
    std::shared_ptr<fakes::FakeSensorSource> source = std::make_shared<fakes::FakeSensorSource>();

    KelvinbarStoreMovedKeysTest() { machineOfStore.source = source; }

    /// Adds a sensor that names its own reading.
    void addSensor(const std::string& key) {
        RawReading reading;
        reading.key = key;
        reading.type = "chip";
        reading.value = "42";
        reading.numericValue = 42;
        reading.name = "Sensor " + key;
        reading.category = "CPU";
        reading.unit = "°C";
        source->readings.push_back(reading);
    }

    void setSensors(const std::vector<std::string>& keys) {
        source->readings.clear();
        for (const std::string& key : keys) addSensor(key);
    }

    void startWith(const TextList& pins, const TextList& hidden) {
        if (!pins.empty()) defaults.values.setTextList(pinsEntry, pins);
        if (!hidden.empty()) defaults.values.setTextList(hiddenEntry, hidden);
        start();
    }

    /// Starts the program again with the same preferences.
    void start() {
        makeStore();
        finishPasses();
    }

    [[nodiscard]] const std::vector<std::string>& pins() const { return store->menuBarKeys().value(); }

    [[nodiscard]] const KeySet& hidden() const { return store->hiddenKeys().value(); }
};

// Keys of version 0.1

TEST_F(KelvinbarStoreMovedKeysTest, FormerKeysAreCarriedOverBeforeWhatWasNotFoundIsDropped) {
    setSensors({"cpu/temp1", "cpu/temp2", "ssd/temp1"});
    source->history.formerKeys = Keys{{"TC0T", "cpu/temp1"}, {"TN0P", "ssd/temp1"}, {"TC1D", "cpu/temp2"}};
    startWith({"TN0P", "gone", "TC0T"}, {"TC1D", "lost"});
    EXPECT_THAT(pins(), ElementsAre("ssd/temp1", "cpu/temp1"));
    EXPECT_THAT(hidden(), ElementsAre("cpu/temp2"));
    EXPECT_EQ(defaults.textList(pinsEntry), (TextList{"ssd/temp1", "cpu/temp1"}));
    EXPECT_EQ(defaults.textList(hiddenEntry), TextList{"cpu/temp2"});
    EXPECT_EQ(defaults.number(carriedOverEntry), 1);
}

TEST_F(KelvinbarStoreMovedKeysTest, ThePinThatVersion01StoredByItselfIsCarriedOverToo) {
    setSensors({"cpu/temp1"});
    source->history.formerKeys = Keys{{"TC0T", "cpu/temp1"}};
    defaults.values.setText("KelvinbarMenuBarKey", "TC0T");
    start();
    EXPECT_THAT(pins(), ElementsAre("cpu/temp1"));
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), "cpu/temp1");
}

TEST_F(KelvinbarStoreMovedKeysTest, AKeyThatTheControllerListsIsLeftAlone) {
    setSensors({"cpu/temp1"});
    addSensor("TC0P");
    source->history.formerKeys = Keys{{"TC0T", "cpu/temp1"}};
    startWith({"TC0P", "TC0T"}, {});
    EXPECT_THAT(pins(), ElementsAre("TC0P", "cpu/temp1"));
}

TEST_F(KelvinbarStoreMovedKeysTest, KeysAreCarriedOverOnce) {
    setSensors({"cpu/temp1"});
    source->history.formerKeys = Keys{{"TC0T", "cpu/temp1"}};
    startWith({}, {});
    defaults.values.setTextList(pinsEntry, {"TC0T"});
    start();
    EXPECT_THAT(pins(), IsEmpty());
}

TEST_F(KelvinbarStoreMovedKeysTest, APassThatWasCancelledLeavesKeysToBeCarriedOver) {
    setSensors({"cpu/temp1"});
    source->history.formerKeys = Keys{{"TC0T", "cpu/temp1"}};
    defaults.values.setTextList(pinsEntry, {"TC0T"});
    makeStore();
    store->shutdown();
    finishPasses();
    EXPECT_EQ(defaults.number(carriedOverEntry), 0);
}

TEST_F(KelvinbarStoreMovedKeysTest, TwoFormerKeysOfOneSensorMakeOnePin) {
    setSensors({"cpu/temp1"});
    source->history.formerKeys = Keys{{"TC0T", "cpu/temp1"}};
    startWith({"TC0T", "cpu/temp1"}, {});
    EXPECT_THAT(pins(), ElementsAre("cpu/temp1"));
}

TEST_F(KelvinbarStoreMovedKeysTest, TheTitleShowsWhatWasCarriedOver) {
    setSensors({"cpu/temp1"});
    source->history.formerKeys = Keys{{"TC0T", "cpu/temp1"}};
    startWith({"TC0T"}, {});
    const auto changes = postedUnder(kelvinbarMenuBarReadingChanged);
    ASSERT_FALSE(changes.empty());
    EXPECT_EQ(changes.back().title, " 42°");
}

// Without changes

TEST_F(KelvinbarStoreMovedKeysTest, NothingIsWrittenWhereTheSourceHasNoHistory) {
    setSensors({"TC0P", "TC0D"});
    startWith({"TC0P"}, {"TC0D"});
    refresh(true);
    EXPECT_THAT(pins(), ElementsAre("TC0P"));
    EXPECT_THAT(hidden(), ElementsAre("TC0D"));
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_F(KelvinbarStoreMovedKeysTest, NothingIsWrittenOnceKeysWereCarriedOver) {
    setSensors({"ram-i2c-0-50/temp1", "cpu/temp1"});
    source->history = {.places = {{"ram-i2c-0-50/temp1", "a/50"}}, .formerKeys = Keys{}};
    startWith({"ram-i2c-0-50/temp1"}, {"cpu/temp1"});
    forgetHistory();
    refresh(true);
    refresh();
    start();
    EXPECT_THAT(defaults.writes, IsEmpty());
}

// Devices with another number

class StoreOverMovingDevices : public KelvinbarStoreMovedKeysTest {
  protected:
    static constexpr const char* first = "ram-i2c-0-50/temp1";
    static constexpr const char* second = "ram-i2c-1-50/temp1";

    void SetUp() override {
        setSensors({first, second});
        source->history.places = {{first, "a/50"}, {second, "b/50"}};
    }

    void swapNumbers() { source->history.places = {{first, "b/50"}, {second, "a/50"}}; }
};

TEST_F(StoreOverMovingDevices, APinFollowsItsDeviceAfterARestart) {
    startWith({first}, {});
    setSensors({"ram-i2c-5-50/temp1", first});
    source->history.places = {{"ram-i2c-5-50/temp1", "a/50"}, {first, "b/50"}};
    start();
    EXPECT_THAT(pins(), ElementsAre("ram-i2c-5-50/temp1"));
    EXPECT_EQ(defaults.textList(pinsEntry), TextList{"ram-i2c-5-50/temp1"});
}

TEST_F(StoreOverMovingDevices, AHiddenKeyFollowsItsDeviceAfterARestart) {
    startWith({}, {first});
    setSensors({"ram-i2c-5-50/temp1", first});
    source->history.places = {{"ram-i2c-5-50/temp1", "a/50"}, {first, "b/50"}};
    start();
    EXPECT_THAT(hidden(), ElementsAre("ram-i2c-5-50/temp1"));
    EXPECT_EQ(defaults.textList(hiddenEntry), TextList{"ram-i2c-5-50/temp1"});
}

TEST_F(StoreOverMovingDevices, APinFollowsItsDeviceWhenItIsDiscoveredAnew) {
    startWith({first}, {});
    swapNumbers();
    refresh(true);
    EXPECT_THAT(pins(), ElementsAre(second));
}

TEST_F(StoreOverMovingDevices, APinThatIsNewFollowsItsDeviceToo) {
    startWith({}, {});
    store->toggleMenuBarReading(fakes::readingOf(first));
    store->hideReading(fakes::readingOf(second));
    swapNumbers();
    start();
    EXPECT_THAT(pins(), ElementsAre(second));
    EXPECT_THAT(hidden(), ElementsAre(first));
}

TEST_F(StoreOverMovingDevices, TwoPinnedDevicesThatSwapTheirNumbersSwapTheirPins) {
    startWith({first, second}, {});
    swapNumbers();
    start();
    EXPECT_THAT(pins(), ElementsAre(second, first));
    source->history.places = {{first, "a/50"}, {second, "b/50"}};
    start();
    EXPECT_THAT(pins(), ElementsAre(first, second));
}

TEST_F(StoreOverMovingDevices, APinnedAndAHiddenDeviceThatSwapTheirNumbersStayWhatTheyAre) {
    startWith({first}, {second});
    swapNumbers();
    start();
    EXPECT_THAT(pins(), ElementsAre(second));
    EXPECT_THAT(hidden(), ElementsAre(first));
}

TEST_F(StoreOverMovingDevices, TwoHiddenDevicesThatSwapTheirNumbersAreBothFollowedLater) {
    startWith({}, {first, second});
    swapNumbers();
    start();
    EXPECT_THAT(hidden(), ElementsAre(first, second));
    setSensors({"ram-i2c-8-50/temp1", first});
    source->history.places = {{"ram-i2c-8-50/temp1", "a/50"}, {first, "c/50"}};
    start();
    EXPECT_THAT(hidden(), Contains("ram-i2c-8-50/temp1"));
}

TEST_F(StoreOverMovingDevices, WithoutAPinNoPlaceIsLeftInThePreferences) {
    startWith({first}, {second});
    ASSERT_TRUE(defaults.textList("KelvinbarKeyPlaces").has_value());
    store->setMenuBarKeys({});
    store->unhideAllReadings();
    EXPECT_FALSE(defaults.textList("KelvinbarKeyPlaces").has_value());
}

} // namespace
} // namespace kelvinbar::kelvinbar_store_moved_keys_test
