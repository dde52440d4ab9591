#include "machines/linux/sources/LiveSensor.h"

#include "machines/linux/sources/SensorValue.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;
using fakes::FakeMonotonicClock;
using fakes::TemporaryTree;
using namespace std::chrono_literals;

SMCBytes bytesOf(const std::vector<std::uint8_t>& front) {
    SMCBytes bytes{};
    std::ranges::copy(front, bytes.begin());
    return bytes;
}

SMCBytes bytesOf(std::string_view text) {
    SMCBytes bytes{};
    std::ranges::copy(text, bytes.begin());
    return bytes;
}

class LiveSensorTest : public testing::Test {
  protected:
    TemporaryTree tree;
    std::shared_ptr<FakeMonotonicClock> clock = std::make_shared<FakeMonotonicClock>();

    SensorChannel channel(SensorKind kind, double countsPerUnit, std::string_view content) {
        SensorChannel channel(kind, 1);
        channel.file = tree.write("input", content);
        channel.countsPerUnit = countsPerUnit;
        return channel;
    }

    LiveSensor sensor(const SensorChannel& channel, std::shared_ptr<const DevicePower> power = nullptr) {
        return {channel, std::move(power), clock};
    }

    /// The value of a channel whose file holds `content`.
    std::optional<double> valueOf(SensorKind kind, double countsPerUnit, std::string_view content) {
        return sensor(channel(kind, countsPerUnit, content)).value();
    }
};

// Values

TEST_F(LiveSensorTest, AValueIsTheFilesNumberInTheUnitOfItsKind) {
    EXPECT_EQ(valueOf(SensorKind::temperature, 1e3, "45750\n"), 45.75);
    EXPECT_EQ(valueOf(SensorKind::temperature, 1e3, "-250\n"), -0.25);
    EXPECT_EQ(valueOf(SensorKind::temperature, 10, "315\n"), 31.5);
    EXPECT_EQ(valueOf(SensorKind::voltage, 1e3, "1024\n"), 1.024);
    EXPECT_EQ(valueOf(SensorKind::power, 1e6, "12500000\n"), 12.5);
    EXPECT_EQ(valueOf(SensorKind::fan, 1, "1234\n"), 1234);
    EXPECT_EQ(valueOf(SensorKind::fan, 1, "0\n"), 0);
}

TEST_F(LiveSensorTest, AValueFollowsTheFile) {
    const LiveSensor live = sensor(channel(SensorKind::temperature, 1e3, "45000\n"));
    EXPECT_EQ(live.value(), 45);
    tree.write("input", "46500\n");
    EXPECT_EQ(live.value(), 46.5);
    tree.write("input", "");
    EXPECT_EQ(live.value(), std::nullopt);
}

TEST_F(LiveSensorTest, BytesAreThoseOfTheValue) {
    const LiveSensor live = sensor(channel(SensorKind::temperature, 1e3, "42500\n"));
    EXPECT_EQ(live.bytes(sensorType("flt ")), bytesOf({0x00, 0x00, 0x2A, 0x42}));
    EXPECT_EQ(live.bytes(sensorType("sp78")), bytesOf({0x2A, 0x80}));
    tree.write("input", "text\n");
    EXPECT_EQ(live.bytes(sensorType("flt ")), std::nullopt);
}

TEST_F(LiveSensorTest, AValueThatTheTypeCannotHoldHasNoBytes) {
    const LiveSensor live = sensor(channel(SensorKind::temperature, 1e3, "150000\n"));
    EXPECT_EQ(live.value(), 150);
    EXPECT_EQ(live.bytes(sensorType("sp78")), std::nullopt);
}

TEST_F(LiveSensorTest, AValueThatItsKindCannotHaveIsNone) {
    EXPECT_EQ(valueOf(SensorKind::temperature, 1e3, "-128000\n"), std::nullopt);
    EXPECT_EQ(valueOf(SensorKind::temperature, 1e3, "-127000\n"), std::nullopt);
    EXPECT_EQ(valueOf(SensorKind::fan, 1, "65535\n"), std::nullopt);
    EXPECT_EQ(valueOf(SensorKind::percent, 1, "101\n"), std::nullopt);
}

TEST_F(LiveSensorTest, WithoutItsFileASensorHasNoValue) {
    SensorChannel missing(SensorKind::temperature, 1);
    missing.file = tree.root() / "missing";
    EXPECT_EQ(sensor(missing).value(), std::nullopt);
    const SensorChannel switchedOff(SensorKind::temperature, 1);
    EXPECT_EQ(sensor(switchedOff).value(), std::nullopt);
    EXPECT_EQ(sensor(switchedOff).bytes(sensorType("flt ")), std::nullopt);
}

// Faults

TEST_F(LiveSensorTest, AFaultyValueIsNotTrustedForAsLongAsItIsFaulty) {
    SensorChannel faulty = channel(SensorKind::temperature, 1e3, "45000\n");
    faulty.fault = tree.write("fault", "1\n");
    const LiveSensor live = sensor(faulty);
    EXPECT_EQ(live.value(), std::nullopt);
    EXPECT_EQ(live.bytes(sensorType("flt ")), std::nullopt);
    tree.write("fault", "0\n");
    EXPECT_EQ(live.value(), 45);
    tree.write("fault", "1\n");
    EXPECT_EQ(live.value(), std::nullopt);
}

TEST_F(LiveSensorTest, AFaultThatTellsNothingIsNoReasonToTrust) {
    SensorChannel doubtful = channel(SensorKind::temperature, 1e3, "45000\n");
    doubtful.fault = tree.write("fault", "0\n");
    const LiveSensor live = sensor(doubtful);
    for (const std::string_view content : {"", "text\n", "0"}) {
        SCOPED_TRACE(content);
        tree.write("fault", content);
        EXPECT_EQ(live.value(), std::nullopt);
    }
}

TEST_F(LiveSensorTest, AFaultFileThatIsNotThereTellsOfNoFault) {
    SensorChannel sound = channel(SensorKind::temperature, 1e3, "45000\n");
    sound.fault = tree.root() / "missing";
    EXPECT_EQ(sensor(sound).value(), 45);
}

// Sleeping devices

class SleepingDevice : public LiveSensorTest {
  protected:
    fs::path status = tree.write("power/runtime_status", "active\n");

    void become(std::string_view state) {
        tree.write("power/runtime_status", std::string(state).append("\n"));
    }

    std::shared_ptr<const DevicePower> power() {
        return std::make_shared<const DevicePower>(std::vector{status}, clock);
    }
};

TEST_F(SleepingDevice, IsAsleepWhileItIsSuspendedOrOnItsWayThere) {
    for (const std::string_view state : {"suspended", "suspending"}) {
        SCOPED_TRACE(state);
        become(state);
        EXPECT_TRUE(power()->isAsleep());
    }
    for (const std::string_view state : {"active", "resuming", "unsupported", "error", ""}) {
        SCOPED_TRACE(state);
        become(state);
        EXPECT_FALSE(power()->isAsleep());
    }
}

TEST_F(SleepingDevice, IsAsleepWhenOneOfItsStatesSaysSo) {
    const fs::path parent = tree.write("parent/runtime_status", "suspended\n");
    EXPECT_TRUE(DevicePower({status, parent}, clock).isAsleep());
    EXPECT_TRUE(DevicePower({parent, status}, clock).isAsleep());
    EXPECT_FALSE(DevicePower({status}, clock).isAsleep());
}

TEST_F(SleepingDevice, IsAwakeWhereTheKernelTellsNothing) {
    EXPECT_FALSE(DevicePower({}, clock).isAsleep());
    EXPECT_FALSE(DevicePower({tree.root() / "missing"}, clock).isAsleep());
}

TEST_F(SleepingDevice, IsAskedForOnceInAWhile) {
    const auto device = power();
    ASSERT_FALSE(device->isAsleep());
    become("suspended");
    EXPECT_FALSE(device->isAsleep());
    clock->advance(DevicePower::validity - 1ns);
    EXPECT_FALSE(device->isAsleep());
    clock->advance(2ns);
    EXPECT_TRUE(device->isAsleep());
    become("active");
    EXPECT_TRUE(device->isAsleep());
    clock->advance(DevicePower::validity + 1ns);
    EXPECT_FALSE(device->isAsleep());
}

TEST_F(SleepingDevice, HasNoValueUntilItWakes) {
    become("suspended");
    const LiveSensor live = sensor(channel(SensorKind::temperature, 1e3, "45000\n"), power());
    EXPECT_EQ(live.value(), std::nullopt);
    EXPECT_EQ(live.bytes(sensorType("flt ")), std::nullopt);
    become("active");
    EXPECT_EQ(live.value(), std::nullopt);
    clock->advance(DevicePower::validity + 1ns);
    EXPECT_EQ(live.value(), 45);
}

TEST_F(SleepingDevice, TellsNoTextEither) {
    become("suspended");
    const LiveSensor live = sensor(channel(SensorKind::text, 1, "Full\n"), power());
    EXPECT_EQ(live.bytes(sensorType("ch8*")), std::nullopt);
    become("active");
    clock->advance(DevicePower::validity + 1ns);
    EXPECT_EQ(live.bytes(sensorType("ch8*")), bytesOf("Full"));
}

TEST_F(SleepingDevice, SharesItsAnswerAmongItsChannels) {
    const auto device = power();
    const LiveSensor first = sensor(channel(SensorKind::temperature, 1e3, "45000\n"), device);
    const LiveSensor second = sensor(channel(SensorKind::temperature, 1e3, "46000\n"), device);
    ASSERT_TRUE(first.value().has_value());
    become("suspended");
    EXPECT_EQ(second.value(), 46);
    clock->advance(DevicePower::validity + 1ns);
    EXPECT_EQ(second.value(), std::nullopt);
    EXPECT_EQ(first.value(), std::nullopt);
}

// Texts

TEST_F(LiveSensorTest, ATextIsTheWordInTheFile) {
    const LiveSensor live = sensor(channel(SensorKind::text, 1, "Discharging\n"));
    EXPECT_EQ(live.bytes(sensorType("ch8*")), bytesOf("Discharging"));
    tree.write("input", " Not charging \n");
    EXPECT_EQ(live.bytes(sensorType("ch8*")), bytesOf("Not charging"));
}

TEST_F(LiveSensorTest, ATextThatCannotBeReadHasNoBytes) {
    const LiveSensor live = sensor(channel(SensorKind::text, 1, "Full\n"));
    for (const std::string& content : {std::string(), std::string("Full"), std::string(4096, 'x') + "\n"}) {
        SCOPED_TRACE(content.size());
        tree.write("input", content);
        EXPECT_EQ(live.bytes(sensorType("ch8*")), std::nullopt);
    }
}

TEST_F(LiveSensorTest, ALongTextIsCutToWhatItsKeyHolds) {
    const std::string text = "abcdefghijklmnopqrstuvwxyz0123456789ABCD";
    const LiveSensor live = sensor(channel(SensorKind::text, 1, text + "\n"));
    EXPECT_EQ(live.bytes(sensorType("ch8*")), bytesOf(text.substr(0, 32)));
}

TEST_F(LiveSensorTest, AFansNameIsItsTextWithoutAFile) {
    SensorChannel name(SensorKind::fanName, 1);
    name.text = "CPU Fan";
    EXPECT_EQ(sensor(name).bytes(sensorType("ch8*")), bytesOf("CPU Fan"));
}

// Energy

TEST(PowerMeter, TheFirstReadingTellsNoPower) {
    PowerMeter meter(0);
    EXPECT_EQ(meter.powerAt(1000, 5s), std::nullopt);
}

TEST(PowerMeter, PowerIsTheGrowthInTheTimeBetweenTwoReadings) {
    PowerMeter meter(0);
    meter.powerAt(1000, 5s);
    EXPECT_EQ(meter.powerAt(1030, 7s), 15);
    EXPECT_EQ(meter.powerAt(1030, 8s), 0);
    EXPECT_EQ(meter.powerAt(1040, 8s + 500ms), 20);
}

TEST(PowerMeter, ACounterWithARangeBeginsAnew) {
    PowerMeter meter(1000);
    meter.powerAt(990, 1s);
    EXPECT_EQ(meter.powerAt(10, 3s), 10);
    EXPECT_EQ(meter.powerAt(20, 4s), 10);
}

TEST(PowerMeter, ACounterWithoutARangeThatGoesBackTellsNothingOnce) {
    PowerMeter meter(0);
    meter.powerAt(990, 1s);
    ASSERT_EQ(meter.powerAt(1000, 2s), 10);
    EXPECT_EQ(meter.powerAt(10, 3s), std::nullopt);
    EXPECT_EQ(meter.powerAt(25, 4s), 15);
}

TEST(PowerMeter, ACounterThatGoesBackByMoreThanItsRangeTellsNothing) {
    PowerMeter meter(100);
    meter.powerAt(990, 1s);
    EXPECT_EQ(meter.powerAt(10, 2s), std::nullopt);
}

TEST(PowerMeter, ReadingsThatAreTooCloseGiveWhatTheLastOneGave) {
    PowerMeter meter(0);
    meter.powerAt(100, 1s);
    EXPECT_EQ(meter.powerAt(500, 1s + PowerMeter::shortestTime - 1ns), std::nullopt);
    EXPECT_EQ(meter.powerAt(110, 2s), 10);
    EXPECT_EQ(meter.powerAt(500, 2s), 10);
    EXPECT_EQ(meter.powerAt(500, 2s + PowerMeter::shortestTime - 1ns), 10);
    // The close ones have moved nothing: growth counts from 110 at two seconds.
    EXPECT_EQ(meter.powerAt(140, 3s), 30);
}

TEST(PowerMeter, ReadingsAsFarApartAsTheShortestTimeTellAPower) {
    PowerMeter meter(0);
    meter.powerAt(100, 1s);
    const auto power = meter.powerAt(101, 1s + PowerMeter::shortestTime);
    ASSERT_TRUE(power.has_value());
    EXPECT_DOUBLE_EQ(*power, 50);
}

TEST(PowerMeter, OnlyTheSecondReadingHasToWait) {
    PowerMeter meter(0);
    EXPECT_EQ(meter.timeToFirstPower(1s), 0ns);
    meter.powerAt(100, 1s);
    EXPECT_EQ(meter.timeToFirstPower(1s), PowerMeter::shortestTime);
    EXPECT_EQ(meter.timeToFirstPower(1s + 5ms), PowerMeter::shortestTime - 5ms);
    EXPECT_EQ(meter.timeToFirstPower(1s + PowerMeter::shortestTime), 0ns);
    EXPECT_EQ(meter.timeToFirstPower(9s), 0ns);
    meter.powerAt(110, 2s);
    EXPECT_EQ(meter.timeToFirstPower(2s), 0ns);
}

class EnergyCounter : public LiveSensorTest {
  protected:
    SensorChannel counter(std::string_view microjoules) {
        return channel(SensorKind::energy, 1e6, microjoules);
    }

    void count(std::string_view microjoules) { tree.write("input", microjoules); }
};

TEST_F(EnergyCounter, ShowsThePowerByWhichItGrows) {
    LiveSensor live = sensor(counter("5000000\n"));
    live.meter(nullptr);
    clock->advance(2s);
    count("35000000\n");
    EXPECT_EQ(live.value(), 15);
    clock->advance(1s);
    count("35500000\n");
    EXPECT_EQ(live.bytes(sensorType("flt ")), bytesOf({0x00, 0x00, 0x00, 0x3F}));
}

TEST_F(EnergyCounter, HasNoPowerAtItsFirstReading) {
    const LiveSensor live = sensor(counter("5000000\n"));
    EXPECT_EQ(live.value(), std::nullopt);
    clock->advance(1s);
    count("6000000\n");
    EXPECT_EQ(live.value(), 1);
}

TEST_F(EnergyCounter, KeepsItsPowerBetweenCloseReadings) {
    LiveSensor live = sensor(counter("0\n"));
    live.meter(nullptr);
    clock->advance(1s);
    count("8000000\n");
    ASSERT_EQ(live.value(), 8);
    clock->advance(PowerMeter::shortestTime / 2);
    count("9000000\n");
    EXPECT_EQ(live.value(), 8);
}

TEST_F(EnergyCounter, CountsOnWhereItBeginsAnewAtItsRange) {
    SensorChannel channel = counter("99000000\n");
    channel.range = tree.write("range", "100000000\n");
    LiveSensor live = sensor(channel);
    live.meter(nullptr);
    clock->advance(1s);
    count("4000000\n");
    EXPECT_EQ(live.value(), 5);
}

TEST_F(EnergyCounter, TellsNothingWhereItGoesBackWithoutARange) {
    LiveSensor live = sensor(counter("99000000\n"));
    live.meter(nullptr);
    clock->advance(1s);
    count("4000000\n");
    EXPECT_EQ(live.value(), std::nullopt);
    clock->advance(1s);
    count("6000000\n");
    EXPECT_EQ(live.value(), 2);
}

TEST_F(EnergyCounter, TellsNothingWhileItCannotBeRead) {
    LiveSensor live = sensor(counter("0\n"));
    live.meter(nullptr);
    clock->advance(1s);
    count("");
    EXPECT_EQ(live.value(), std::nullopt);
    clock->advance(1s);
    count("6000000\n");
    EXPECT_EQ(live.value(), 3);
}

TEST_F(EnergyCounter, IsNotShownWithAPowerThatNothingHas) {
    LiveSensor live = sensor(counter("0\n"));
    live.meter(nullptr);
    clock->advance(1s);
    count("200000000000\n");
    EXPECT_EQ(live.value(), std::nullopt);
}

TEST_F(EnergyCounter, GoesOnWithTheMeterOfAnEarlierSensor) {
    LiveSensor earlier = sensor(counter("0\n"));
    earlier.meter(nullptr);
    clock->advance(1s);
    LiveSensor later = sensor(counter("4000000\n"));
    later.meter(&earlier);
    EXPECT_EQ(later.value(), 4);
    clock->advance(PowerMeter::shortestTime / 2);
    count("90000000\n");
    EXPECT_EQ(earlier.value(), 4);
}

TEST_F(EnergyCounter, BeginsItsOwnMeterAfterASensorThatHasNone) {
    LiveSensor live = sensor(counter("0\n"));
    SensorChannel temperature(SensorKind::temperature, 1);
    temperature.file = tree.write("temperature", "45000\n");
    const LiveSensor other = sensor(temperature);
    live.meter(&other);
    clock->advance(1s);
    count("4000000\n");
    EXPECT_EQ(live.value(), 4);
}

TEST_F(LiveSensorTest, OnlyEnergyIsMetered) {
    LiveSensor live = sensor(channel(SensorKind::power, 1e6, "12500000\n"));
    live.meter(nullptr);
    EXPECT_EQ(live.value(), 12.5);
    clock->advance(1s);
    EXPECT_EQ(live.value(), 12.5);
}

/// After hibernation a counter begins at 0, which is no turn of it.
TEST(PowerMeter, ACounterThatBeganAnewTellsNoPower) {
    using namespace std::chrono_literals;
    PowerMeter meter(262'144);
    EXPECT_EQ(meter.powerAt(5000, 0s), std::nullopt);
    EXPECT_EQ(meter.powerAt(1, 10s), std::nullopt);
    EXPECT_EQ(meter.powerAt(101, 20s), 10);
}

} // namespace

} // namespace kelvinbar
