#include "machines/linux/sources/LiveSensor.h"

#include "base/NumberText.h"
#include "machines/linux/sources/SensorValue.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/machines/linux/SystemCalls.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::live_sensor_test {

namespace {

namespace fs = std::filesystem;
using fakes::FakeMonotonicClock;
using fakes::SystemCalls;
using fakes::systemCallsOf;
using fakes::TemporaryTree;
using namespace std::chrono_literals;

/// The number of the next reading; nothing without one.
std::optional<double> numberOf(const LiveSensor& live) {
    const auto sample = live.read();
    return sample ? sample->number : std::nullopt;
}

/// The text of the next reading; nothing without one.
std::optional<std::string> textOf(const LiveSensor& live) {
    auto sample = live.read();
    return sample ? std::optional(std::move(sample->text)) : std::nullopt;
}

class LiveSensorTest : public testing::Test {
  protected:
    TemporaryTree tree;
    SensorFiles files;
    std::shared_ptr<FakeMonotonicClock> clock = std::make_shared<FakeMonotonicClock>();

    SensorChannel channel(SensorKind kind, double countsPerUnit, std::string_view content) {
        SensorChannel channel(kind, 1);
        channel.file = tree.write("input", content);
        channel.countsPerUnit = countsPerUnit;
        return channel;
    }

    LiveSensor sensor(const SensorChannel& channel, std::shared_ptr<const DevicePower> power = nullptr) {
        return {channel, possibleRange(channel.kind, ""), files, std::move(power), clock};
    }

    /// The number of a channel whose file holds `content`.
    std::optional<double> valueOf(SensorKind kind, double countsPerUnit, std::string_view content) {
        return numberOf(sensor(channel(kind, countsPerUnit, content)));
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

TEST_F(LiveSensorTest, AValueThatIsDisplayedAsZeroHasNoSign) {
    for (const std::string_view content : {"-0\n", "-1\n", "-4\n"}) {
        const auto value = valueOf(SensorKind::temperature, 1e3, content);
        ASSERT_TRUE(value) << content;
        EXPECT_EQ(plainNumberText(*value), "0") << content;
    }
    EXPECT_EQ(valueOf(SensorKind::temperature, 1e3, "-5\n"), -0.005);
    EXPECT_EQ(valueOf(SensorKind::temperature, 1e3, "4\n"), 0.004);
}

TEST_F(LiveSensorTest, AValueFollowsTheFile) {
    const LiveSensor live = sensor(channel(SensorKind::temperature, 1e3, "45000\n"));
    EXPECT_EQ(numberOf(live), 45);
    tree.write("input", "46500\n");
    EXPECT_EQ(numberOf(live), 46.5);
    tree.write("input", "");
    EXPECT_EQ(numberOf(live), std::nullopt);
}

TEST_F(LiveSensorTest, TheRawTextIsTheFilesOwnNumber) {
    for (const std::string_view content : {"45750\n", "  45750 \n"}) {
        const auto sample = sensor(channel(SensorKind::temperature, 1e3, content)).read();
        ASSERT_TRUE(sample);
        EXPECT_EQ(sample->raw, "45750");
        EXPECT_EQ(sample->text, "");
        EXPECT_FALSE(sample->isAsleep);
    }
}

TEST_F(LiveSensorTest, WhatIsNoNumberHasNoReading) {
    for (const std::string_view content : {"text\n", "\n", "45,75\n", "4e3\n", "99999999999999999999\n"}) {
        SCOPED_TRACE(content);
        EXPECT_FALSE(sensor(channel(SensorKind::temperature, 1e3, content)).read());
    }
}

TEST_F(LiveSensorTest, AValueOutsideTheRangeHasNoReading) {
    EXPECT_EQ(valueOf(SensorKind::temperature, 1e3, "-128000\n"), std::nullopt);
    EXPECT_EQ(valueOf(SensorKind::temperature, 1e3, "-127000\n"), std::nullopt);
    EXPECT_EQ(valueOf(SensorKind::fan, 1, "65535\n"), std::nullopt);
    EXPECT_EQ(valueOf(SensorKind::percent, 1, "101\n"), std::nullopt);
    const LiveSensor narrow(channel(SensorKind::temperature, 1e3, "45000\n"), {.lowest = 46, .highest = 47},
                            files, nullptr, clock);
    EXPECT_FALSE(narrow.read());
    tree.write("input", "46000\n");
    EXPECT_EQ(numberOf(narrow), 46);
}

TEST_F(LiveSensorTest, WithoutItsFileASensorHasNoReading) {
    SensorChannel missing(SensorKind::temperature, 1);
    missing.file = tree.root() / "missing";
    EXPECT_EQ(numberOf(sensor(missing)), std::nullopt);
    const SensorChannel switchedOff(SensorKind::temperature, 1);
    EXPECT_EQ(numberOf(sensor(switchedOff)), std::nullopt);
    EXPECT_FALSE(sensor(switchedOff).read());
}

// Faults

TEST_F(LiveSensorTest, AFaultyValueIsNotTrustedForAsLongAsItIsFaulty) {
    SensorChannel faulty = channel(SensorKind::temperature, 1e3, "45000\n");
    faulty.fault = tree.write("fault", "1\n");
    const LiveSensor live = sensor(faulty);
    EXPECT_EQ(numberOf(live), std::nullopt);
    EXPECT_FALSE(live.read());
    tree.write("fault", "0\n");
    EXPECT_EQ(numberOf(live), 45);
    tree.write("fault", "1\n");
    EXPECT_EQ(numberOf(live), std::nullopt);
}

TEST_F(LiveSensorTest, AFaultThatTellsNothingIsNoReasonToTrust) {
    SensorChannel doubtful = channel(SensorKind::temperature, 1e3, "45000\n");
    doubtful.fault = tree.write("fault", "0\n");
    const LiveSensor live = sensor(doubtful);
    for (const std::string_view content : {"", "text\n", "0"}) {
        SCOPED_TRACE(content);
        tree.write("fault", content);
        EXPECT_EQ(numberOf(live), std::nullopt);
    }
}

TEST_F(LiveSensorTest, AFaultFileThatIsNotThereTellsOfNoFault) {
    SensorChannel sound = channel(SensorKind::temperature, 1e3, "45000\n");
    sound.fault = tree.root() / "missing";
    EXPECT_EQ(numberOf(sensor(sound)), 45);
}

// Sleeping devices

class SleepingDevice : public LiveSensorTest {
  protected:
    fs::path status = tree.write("power/runtime_status", "active\n");

    void become(std::string_view state) {
        tree.write("power/runtime_status", std::string(state).append("\n"));
    }

    std::shared_ptr<const DevicePower> power() {
        return std::make_shared<const DevicePower>(std::vector{status}, files, clock);
    }
};

TEST_F(SleepingDevice, IsAsleepOnlyWhileItIsSuspended) {
    become("suspended");
    EXPECT_TRUE(power()->isAsleep());
    for (const std::string_view state :
         {"active", "suspending", "resuming", "unsupported", "error", "", "suspended too"}) {
        SCOPED_TRACE(state);
        become(state);
        EXPECT_FALSE(power()->isAsleep());
    }
}

TEST_F(SleepingDevice, IsAsleepWhenOneOfItsStatesIs) {
    const fs::path parent = tree.write("parent/runtime_status", "suspended\n");
    EXPECT_TRUE(DevicePower({status, parent}, files, clock).isAsleep());
    EXPECT_TRUE(DevicePower({parent, status}, files, clock).isAsleep());
    EXPECT_FALSE(DevicePower({status}, files, clock).isAsleep());
}

TEST_F(SleepingDevice, IsAwakeWhereTheKernelTellsNothing) {
    EXPECT_FALSE(DevicePower({}, files, clock).isAsleep());
    EXPECT_FALSE(DevicePower({tree.root() / "missing"}, files, clock).isAsleep());
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

TEST_F(SleepingDevice, IsReadAsATextWithoutANumberUntilItWakes) {
    become("suspended");
    const LiveSensor live = sensor(channel(SensorKind::temperature, 1e3, "45000\n"), power());
    const auto asleep = live.read();
    ASSERT_TRUE(asleep);
    EXPECT_TRUE(asleep->isAsleep);
    EXPECT_EQ(asleep->number, std::nullopt);
    EXPECT_EQ(asleep->text, "asleep");
    EXPECT_EQ(asleep->raw, "suspended");
    become("active");
    EXPECT_EQ(textOf(live), "asleep");
    clock->advance(DevicePower::validity + 1ns);
    EXPECT_EQ(numberOf(live), 45);
    EXPECT_FALSE(live.read()->isAsleep);
}

TEST_F(SleepingDevice, ReadsAsAsleepForTextsToo) {
    become("suspended");
    const LiveSensor live = sensor(channel(SensorKind::text, 1, "Full\n"), power());
    EXPECT_EQ(textOf(live), "asleep");
    become("active");
    clock->advance(DevicePower::validity + 1ns);
    EXPECT_EQ(textOf(live), "Full");
}

TEST_F(SleepingDevice, IsAskedForItsStateAndNotForAnythingElse) {
    SensorChannel channel = this->channel(SensorKind::energy, 1e6, "45000\n");
    channel.fault = tree.write("fault", "0\n");
    const auto device = power();
    LiveSensor live = sensor(channel, device);
    become("suspended");
    clock->advance(DevicePower::validity + 1ns);
    EXPECT_EQ(systemCallsOf([&] { live.meter(nullptr); }), (SystemCalls{.reads = 1})) << "its state alone";
    EXPECT_EQ(systemCallsOf([&] { EXPECT_EQ(textOf(live), "asleep"); }), SystemCalls{});
    clock->advance(DevicePower::validity + 1ns);
    EXPECT_EQ(systemCallsOf([&] { EXPECT_EQ(textOf(live), "asleep"); }), (SystemCalls{.reads = 1}));
}

TEST_F(SleepingDevice, SharesItsAnswerAmongItsChannels) {
    const auto device = power();
    const LiveSensor first = sensor(channel(SensorKind::temperature, 1e3, "45000\n"), device);
    const LiveSensor second = sensor(channel(SensorKind::temperature, 1e3, "46000\n"), device);
    ASSERT_TRUE(numberOf(first).has_value());
    become("suspended");
    EXPECT_EQ(numberOf(second), 46);
    clock->advance(DevicePower::validity + 1ns);
    EXPECT_EQ(textOf(second), "asleep");
    EXPECT_EQ(textOf(first), "asleep");
}

// Texts

TEST_F(LiveSensorTest, ATextIsTheWordInTheFile) {
    const LiveSensor live = sensor(channel(SensorKind::text, 1, "Discharging\n"));
    const auto sample = live.read();
    ASSERT_TRUE(sample);
    EXPECT_EQ(sample->text, "Discharging");
    EXPECT_EQ(sample->raw, "Discharging");
    EXPECT_EQ(sample->number, std::nullopt);
    EXPECT_FALSE(sample->isAsleep);
    tree.write("input", " Not charging \n");
    EXPECT_EQ(textOf(live), "Not charging");
    tree.write("input", "42\n");
    EXPECT_EQ(textOf(live), "42");
    EXPECT_EQ(numberOf(live), std::nullopt);
}

TEST_F(LiveSensorTest, ATextThatCannotBeReadHasNoReading) {
    const LiveSensor live = sensor(channel(SensorKind::text, 1, "Full\n"));
    for (const std::string& content : {std::string(), std::string("Full"), std::string("\n"),
                                       std::string("  \n"), std::string(4096, 'x') + "\n",
                                       std::string("Gr\xF6\xDF"
                                                   "e\n")}) {
        SCOPED_TRACE(content.size());
        tree.write("input", content);
        EXPECT_FALSE(live.read());
    }
}

// System calls

TEST_F(LiveSensorTest, AReadingIsOneReadOfItsFile) {
    const LiveSensor live = sensor(channel(SensorKind::temperature, 1e3, "45000\n"));
    for (int pass = 0; pass < 3; ++pass) {
        EXPECT_EQ(systemCallsOf([&] { EXPECT_EQ(numberOf(live), 45); }), (SystemCalls{.reads = 1}));
    }
}

TEST_F(LiveSensorTest, AReadingOfAChannelThatMayBeFaultyIsTwo) {
    SensorChannel doubtful = channel(SensorKind::temperature, 1e3, "45000\n");
    doubtful.fault = tree.write("fault", "0\n");
    const LiveSensor live = sensor(doubtful);
    EXPECT_EQ(systemCallsOf([&] { EXPECT_EQ(numberOf(live), 45); }), (SystemCalls{.reads = 2}));
}

TEST_F(LiveSensorTest, ChannelsOfOneFileShareIt) {
    const SensorChannel shared = channel(SensorKind::temperature, 1e3, "45000\n");
    const LiveSensor first = sensor(shared);
    const auto calls = systemCallsOf([&] { EXPECT_EQ(numberOf(sensor(shared)), 45); });
    EXPECT_EQ(calls, (SystemCalls{.reads = 1, .others = 1}))
        << "whether the file is still the one that is open";
    EXPECT_EQ(numberOf(first), 45);
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
    // The reads in quick succession are ignored: growth counts from 110 at two seconds.
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
    EXPECT_EQ(numberOf(live), 15);
    clock->advance(1s);
    count("35500000\n");
    EXPECT_EQ(numberOf(live), 0.5);
    EXPECT_EQ(live.read()->raw, "35500000") << "the counter, which the file holds";
}

TEST_F(EnergyCounter, HasNoPowerAtItsFirstReading) {
    const LiveSensor live = sensor(counter("5000000\n"));
    EXPECT_EQ(numberOf(live), std::nullopt);
    clock->advance(1s);
    count("6000000\n");
    EXPECT_EQ(numberOf(live), 1);
}

TEST_F(EnergyCounter, KeepsItsPowerBetweenCloseReadings) {
    LiveSensor live = sensor(counter("0\n"));
    live.meter(nullptr);
    clock->advance(1s);
    count("8000000\n");
    ASSERT_EQ(numberOf(live), 8);
    clock->advance(PowerMeter::shortestTime / 2);
    count("9000000\n");
    EXPECT_EQ(numberOf(live), 8);
}

TEST_F(EnergyCounter, CountsOnWhereItBeginsAnewAtItsRange) {
    SensorChannel channel = counter("99000000\n");
    channel.range = tree.write("range", "100000000\n");
    LiveSensor live = sensor(channel);
    live.meter(nullptr);
    clock->advance(1s);
    count("4000000\n");
    EXPECT_EQ(numberOf(live), 5);
}

TEST_F(EnergyCounter, TellsNothingWhereItGoesBackWithoutARange) {
    LiveSensor live = sensor(counter("99000000\n"));
    live.meter(nullptr);
    clock->advance(1s);
    count("4000000\n");
    EXPECT_EQ(numberOf(live), std::nullopt);
    clock->advance(1s);
    count("6000000\n");
    EXPECT_EQ(numberOf(live), 2);
}

TEST_F(EnergyCounter, TellsNothingWhileItCannotBeRead) {
    LiveSensor live = sensor(counter("0\n"));
    live.meter(nullptr);
    clock->advance(1s);
    count("");
    EXPECT_EQ(numberOf(live), std::nullopt);
    clock->advance(1s);
    count("6000000\n");
    EXPECT_EQ(numberOf(live), 3);
}

TEST_F(EnergyCounter, IsNotShownWithAPowerThatNothingHas) {
    LiveSensor live = sensor(counter("0\n"));
    live.meter(nullptr);
    clock->advance(1s);
    count("200000000000\n");
    EXPECT_EQ(numberOf(live), std::nullopt);
}

TEST_F(EnergyCounter, GoesOnWithTheMeterOfAnEarlierSensor) {
    LiveSensor earlier = sensor(counter("0\n"));
    earlier.meter(nullptr);
    clock->advance(1s);
    LiveSensor later = sensor(counter("4000000\n"));
    later.meter(&earlier);
    EXPECT_EQ(numberOf(later), 4);
    clock->advance(PowerMeter::shortestTime / 2);
    count("90000000\n");
    EXPECT_EQ(numberOf(earlier), 4);
}

TEST_F(EnergyCounter, BeginsItsOwnMeterAfterASensorThatHasNone) {
    LiveSensor live = sensor(counter("0\n"));
    SensorChannel temperature(SensorKind::temperature, 1);
    temperature.file = tree.write("temperature", "45000\n");
    const LiveSensor other = sensor(temperature);
    live.meter(&other);
    clock->advance(1s);
    count("4000000\n");
    EXPECT_EQ(numberOf(live), 4);
}

/// The counter grows by one joule per millisecond of the fake clock, whatever thread reads it: no thread may
/// see a different power.
TEST(PowerMeter, MayBeAskedByTwoThreadsAtOnce) {
    PowerMeter meter(0);
    std::atomic<std::int64_t> milliseconds{0};
    std::atomic<int> powers{0};
    const auto ask = [&] {
        for (int round = 0; round < 20'000; ++round) {
            const auto now = std::chrono::milliseconds(++milliseconds);
            const auto power = meter.powerAt(static_cast<double>(now.count()), now);
            if (!power) continue;
            ++powers;
            EXPECT_NEAR(*power, 1000, 1e-6);
        }
    };
    std::thread other(ask);
    ask();
    other.join();
    EXPECT_GT(powers, 10'000);
}

TEST_F(LiveSensorTest, OnlyEnergyIsMetered) {
    LiveSensor live = sensor(channel(SensorKind::power, 1e6, "12500000\n"));
    live.meter(nullptr);
    EXPECT_EQ(numberOf(live), 12.5);
    clock->advance(1s);
    EXPECT_EQ(numberOf(live), 12.5);
}

/// After hibernation a counter starts at 0, which is not a wrap-around.
TEST(PowerMeter, ACounterThatBeganAnewTellsNoPower) {
    using namespace std::chrono_literals;
    PowerMeter meter(262'144);
    EXPECT_EQ(meter.powerAt(5000, 0s), std::nullopt);
    EXPECT_EQ(meter.powerAt(1, 10s), std::nullopt);
    EXPECT_EQ(meter.powerAt(101, 20s), 10);
}

} // namespace
} // namespace kelvinbar::live_sensor_test
