// The sample of a Linux PC, compared with what the naming rules make of its devices.

#include "base/NumberText.h"
#include "base/Text.h"
#include "machines/linux/naming/SensorMeaning.h"
#include "machines/linux/naming/SensorNames.h"
#include "machines/replay/ReplayMachine.h"
#include "resources/SampleMachines.h"
#include "tests/fakes/FakeClocks.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::linux_pc_test {

namespace {

using enum SensorKind;

/// A channel as its driver describes it; without a label for a channel that has none.
SensorChannel channel(SensorKind kind, int number, std::string_view label = {}) {
    SensorChannel channel(kind, number);
    channel.label = label;
    channel.isLabelled = !label.empty();
    return channel;
}

std::vector<SensorChannel> unlabelled(SensorKind kind, std::initializer_list<int> numbers) {
    std::vector<SensorChannel> channels;
    for (const int number : numbers) channels.push_back(channel(kind, number));
    return channels;
}

SensorChip chip(std::string_view name, std::string_view sensorsName, std::vector<SensorChannel> channels,
                std::string_view model = {}) {
    SensorChip chip;
    chip.name = name;
    chip.stableName = name;
    chip.sensorsName = sensorsName;
    chip.device = sensorsName;
    chip.model = model;
    chip.channels = std::move(channels);
    return chip;
}

SensorChip mainboard() {
    std::vector<SensorChannel> channels = unlabelled(fan, {1, 2, 3, 4, 5, 7});
    std::ranges::move(unlabelled(voltage, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}),
                      std::back_inserter(channels));
    for (const auto& [number, label] : std::map<int, std::string_view>{{1, "SYSTIN"},
                                                                       {2, "CPUTIN"},
                                                                       {3, "AUXTIN0"},
                                                                       {4, "AUXTIN1"},
                                                                       {5, "AUXTIN2"},
                                                                       {6, "AUXTIN3"},
                                                                       {7, "PECI Agent 0 Calibration"},
                                                                       {8, "AUXTIN4"},
                                                                       {13, "TSI0_TEMP"}}) {
        channels.push_back(channel(temperature, number, label));
    }
    return chip("nct6798", "nct6798-isa-0290", std::move(channels));
}

SensorChip graphicsCard() {
    return chip("amdgpu", "amdgpu-pci-0300",
                {channel(fan, 1), channel(frequency, 1, "sclk"), channel(frequency, 2, "mclk"),
                 channel(voltage, 0, "vddgfx"), channel(power, 1, "PPT"), channel(temperature, 1, "edge"),
                 channel(temperature, 2, "junction"), channel(temperature, 3, "mem")});
}

/// The devices of the sample.
std::vector<SensorChip> devices() {
    return {graphicsCard(),
            chip("drivetemp", "drivetemp-scsi-1-0", {channel(temperature, 1)}, "WDC WD40EFRX-68N"),
            chip("k10temp", "k10temp-pci-00c3",
                 {channel(temperature, 1, "Tctl"), channel(temperature, 3, "Tccd1"),
                  channel(temperature, 4, "Tccd2")}),
            chip("mt7921_phy0", "mt7921_phy0-pci-0500", {channel(temperature, 1)}),
            mainboard(),
            chip("nvme", "nvme-pci-0100",
                 {channel(temperature, 1, "Composite"), channel(temperature, 2, "Sensor 1"),
                  channel(temperature, 3, "Sensor 2")},
                 "Samsung SSD 980 1TB"),
            chip("nvme", "nvme-pci-0400",
                 {channel(temperature, 1, "Composite"), channel(temperature, 2, "Sensor 1")},
                 "WD Blue SN570 1TB"),
            chip("r8169_0_a00:00", "r8169_0_a00:00-mdio-0", {channel(temperature, 1)}),
            chip("spd5118", "spd5118-i2c-4-51", {channel(temperature, 1)}),
            chip("spd5118", "spd5118-i2c-4-53", {channel(temperature, 1)})};
}

/// The thermistor input of the mainboard that nothing is connected to.
constexpr std::string_view unconnected = "nct6798-isa-0290/temp5";

std::map<std::string, SensorName> expectedNames() {
    std::map<std::string, SensorName> names;
    for (const auto& ofChip : sensorNames(devices())) {
        for (const std::optional<SensorName>& name : ofChip) {
            if (name) names.emplace(name->key, *name);
        }
    }
    return names;
}

std::vector<RawReading> sampleReadings() {
    const auto sample = std::ranges::find(sampleMachines(), "linux-pc", &SampleMachine::name);
    const Machine machine =
        makeReplayMachine(sample->text, std::make_shared<fakes::FakeMonotonicClock>()).machine.value();
    return machine.source->readCandidateKeys(machine.source->discoverKeys({}));
}

TEST(LinuxPC, HasAReadingOfEveryConnectedChannelAndNoOther) {
    std::set<std::string> keys;
    for (const RawReading& reading : sampleReadings()) keys.insert(reading.key);
    std::set<std::string> expected;
    for (const auto& [key, name] : expectedNames()) expected.insert(key);
    EXPECT_EQ(expected.erase(std::string(unconnected)), 1U);
    EXPECT_EQ(keys, expected);
}

TEST(LinuxPC, EveryLineHasTheTypeNameCategoryAndUnitOfTheNamingRules) {
    const auto names = expectedNames();
    for (const RawReading& reading : sampleReadings()) {
        ASSERT_TRUE(names.contains(reading.key)) << reading.key;
        const SensorName& name = names.at(reading.key);
        EXPECT_EQ(reading.type, name.type) << reading.key;
        EXPECT_EQ(reading.name, name.name) << reading.key;
        EXPECT_EQ(reading.category, rawValue(name.category)) << reading.key;
        EXPECT_EQ(reading.unit, reading.numericValue ? name.unit : "") << reading.key;
    }
}

TEST(LinuxPC, NoNameStandsTwiceOrHasMoreThanFortyCharacters) {
    std::set<std::string> names;
    for (const RawReading& reading : sampleReadings()) {
        ASSERT_TRUE(reading.name) << reading.key;
        EXPECT_TRUE(names.insert(*reading.name).second) << *reading.name;
        EXPECT_LE(characterCount(*reading.name), 40U) << *reading.name;
        EXPECT_FALSE(reading.name->empty()) << reading.key;
    }
}

TEST(LinuxPC, TheRawTextIsTheValueInTheKernelsCounts) {
    const std::map<std::string_view, double> countsPerUnit{
        {"°C", 1e3}, {"V", 1e3}, {"W", 1e6}, {"MHz", 1e6}, {"RPM", 1}};
    for (const RawReading& reading : sampleReadings()) {
        if (!reading.numericValue) continue;
        const double counts = countsPerUnit.at(*reading.unit);
        EXPECT_NEAR(*reading.numericValue, leadingNumber(reading.raw) / counts, 0.0051) << reading.key;
    }
}

TEST(LinuxPC, OneDriveIsAsleep) {
    std::vector<std::string> asleep;
    for (const RawReading& reading : sampleReadings()) {
        if (reading.numericValue) continue;
        asleep.push_back(*reading.name);
        EXPECT_EQ(reading.value, "asleep");
        EXPECT_EQ(reading.raw, "suspended");
        EXPECT_EQ(reading.unit, "");
    }
    EXPECT_THAT(asleep, testing::ElementsAre("SATA Drive"));
}

} // namespace
} // namespace kelvinbar::linux_pc_test
