#include "machines/demo/DemoMachine.h"

#include "base/NumberText.h"
#include "machines/demo/DemoSource.h"
#include "machines/replay/ReplayMachine.h"
#include "store/LoadPass.h"
#include "tests/fakes/FakeClocks.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::demo_machine_test {

namespace {

using namespace std::chrono_literals;

using Readings = std::map<std::string, SMCReading>;

/// The Intel notebook.
struct DemoMachine : testing::Test {
    std::shared_ptr<fakes::FakeMonotonicClock> clock = std::make_shared<fakes::FakeMonotonicClock>();
    Machine host{.source = nullptr, .system = nullptr, .clock = clock};
    Machine machine = makeDemoMachine("intel-notebook", host);

    [[nodiscard]] Readings read() const { return readingsOf(machine); }

    [[nodiscard]] static Readings readingsOf(const Machine& machine) {
        const auto none = std::make_shared<const KeySet>();
        const LoadPass pass{.fixedCandidates = none,
                            .shouldDiscover = true,
                            .cachedDynamicKeys = none,
                            .readSuperIOFans = true};
        Readings readings;
        for (SMCReading& reading : loadReadings(machine, pass).readings) {
            const std::string key = reading.key;
            readings.emplace(key, std::move(reading));
        }
        return readings;
    }

    /// The readings at several times within an hour.
    [[nodiscard]] std::vector<Readings> readAnHour() const {
        std::vector<Readings> hour;
        for (auto time = 0s; time <= 3600s; time += 15s) {
            hour.push_back(read());
            clock->advance(15s);
        }
        return hour;
    }
};

Readings withUnit(const Readings& readings, const std::string& unit) {
    Readings found;
    for (const auto& [key, reading] : readings) {
        if (reading.unit == unit && reading.numericValue) found.emplace(key, reading);
    }
    return found;
}

std::set<std::string> keysOf(const Readings& readings) {
    std::set<std::string> keys;
    for (const auto& [key, reading] : readings) keys.insert(key);
    return keys;
}

double numberOf(const Readings& readings, const std::string& key) {
    const auto found = readings.find(key);
    return found == readings.end() ? std::nan("") : found->second.numericValue.value_or(std::nan(""));
}

/// The mean over the readings of one kind.
double meanOf(const Readings& readings) {
    double sum = 0;
    for (const auto& [key, reading] : readings) sum += *reading.numericValue;
    return sum / static_cast<double>(readings.size());
}

TEST_F(DemoMachine, HasReadingsOfEveryKind) {
    const Readings readings = read();
    EXPECT_GE(withUnit(readings, "°C").size(), 20U);
    EXPECT_GE(withUnit(readings, "V").size(), 5U);
    EXPECT_GE(withUnit(readings, "A").size(), 5U);
    EXPECT_GE(withUnit(readings, "W").size(), 5U);
    EXPECT_EQ(readings.count("F0Ac"), 1U);
    EXPECT_EQ(readings.count("F1Ac"), 1U);
}

TEST_F(DemoMachine, GivesTheSameValuesAtTheSameTime) {
    const Readings first = read();
    EXPECT_EQ(read(), first);
    clock->advance(100s);
    const Readings later = read();
    EXPECT_NE(later, first);
    EXPECT_EQ(readingsOf(makeDemoMachine("intel-notebook", host)), later);
}

/// Pictures of the panel show these values.
TEST_F(DemoMachine, ValuesAtAMomentStayTheSameInEveryVersion) {
    struct Expected {
        std::string_view key;
        std::string_view value;
        std::string_view raw;
    };

    clock->advance(99s); // to 100 s
    const Readings readings = read();
    for (const Expected& expected :
         {Expected{"TC0D", "57.70", "39B4"}, Expected{"TC0P", "49.12", "311E"},
          Expected{"TB0T", "29.43", "1D6F"}, Expected{"IC0C", "5.109", "0A38"}, Expected{"ID0R", "0", "0000"},
          Expected{"F0Ac", "2470", "2698"}, Expected{"F0Mx", "5880", "5BE0"},
          Expected{"F1Ac", "2295", "23DD"}, Expected{"PCPL", "56", "3800"}, Expected{"PCPT", "5.73", "05BB"},
          Expected{"B0CT", "143", "008F"}}) {
        const std::string key(expected.key);
        ASSERT_TRUE(readings.contains(key)) << key;
        EXPECT_EQ(readings.at(key).value, expected.value) << key;
        EXPECT_EQ(readings.at(key).raw, expected.raw) << key;
        EXPECT_EQ(readings.at(key).status, "OK") << key;
    }
}

TEST_F(DemoMachine, ValuesMoveFromSecondToSecond) {
    const Readings first = read();
    clock->advance(1s);
    const Readings second = read();
    EXPECT_NE(numberOf(first, "PCPT"), numberOf(second, "PCPT"));
    EXPECT_NE(numberOf(first, "F0Ac"), numberOf(second, "F0Ac"));
}

TEST_F(DemoMachine, LosesNoKeyInAnHour) {
    const std::set<std::string> expected = keysOf(read());
    ASSERT_GE(expected.size(), 80U);
    for (const Readings& readings : readAnHour()) {
        ASSERT_EQ(keysOf(readings), expected);
        ASSERT_TRUE(std::ranges::all_of(
            readings, [](const auto& entry) { return entry.second.hasDisplayableValue(); }));
    }
}

TEST_F(DemoMachine, TemperaturesMoveAndStayPlausible) {
    const std::vector<Readings> hour = readAnHour();
    for (const auto& [key, first] : withUnit(hour.front(), "°C")) {
        double lowest = 1000;
        double highest = -1000;
        for (const Readings& readings : hour) {
            const double value = numberOf(readings, key);
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
        }
        EXPECT_GE(lowest, 20) << key;
        EXPECT_LE(highest, 110) << key;
        EXPECT_GE(highest - lowest, 1) << key;
    }
}

TEST_F(DemoMachine, FansMoveAndStayBelowTheirMaximum) {
    const std::vector<Readings> hour = readAnHour();
    for (const std::string fan : {"F0", "F1"}) {
        const double maximum = numberOf(hour.front(), fan + "Mx");
        ASSERT_GT(maximum, 0) << fan;
        std::set<double> values;
        for (const Readings& readings : hour) {
            for (const std::string suffix : {"Ac", "Tg"}) {
                const double value = numberOf(readings, fan + suffix);
                ASSERT_GT(value, 0) << fan << suffix;
                ASSERT_LE(value, maximum * 1.1) << fan << suffix;
            }
            values.insert(numberOf(readings, fan + "Ac"));
        }
        EXPECT_GE(values.size(), 50U) << fan;
    }
}

TEST_F(DemoMachine, FansAreFasterWhenItIsHot) {
    const std::vector<Readings> hour = readAnHour();
    const auto isCooler = [](const Readings& left, const Readings& right) {
        return meanOf(withUnit(left, "°C")) < meanOf(withUnit(right, "°C"));
    };
    const auto [coolest, hottest] = std::ranges::minmax_element(hour, isCooler);
    EXPECT_GT(numberOf(*hottest, "F0Ac"), numberOf(*coolest, "F0Ac"));
    EXPECT_GT(numberOf(*hottest, "F1Ac"), numberOf(*coolest, "F1Ac"));
}

TEST_F(DemoMachine, PowerMovesAndDoesNotTurnNegative) {
    const std::vector<Readings> hour = readAnHour();
    for (const std::string key : {"PCPT", "PSTR", "PG0C"}) {
        std::set<double> values;
        for (const Readings& readings : hour) values.insert(numberOf(readings, key));
        EXPECT_GT(*values.begin(), 0) << key;
        EXPECT_LE(*values.rbegin(), 100) << key;
        EXPECT_GE(values.size(), 50U) << key;
    }
}

TEST_F(DemoMachine, VoltagesWaverByLessThanOnePercent) {
    const std::vector<Readings> hour = readAnHour();
    bool anyWavers = false;
    for (const auto& [key, first] : withUnit(hour.front(), "V")) {
        double sum = 0;
        for (const Readings& readings : hour) sum += numberOf(readings, key);
        const double mean = sum / static_cast<double>(hour.size());
        for (const Readings& readings : hour) {
            const double value = numberOf(readings, key);
            ASSERT_LE(std::fabs(value - mean), std::fabs(mean) * 0.01) << key;
            anyWavers = anyWavers || value != *first.numericValue;
        }
    }
    EXPECT_TRUE(anyWavers);
}

TEST_F(DemoMachine, LimitsNamesAndCountsDoNotMove) {
    const std::vector<Readings> hour = readAnHour();
    for (const std::string key : {"F0Mn", "F0Mx", "F0ID", "F1Mn", "F1Mx", "F1ID", "FNum", "PCPL", "B0CT",
                                  "B0DC", "B0FC", "BNum", "RBr ", "REV "}) {
        ASSERT_TRUE(hour.front().contains(key)) << key;
        for (const Readings& readings : hour) ASSERT_EQ(readings.at(key), hour.front().at(key)) << key;
    }
    for (const auto& [key, first] : hour.front()) {
        for (const Readings& readings : hour) ASSERT_EQ(readings.at(key).name, first.name) << key;
    }
}

TEST_F(DemoMachine, HasTheClockAndTheTextsOfItsHost) {
    host.texts.reading = "Reading";
    const Machine made = makeDemoMachine("linux-pc", host);
    EXPECT_EQ(made.clock, clock);
    EXPECT_EQ(made.texts.reading, "Reading");
}

TEST_F(DemoMachine, IsThereUnderEachNameAndUnderNoOther) {
    const std::vector<std::string_view> names = demoMachineNames();
    EXPECT_EQ(names.size(), 4U);
    for (const std::string_view name : names) {
        EXPECT_GE(readingsOf(makeDemoMachine(name, host)).size(), 50U) << name;
    }
    EXPECT_EQ(makeDemoMachine("toaster", host).source, nullptr);
    EXPECT_EQ(makeDemoMachine("", host).source, nullptr);
}

/// Machines with kernel sensors, which bring their own names.
struct DemoPC : DemoMachine {
    DemoPC() { machine = makeDemoMachine("linux-pc", host); }

    /// The lowest and the highest value of a reading within an hour.
    static std::pair<double, double> rangeOf(const std::vector<Readings>& hour, const std::string& key) {
        double lowest = numberOf(hour.front(), key);
        double highest = lowest;
        for (const Readings& readings : hour) {
            lowest = std::min(lowest, numberOf(readings, key));
            highest = std::max(highest, numberOf(readings, key));
        }
        return {lowest, highest};
    }
};

TEST_F(DemoPC, LosesNoKeyInAnHour) {
    const std::set<std::string> expected = keysOf(read());
    ASSERT_EQ(expected.size(), 50U);
    for (const Readings& readings : readAnHour()) ASSERT_EQ(keysOf(readings), expected);
}

TEST_F(DemoPC, TemperaturesFansPowerAndClocksMoveAndStayPlausible) {
    struct Limits {
        std::string unit;
        double lowest;
        double highest;
        double leastMotion;
    };

    const std::vector<Readings> hour = readAnHour();
    for (const Limits& limits : {Limits{"°C", 20, 95, 5}, Limits{"RPM", 500, 3500, 100},
                                 Limits{"W", 10, 250, 50}, Limits{"MHz", 300, 2600, 300}}) {
        const Readings readings = withUnit(hour.front(), limits.unit);
        EXPECT_FALSE(readings.empty()) << limits.unit;
        for (const auto& [key, reading] : readings) {
            const auto [lowest, highest] = rangeOf(hour, key);
            EXPECT_GE(lowest, limits.lowest) << key;
            EXPECT_LE(highest, limits.highest) << key;
            EXPECT_GE(highest - lowest, limits.leastMotion) << key;
        }
    }
}

TEST_F(DemoPC, VoltagesWaverByLessThanOnePercent) {
    const std::vector<Readings> hour = readAnHour();
    const Readings voltages = withUnit(hour.front(), "V");
    EXPECT_EQ(voltages.size(), 16U);
    for (const auto& [key, reading] : voltages) {
        const auto [lowest, highest] = rangeOf(hour, key);
        EXPECT_LT(lowest, highest) << key;
        EXPECT_LE(highest - lowest, lowest * 0.01) << key;
    }
}

/// The kernel's counts per unit.
double countsPerUnit(const std::string& unit) {
    if (unit == "RPM") return 1;
    return unit == "W" || unit == "MHz" ? 1e6 : 1e3;
}

TEST_F(DemoPC, TheRawTextIsTheValueInTheKernelsCounts) {
    for (const Readings& readings : readAnHour()) {
        for (const auto& [key, reading] : readings) {
            if (!reading.numericValue) continue;
            const auto counts = wholeNumberIn<std::int64_t>(reading.raw);
            ASSERT_TRUE(counts) << key << " " << reading.raw;
            const double value = static_cast<double>(*counts) / countsPerUnit(reading.unit);
            ASSERT_NEAR(*reading.numericValue, value, 0.01) << key;
        }
    }
}

TEST_F(DemoPC, SensorsWithoutAFractionKeepNone) {
    for (const Readings& readings : readAnHour()) {
        for (const std::string key : {"amdgpu-pci-0300/temp1", "amdgpu-pci-0300/power1",
                                      "amdgpu-pci-0300/freq1", "nct6798-isa-0290/temp1"}) {
            ASSERT_LE(distanceFromWhole(numberOf(readings, key)), 1e-9) << key;
        }
    }
}

TEST_F(DemoPC, TheDriveStaysAsleep) {
    for (const Readings& readings : readAnHour()) {
        const SMCReading& drive = readings.at("drivetemp-scsi-1-0/temp1");
        ASSERT_EQ(drive.value, "asleep");
        ASSERT_EQ(drive.raw, "suspended");
        ASSERT_EQ(drive.numericValue, std::nullopt);
        ASSERT_EQ(drive.unit, "");
    }
}

TEST_F(DemoPC, NeighboursDoNotMoveAsOne) {
    const std::vector<Readings> hour = readAnHour();
    const auto together = std::ranges::count_if(hour, [&](const Readings& readings) {
        const auto shareOf = [&](const std::string& key) {
            return numberOf(readings, key) / numberOf(hour.front(), key);
        };
        return std::fabs(shareOf("k10temp-pci-00c3/temp3") - shareOf("k10temp-pci-00c3/temp4")) < 1e-4;
    });
    EXPECT_LT(together, 20);
}

TEST_F(DemoPC, HasTheSameValuesAtTheSameTime) {
    clock->advance(99s);
    const Readings readings = read();
    EXPECT_EQ(readingsOf(makeDemoMachine("linux-pc", host)), readings);
    clock->advance(1s);
    EXPECT_NE(read(), readings);
}

/// The reading of one snapshot line, at a time with load.
RawReading movedLine(const std::string& line) {
    const auto clock = std::make_shared<fakes::FakeMonotonicClock>();
    clock->advance(99s);
    DemoSource source(makeReplayMachine("Kelvinbar snapshot\n" + line, clock).machine->source, clock);
    return source.readCandidateKeys(source.discoverKeys({})).front();
}

TEST(DemoSource, CurrentsFollowTheLoad) {
    const RawReading moved = movedLine("asusec-isa-0000/curr1\tasusec\tCPU Current\t33.50 A\tRAW=33500");
    EXPECT_NE(moved.raw, "33500");
    EXPECT_NEAR(*moved.numericValue, leadingNumber(moved.raw) / 1000, 1e-6);
}

TEST(DemoSource, WhatDoesNotFollowALoadStaysAsItWasRecorded) {
    for (const std::string line : {"BAT0/charge_now\tbattery\tBattery Charge\t4000 mAh\tRAW=4000000",
                                   "BAT0/status\tbattery\tBattery Status\tFull\tRAW=Full",
                                   "intel-rapl-0/energy\trapl\tCPU Package Power\t9.50 W\tRAW=99123456",
                                   "sht4x-i2c-1-44/humidity1\tsht4x\tHumidity\t45.50 %\tRAW=45500",
                                   "nct6798-isa-0290/fan3\tnct6798\tMainboard Fan 3\t0 RPM\tRAW=0"}) {
        const RawReading moved = movedLine(line);
        EXPECT_EQ(moved.raw, line.substr(line.rfind('=') + 1));
    }
}

TEST(DemoSource, AValueThatWasComputedKeepsItsRatioToTheRawText) {
    const RawReading moved = movedLine("nct6798-isa-0290/in5\tnct6798\tMainboard +12V\t12.12 V\tRAW=1010");
    EXPECT_NEAR(*moved.numericValue, leadingNumber(moved.raw) * 0.012, 1e-9);
    EXPECT_NE(moved.raw, "1010");
}

} // namespace
} // namespace kelvinbar::demo_machine_test
