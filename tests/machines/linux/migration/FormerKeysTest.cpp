#include "catalogue/SMCKeyDatabase.h"
#include "machines/linux/naming/KeyAssignment.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

using enum SensorKind;
using Texts = std::vector<std::string>;
using Chips = std::vector<SensorChip>;
using KeySet = KeyAssignment::KeySet;

std::string numbered(std::string_view text, int number) {
    return std::string(text).append(std::to_string(number));
}

SensorChannel labelled(SensorKind kind, int number, std::string_view label) {
    SensorChannel channel(kind, number);
    channel.label = label;
    channel.isLabelled = true;
    return channel;
}

std::string_view filePrefix(SensorKind kind) {
    switch (kind) {
    case temperature:
        return "temp";
    case voltage:
        return "in";
    case current:
        return "curr";
    case power:
        return "power";
    case energy:
        return "energy";
    case frequency:
        return "freq";
    case humidity:
        return "humidity";
    default:
        return "fan";
    }
}

/// A channel that goes by the prefix of its file.
SensorChannel unlabelled(SensorKind kind, int number) {
    SensorChannel channel(kind, number);
    channel.label = numbered(filePrefix(kind), number);
    return channel;
}

/// Channels that are numbered from 1 in the order of their labels.
std::vector<SensorChannel> labelledAll(SensorKind kind, const Texts& labels) {
    std::vector<SensorChannel> channels;
    for (const std::string& label : labels) {
        channels.push_back(labelled(kind, static_cast<int>(channels.size()) + 1, label));
    }
    return channels;
}

std::vector<SensorChannel> unlabelledAll(SensorKind kind, int count) {
    std::vector<SensorChannel> channels;
    for (int number = 1; number <= count; ++number) channels.push_back(unlabelled(kind, number));
    return channels;
}

SensorChip chip(std::string_view device, std::string_view name, std::vector<SensorChannel> channels) {
    SensorChip chip;
    chip.device = device;
    chip.name = name;
    chip.stableName = name;
    chip.channels = std::move(channels);
    return chip;
}

SensorChip coretemp(const Texts& labels) {
    return chip("platform/coretemp.0", "coretemp", labelledAll(temperature, labels));
}

const AssignedKey* assignedTo(const KeyPlan& plan, std::size_t chip, std::size_t channel) {
    const auto found = std::ranges::find_if(plan.keys, [=](const AssignedKey& key) {
        return key.place.chip == chip && key.place.channel == channel;
    });
    return found == plan.keys.end() ? nullptr : &*found;
}

/// The keys of a chip in the order of its channels, empty for those that have none.
Texts keysOf(const KeyPlan& plan, const Chips& chips, std::size_t chip) {
    Texts keys;
    for (std::size_t channel = 0; channel < chips[chip].channels.size(); ++channel) {
        const AssignedKey* const assigned = assignedTo(plan, chip, channel);
        keys.push_back(assigned == nullptr ? std::string() : assigned->key);
    }
    return keys;
}

/// The names that people see for these keys.
Texts namesOf(const Texts& keys) {
    Texts names;
    for (const std::string& key : keys) {
        const auto definition = SMCKeyDatabase::hwMonitorDefinition(key);
        names.push_back(definition ? definition->name : "?");
    }
    return names;
}

std::string typeOf(const KeyPlan& plan, std::size_t chip, std::size_t channel) {
    const AssignedKey* const assigned = assignedTo(plan, chip, channel);
    return assigned == nullptr ? std::string() : std::string(assigned->type);
}

Texts registryLabels(const KeyPlan& plan, const Chips& chips) {
    Texts labels;
    for (const RegistryFanPlace& fan : plan.registryFans) {
        labels.push_back(chips[fan.place.chip].channels[fan.place.channel].label);
    }
    return labels;
}

std::size_t channelCount(const Chips& chips) {
    std::size_t count = 0;
    for (const SensorChip& chip : chips) count += chip.channels.size();
    return count;
}

void expectEachKeyOnce(const KeyPlan& plan) {
    EXPECT_TRUE(std::ranges::is_sorted(plan.keys, {}, &AssignedKey::key));
    const auto twice = std::ranges::adjacent_find(plan.keys, {}, &AssignedKey::key);
    EXPECT_TRUE(twice == plan.keys.end()) << twice->key;
    std::set<std::pair<std::size_t, std::size_t>> places;
    for (const AssignedKey& key : plan.keys) {
        EXPECT_TRUE(places.emplace(key.place.chip, key.place.channel).second) << key.key;
    }
}

class KeyAssignmentTest : public testing::Test {
  protected:
    KeyAssignment assignment;

    KeyPlan plan(const Chips& chips, const KeySet& controllerKeys = {}) {
        KeyPlan plan = assignment.plan(chips, controllerKeys);
        expectEachKeyOnce(plan);
        return plan;
    }

    /// The keys of a single chip.
    Texts keysOfChip(const SensorChip& chip, const KeySet& controllerKeys = {}) {
        const Chips chips{chip};
        return keysOf(plan(chips, controllerKeys), chips, 0);
    }
};

// Processors

TEST_F(KeyAssignmentTest, NothingGetsNoKeys) {
    const KeyPlan empty = plan({});
    EXPECT_TRUE(empty.keys.empty());
    EXPECT_TRUE(empty.registryFans.empty());
    EXPECT_TRUE(empty.unplaced.empty());
}

TEST_F(KeyAssignmentTest, PackageAndCoresHaveTheirNumbers) {
    const Texts keys = keysOfChip(coretemp({"Package id 0", "Core 0", "Core 1", "Core 10", "Core 15"}));
    EXPECT_EQ(keys, (Texts{"TC0T", "TC0C", "TC1C", "TCAC", "TCFC"}));
    EXPECT_EQ(namesOf(keys), (Texts{"CPU Package", "Core 0", "Core 1", "Core 10", "Core 15"}));
}

TEST_F(KeyAssignmentTest, CoresOfTwoKindsAreToldApart) {
    const Texts keys = keysOfChip(coretemp({"Package id 0", "P-Core 0", "P-Core 5", "E-Core 0", "E-Core 7"}));
    EXPECT_EQ(keys, (Texts{"TC0T", "Tp0C", "Tp5C", "Te0C", "Te7C"}));
    EXPECT_EQ(namesOf(keys),
              (Texts{"CPU Package", "CPU P-Core 0", "CPU P-Core 5", "CPU E-Core 0", "CPU E-Core 7"}));
}

TEST_F(KeyAssignmentTest, TwoPackagesHaveTheirNumbersAndNoCoreIsLost) {
    const Chips chips{
        chip("platform/coretemp.0", "coretemp", labelledAll(temperature, {"Package id 0", "Core 0"})),
        chip("platform/coretemp.1", "coretemp", labelledAll(temperature, {"Package id 1", "Core 0"}))};
    const KeyPlan both = plan(chips);
    EXPECT_EQ(keysOf(both, chips, 0), (Texts{"TC0T", "TC0C"}));
    EXPECT_EQ(keysOf(both, chips, 1), (Texts{"TC1T", "Ts0C"}));
}

TEST_F(KeyAssignmentTest, FortyCoresAreAllThere) {
    Texts labels{"Package id 0"};
    for (int core = 0; core < 40; ++core) labels.push_back(numbered("Core ", core));
    const Chips chips{coretemp(labels)};
    const KeyPlan many = plan(chips);
    EXPECT_EQ(many.keys.size(), labels.size());
    EXPECT_TRUE(many.unplaced.empty());
    for (const std::string& name : namesOf(keysOf(many, chips, 0))) EXPECT_NE(name, "?");
}

TEST_F(KeyAssignmentTest, TheControlTemperatureIsThePackageWhereThereIsNoDie) {
    EXPECT_EQ(keysOfChip(chip("pci/18.3", "k10temp", labelledAll(temperature, {"Tctl", "Tccd1", "Tccd2"}))),
              (Texts{"TC0T", "TC1D", "TC2D"}));
}

TEST_F(KeyAssignmentTest, TheDieIsThePackageBesideTheControlTemperature) {
    EXPECT_EQ(keysOfChip(chip("pci/18.3", "k10temp", labelledAll(temperature, {"Tctl", "Tdie"}))),
              (Texts{"TC0P", "TC0T"}));
}

TEST_F(KeyAssignmentTest, TwoProcessorsOfOneChipEachAreCounted) {
    const Chips chips{chip("pci/18.3", "k10temp", labelledAll(temperature, {"Tctl"})),
                      chip("pci/19.3", "k10temp", labelledAll(temperature, {"Tctl"}))};
    const KeyPlan both = plan(chips);
    EXPECT_EQ(keysOf(both, chips, 0), Texts{"TC0T"});
    EXPECT_EQ(keysOf(both, chips, 1), Texts{"TC1T"});
}

TEST_F(KeyAssignmentTest, ProcessorPowerZonesAreNamed) {
    const Chips chips{chip("intel-rapl:0", "rapl", {labelled(energy, 0, "package-0")}),
                      chip("intel-rapl:0:0", "rapl", {labelled(energy, 0, "core")}),
                      chip("intel-rapl:0:1", "rapl", {labelled(energy, 0, "uncore")}),
                      chip("intel-rapl:0:2", "rapl", {labelled(energy, 0, "dram")}),
                      chip("intel-rapl:1", "rapl", {labelled(energy, 0, "package-1")})};
    const KeyPlan zones = plan(chips);
    EXPECT_EQ(keysOf(zones, chips, 0), Texts{"PCPR"});
    EXPECT_EQ(keysOf(zones, chips, 1), Texts{"PCPC"});
    EXPECT_EQ(keysOf(zones, chips, 2), Texts{"PCPG"});
    EXPECT_EQ(keysOf(zones, chips, 3), Texts{"PC00"});
    EXPECT_EQ(keysOf(zones, chips, 4), Texts{"PC1R"});
    EXPECT_EQ(typeOf(zones, 0, 0), "flt ");
}

// Graphics, drives, memory, cards, firmware

TEST_F(KeyAssignmentTest, PartsOfAGraphicsChipAreNamed) {
    const Texts keys = keysOfChip(
        chip("pci/03:00.0", "amdgpu",
             {labelled(temperature, 1, "edge"), labelled(temperature, 2, "junction"),
              labelled(temperature, 3, "mem"), labelled(voltage, 0, "vddgfx"), labelled(power, 1, "PPT")}));
    EXPECT_EQ(keys, (Texts{"TG0D", "TG0C", "TG0M", "VG0C", "PG0C"}));
    EXPECT_EQ(namesOf(keys),
              (Texts{"GPU 0 Die", "GPU 0 Core", "GPU 0 Memory", "GPU 0 Voltage", "GPU 0 Package"}));
}

TEST_F(KeyAssignmentTest, GraphicsChipsAreCountedInTheOrderOfTheirDevices) {
    const auto parts = labelledAll(temperature, {"edge", "junction", "mem"});
    const Chips chips{chip("pci/03:00.0", "amdgpu", parts), chip("pci/0c:00.0", "amdgpu", parts)};
    const KeyPlan both = plan(chips);
    EXPECT_EQ(keysOf(both, chips, 0), (Texts{"TG0D", "TG0C", "TG0M"}));
    EXPECT_EQ(keysOf(both, chips, 1), (Texts{"TG1D", "TG1C", "TG1M"}));
}

TEST_F(KeyAssignmentTest, GraphicsChipsOfDifferentMakeAreCountedTogether) {
    const Chips chips{chip("pci/03:00.0", "nouveau", {unlabelled(temperature, 1)}),
                      chip("pci/0c:00.0", "amdgpu", {labelled(temperature, 1, "edge")})};
    const KeyPlan both = plan(chips);
    EXPECT_EQ(keysOf(both, chips, 0), Texts{"TG0D"});
    EXPECT_EQ(keysOf(both, chips, 1), Texts{"TG1D"});
}

TEST_F(KeyAssignmentTest, SolidStateDrivesHaveTheirIndexAndTheSensorsTheirNumbers) {
    const auto sensors = labelledAll(temperature, {"Composite", "Sensor 1", "Sensor 2", "Sensor 8"});
    const Chips chips{chip("pci/04:00.0", "nvme", sensors), chip("pci/05:00.0", "nvme", sensors)};
    const KeyPlan both = plan(chips);
    EXPECT_EQ(keysOf(both, chips, 0), (Texts{"TN0P", "TN0D", "TN02", "TN08"}));
    EXPECT_EQ(keysOf(both, chips, 1), (Texts{"TN1P", "TN1D", "TN12", "TN18"}));
}

TEST_F(KeyAssignmentTest, DrivesAreCounted) {
    const Chips chips{chip("ata1/0:0:0:0", "drivetemp", {unlabelled(temperature, 1)}),
                      chip("ata2/1:0:0:0", "drivetemp", {unlabelled(temperature, 1)})};
    const KeyPlan both = plan(chips);
    EXPECT_EQ(keysOf(both, chips, 0), Texts{"TS0P"});
    EXPECT_EQ(keysOf(both, chips, 1), Texts{"TS1P"});
}

TEST_F(KeyAssignmentTest, TwentyDrivesAreAllThere) {
    Chips chips;
    for (int drive = 0; drive < 20; ++drive) {
        chips.push_back(chip(numbered("ata", drive), "drivetemp", {unlabelled(temperature, 1)}));
    }
    const KeyPlan many = plan(chips);
    EXPECT_EQ(many.keys.size(), chips.size());
    for (const AssignedKey& key : many.keys) EXPECT_TRUE(key.key.starts_with("TS")) << key.key;
}

TEST_F(KeyAssignmentTest, MemoryModulesAreCountedFromOne) {
    const Chips chips{chip("i2c/0-0050", "spd5118", {unlabelled(temperature, 1)}),
                      chip("i2c/0-0051", "spd5118", {unlabelled(temperature, 1)}),
                      chip("i2c/0-0019", "jc42", {unlabelled(temperature, 1)})};
    const KeyPlan modules = plan(chips);
    Texts keys;
    for (std::size_t module = 0; module < chips.size(); ++module) {
        keys.push_back(keysOf(modules, chips, module).front());
    }
    EXPECT_EQ(keys, (Texts{"TM1P", "TM2P", "TM3P"}));
    EXPECT_EQ(namesOf(keys), (Texts{"DIMM 1", "DIMM 2", "DIMM 3"}));
}

TEST_F(KeyAssignmentTest, CardsAndChipsetAreNamed) {
    EXPECT_EQ(keysOfChip(chip("pci/06:00.0", "iwlwifi_1", {unlabelled(temperature, 1)})), Texts{"TW0P"});
    EXPECT_EQ(keysOfChip(chip("virtual/pch", "pch_cannonlake", {unlabelled(temperature, 1)})), Texts{"TPCD"});
    EXPECT_EQ(keysOfChip(
                  chip("virtual/acpitz", "acpitz", {unlabelled(temperature, 1), unlabelled(temperature, 2)})),
              (Texts{"THRM", "TP00"}));
}

// Boards

TEST_F(KeyAssignmentTest, TemperaturesOfASuperIOChipAreNamedByTheirLabels) {
    const Chips chips{chip("platform/nct6775.656", "nct6798",
                           labelledAll(temperature, {"SYSTIN", "CPUTIN", "AUXTIN0", "AUXTIN1", "PECI Agent 0",
                                                     "PCH_CHIP_TEMP", "TSI1_TEMP"}))};
    EXPECT_EQ(keysOf(plan(chips), chips, 0), (Texts{"TSYS", "TCPU", "TAUX", "TA00", "TC0J", "TPCH", "TC1J"}));
}

TEST_F(KeyAssignmentTest, RailsOfASuperIOChipAreNamedByTheirPins) {
    const Chips chips{chip("platform/nct6775.656", "nct6798",
                           {unlabelled(voltage, 0), unlabelled(voltage, 1), unlabelled(voltage, 3),
                            unlabelled(voltage, 7), unlabelled(voltage, 8), unlabelled(voltage, 12)})};
    const Texts keys = keysOf(plan(chips), chips, 0);
    EXPECT_EQ(keys, (Texts{"VCOR", "VIN1", "V33R", "VSB3", "VBAT", "VINC"}));
}

TEST_F(KeyAssignmentTest, PinsOfOtherSuperIOChipsHaveNoMeaning) {
    EXPECT_EQ(
        keysOfChip(chip("platform/it87.2608", "it8628", {unlabelled(voltage, 0), unlabelled(voltage, 8)})),
        (Texts{"VIN0", "VIN8"}));
}

TEST_F(KeyAssignmentTest, BoardZonesAreNamedByTheirLabels) {
    EXPECT_EQ(keysOfChip(chip(
                  "platform/board", "some_board",
                  labelledAll(temperature, {"CPU (PECI)", "Motherboard", "VRM MOS", "Chipset", "T_Sensor",
                                            "System", "Ambient", "Wi-Fi", "DIMM A1", "SSD"}))),
              (Texts{"TCPU", "TMB1", "TVRM", "TPCH", "TAUX", "TSYS", "TAMB", "TW0P", "TM1P", "TH0P"}));
}

TEST_F(KeyAssignmentTest, RailsAreNamedByTheirLabels) {
    EXPECT_EQ(keysOfChip(chip("platform/board", "some_board",
                              labelledAll(voltage, {"CPU Vcore", "+12V", "+5V", "+3.3V", "3VSB", "+5VSB",
                                                    "Vbat", "VDDCR_SOC", "DRAM"}))),
              (Texts{"VCOR", "V12R", "V05R", "V33R", "VSB3", "VSB5", "VBAT", "VC0S", "VC0M"}));
}

TEST_F(KeyAssignmentTest, WhatNoRuleKnowsGetsAKeyOfItsKind) {
    EXPECT_EQ(keysOfChip(chip("platform/unknown", "unknown",
                              {unlabelled(temperature, 1), unlabelled(voltage, 2), unlabelled(current, 1),
                               unlabelled(power, 1), unlabelled(energy, 1), unlabelled(fan, 1)})),
              (Texts{"TA00", "VIN2", "IX00", "PC00", "PC01", "F0Ac"}));
}

TEST_F(KeyAssignmentTest, ThreeHundredUnlabelledTemperaturesAreAllThere) {
    const Chips chips{chip("platform/unknown", "unknown", unlabelledAll(temperature, 300))};
    const KeyPlan many = plan(chips);
    EXPECT_EQ(many.keys.size(), 300U);
    EXPECT_TRUE(many.unplaced.empty());
    for (const AssignedKey& key : many.keys) {
        const auto definition = SMCKeyDatabase::hwMonitorDefinition(key.key);
        ASSERT_TRUE(definition.has_value()) << key.key;
        EXPECT_EQ(definition->unit, "°C") << key.key;
    }
}

TEST_F(KeyAssignmentTest, ManyChannelsOfOneLabelAreAllThere) {
    Chips chips;
    for (int board = 0; board < 30; ++board) {
        chips.push_back(chip(numbered("platform/", board), "board",
                             {labelled(temperature, 1, "CPU"), labelled(voltage, 0, "+12V"),
                              labelled(current, 1, "CPU"), labelled(power, 1, "CPU")}));
    }
    const KeyPlan many = plan(chips);
    EXPECT_EQ(many.keys.size(), channelCount(chips));
    EXPECT_TRUE(many.unplaced.empty());
}

TEST_F(KeyAssignmentTest, FrequenciesAndHumidityHaveNoKeys) {
    const Chips chips{
        chip("pci/03:00.0", "amdgpu", {labelled(frequency, 1, "sclk"), labelled(temperature, 1, "edge")}),
        chip("i2c/1-0040", "sht3x", {unlabelled(humidity, 1)})};
    const KeyPlan mixed = plan(chips);
    EXPECT_EQ(mixed.keys.size(), 1U);
    ASSERT_EQ(mixed.unplaced.size(), 2U);
    EXPECT_EQ(mixed.unplaced[0].chip, 0U);
    EXPECT_EQ(mixed.unplaced[0].channel, 0U);
    EXPECT_EQ(mixed.unplaced[1].chip, 1U);
    EXPECT_EQ(mixed.unplaced[1].channel, 0U);
}

// Batteries

std::vector<SensorChannel> batteryChannels() {
    return {labelled(voltage, 0, "voltage_now"),       labelled(current, 0, "current_now"),
            labelled(power, 0, "power_now"),           labelled(charge, 0, "charge_now"),
            labelled(charge, 0, "charge_full"),        labelled(charge, 0, "charge_full_design"),
            labelled(count, 0, "cycle_count"),         labelled(percent, 0, "capacity"),
            labelled(temperature, 0, "temp"),          labelled(duration, 0, "time_to_empty_now"),
            labelled(duration, 0, "time_to_full_now"), labelled(text, 0, "status")};
}

TEST_F(KeyAssignmentTest, TwoBatteriesTellTheSameUnderTheirIndices) {
    const Chips chips{chip("BAT0", "battery:BAT0", batteryChannels()),
                      chip("BAT1", "battery:BAT1", batteryChannels())};
    const KeyPlan both = plan(chips);
    EXPECT_EQ(keysOf(both, chips, 0), (Texts{"B0AV", "B0Am", "B0AP", "B0RM", "B0FC", "B0DC", "B0CT", "B0SC",
                                             "TB0T", "B0TE", "B0TF", "B0St"}));
    EXPECT_EQ(keysOf(both, chips, 1), (Texts{"B1AV", "B1Am", "B1AP", "B1RM", "B1FC", "B1DC", "B1CT", "B1SC",
                                             "TB1T", "B1TE", "B1TF", "B1St"}));
    EXPECT_EQ(typeOf(both, 0, 0), "flt ");
    EXPECT_EQ(typeOf(both, 0, 6), "ui32");
    EXPECT_EQ(typeOf(both, 0, 11), "ch8*");
}

TEST_F(KeyAssignmentTest, EnergiesOfABatteryStandForItsCharges) {
    EXPECT_EQ(keysOfChip(chip("BAT0", "battery:BAT0",
                              labelledAll(charge, {"energy_now", "energy_full", "energy_full_design"}))),
              (Texts{"B0RM", "B0FC", "B0DC"}));
}

TEST_F(KeyAssignmentTest, ChargersTellWhetherTheyAreConnected) {
    const Chips chips{chip("AC", "charger:AC",
                           {labelled(flag, 0, "online"), labelled(voltage, 0, "voltage_now"),
                            labelled(current, 0, "current_now"), labelled(power, 0, "power_now")}),
                      chip("USBC", "charger:USBC", {labelled(flag, 0, "online")})};
    const KeyPlan both = plan(chips);
    EXPECT_EQ(keysOf(both, chips, 0), (Texts{"CH0B", "CH0V", "CH0C", "CH0W"}));
    EXPECT_EQ(keysOf(both, chips, 1), Texts{"CH1B"});
    EXPECT_EQ(typeOf(both, 0, 0), "flag");
}

// Devices that come and go

TEST_F(KeyAssignmentTest, TheSameListGivesTheSameKeysAgain) {
    const Chips chips{coretemp({"Package id 0", "Core 0", "Core 1", "Core 20"}),
                      chip("BAT0", "battery:BAT0", batteryChannels()),
                      chip("platform/unknown", "unknown", unlabelledAll(temperature, 5)),
                      chip("platform/dell", "dell_smm", unlabelledAll(fan, 2))};
    const auto described = [&](const KeyPlan& plan) {
        Texts lines;
        for (const AssignedKey& key : plan.keys) {
            lines.push_back(std::string(key.key).append(" ").append(key.type).append(" ").append(
                chips[key.place.chip].channels[key.place.channel].label));
        }
        return lines;
    };
    const Texts first = described(plan(chips));
    EXPECT_EQ(first.size(), channelCount(chips));
    EXPECT_EQ(described(plan(chips)), first);
    EXPECT_EQ(described(KeyAssignment().plan(chips, {})), first);
}

class ComingAndGoing : public KeyAssignmentTest {
  protected:
    SensorChip first = chip("pci/04:00.0", "nvme", labelledAll(temperature, {"Composite", "Sensor 1"}));
    SensorChip second = chip("pci/05:00.0", "nvme", labelledAll(temperature, {"Composite", "Sensor 1"}));
    SensorChip third = chip("pci/06:00.0", "nvme", labelledAll(temperature, {"Composite", "Sensor 1"}));

    Texts keysAt(const Chips& chips, std::size_t index) { return keysOf(plan(chips), chips, index); }
};

TEST_F(ComingAndGoing, AChannelKeepsItsKeyWhenAnEarlierDeviceDisappears) {
    ASSERT_EQ(keysAt({first, second}, 1), (Texts{"TN1P", "TN1D"}));
    EXPECT_EQ(keysAt({second}, 0), (Texts{"TN1P", "TN1D"}));
}

TEST_F(ComingAndGoing, AChannelKeepsItsKeyWhenAnEarlierDeviceAppears) {
    ASSERT_EQ(keysAt({second}, 0), (Texts{"TN0P", "TN0D"}));
    const Chips both{first, second};
    const KeyPlan later = plan(both);
    EXPECT_EQ(keysOf(later, both, 1), (Texts{"TN0P", "TN0D"}));
    EXPECT_EQ(keysOf(later, both, 0), (Texts{"TN1P", "TN1D"}));
}

TEST_F(ComingAndGoing, AChannelGetsItsKeyBackWhenItsDeviceReturns) {
    ASSERT_EQ(keysAt({first, second}, 0), (Texts{"TN0P", "TN0D"}));
    const Chips without{second, third};
    const KeyPlan meanwhile = plan(without);
    EXPECT_EQ(keysOf(meanwhile, without, 0), (Texts{"TN1P", "TN1D"}));
    EXPECT_EQ(keysOf(meanwhile, without, 1), (Texts{"TN2P", "TN2D"}));
    EXPECT_EQ(keysAt({first, second, third}, 0), (Texts{"TN0P", "TN0D"}));
}

TEST_F(ComingAndGoing, KeysFollowTheDeviceAndNotItsPlaceInTheList) {
    ASSERT_EQ(keysAt({first, second}, 0), (Texts{"TN0P", "TN0D"}));
    EXPECT_EQ(keysAt({second, first}, 1), (Texts{"TN0P", "TN0D"}));
}

TEST_F(ComingAndGoing, UnknownChannelsKeepTheirKeysToo) {
    const SensorChip earlier = chip("a", "unknown", unlabelledAll(temperature, 2));
    const SensorChip later = chip("b", "unknown", unlabelledAll(temperature, 2));
    ASSERT_EQ(keysAt({earlier, later}, 1), (Texts{"TA02", "TA03"}));
    EXPECT_EQ(keysAt({later}, 0), (Texts{"TA02", "TA03"}));
    const SensorChip newcomer = chip("c", "unknown", unlabelledAll(temperature, 1));
    EXPECT_EQ(keysAt({later, newcomer}, 1), Texts{"TA04"});
    EXPECT_EQ(keysAt({earlier, later, newcomer}, 0), (Texts{"TA00", "TA01"}));
}

TEST_F(ComingAndGoing, AReservedKeyIsGivenAwayOnlyWhenNothingElseIsLeft) {
    // There are ten keys for fans by their digit, and sixteen for more of them.
    const SensorChip absent = chip("a", "unknown", unlabelledAll(fan, 25));
    ASSERT_EQ(plan({absent}).keys.size(), 25U);
    const SensorChip one = chip("b", "unknown", unlabelledAll(fan, 1));
    EXPECT_EQ(keysAt({one}, 0), Texts{"FanF"});
    const SensorChip another = chip("c", "unknown", unlabelledAll(fan, 1));
    EXPECT_EQ(keysAt({one, another}, 0), Texts{"FanF"});
    EXPECT_EQ(keysAt({one, another}, 1), Texts{"F0Ac"});
}

TEST_F(ComingAndGoing, WithMoreChannelsThanKeysTheRestIsCounted) {
    const Chips chips{chip("a", "unknown", unlabelledAll(fan, 30))};
    const KeyPlan full = plan(chips);
    EXPECT_EQ(full.keys.size(), 26U);
    EXPECT_EQ(full.unplaced.size(), 4U);
}

TEST_F(ComingAndGoing, TwoChipsThatNothingTellsApartBothHaveKeys) {
    const SensorChip twin = chip("", "unknown", unlabelledAll(temperature, 1));
    const Chips chips{twin, twin};
    const KeyPlan both = plan(chips);
    EXPECT_EQ(keysOf(both, chips, 0), Texts{"TA00"});
    EXPECT_EQ(keysOf(both, chips, 1), Texts{"TA01"});
    const KeyPlan again = plan(chips);
    EXPECT_EQ(keysOf(again, chips, 0), Texts{"TA00"});
    EXPECT_EQ(keysOf(again, chips, 1), Texts{"TA01"});
    EXPECT_EQ(keysAt({twin}, 0), Texts{"TA00"});
}

TEST_F(ComingAndGoing, TwoDrivesThatNothingTellsApartAreCounted) {
    const SensorChip twin = chip("", "nvme", labelledAll(temperature, {"Composite"}));
    EXPECT_EQ(keysAt({twin, twin}, 1), Texts{"TN1P"});
}

// Beside a controller

TEST_F(KeyAssignmentTest, KeysOfTheControllerAreNeverGiven) {
    const Chips chips{coretemp({"Package id 0"}),
                      chip("pci/03:00.0", "amdgpu", {labelled(temperature, 1, "edge")}),
                      chip("platform/unknown", "unknown", unlabelledAll(temperature, 2))};
    const KeyPlan beside = plan(chips, {"TC0T", "TG0D", "TA00"});
    EXPECT_EQ(keysOf(beside, chips, 0), Texts{"TC0p"});
    EXPECT_EQ(keysOf(beside, chips, 1), Texts{"TG0P"});
    EXPECT_EQ(keysOf(beside, chips, 2), (Texts{"TA01", "TA02"}));
    EXPECT_TRUE(beside.unplaced.empty());
}

TEST_F(KeyAssignmentTest, AKeyThatTheControllerTurnsOutToHaveIsGivenBack) {
    const Chips chips{chip("platform/unknown", "unknown", unlabelledAll(temperature, 2))};
    ASSERT_EQ(keysOf(plan(chips), chips, 0), (Texts{"TA00", "TA01"}));
    EXPECT_EQ(keysOf(plan(chips, {"TA00"}), chips, 0), (Texts{"TA02", "TA01"}));
}

TEST_F(KeyAssignmentTest, CoresThatTheControllerTellsAreLeftOut) {
    const Chips chips{coretemp({"Package id 0", "Core 0", "Core 1", "Core 2"})};
    const KeyPlan beside = plan(chips, {"TC1C"});
    EXPECT_EQ(keysOf(beside, chips, 0), (Texts{"TC0T", "", "", ""}));
    EXPECT_TRUE(beside.unplaced.empty());
}

TEST_F(KeyAssignmentTest, AKeyThatDiffersByLetterCaseTellsSomethingElse) {
    const Chips chips{coretemp({"Core 0"})};
    EXPECT_EQ(keysOf(plan(chips, {"TC0c", "tC1C"}), chips, 0), Texts{"TC0C"});
}

TEST_F(KeyAssignmentTest, WhatTheControllerTellsOfTheBatteryIsLeftOut) {
    const Chips chips{chip("BAT0", "battery:BAT0", batteryChannels())};
    const KeyPlan beside = plan(chips, {"B0AV", "B0AC"});
    EXPECT_EQ(keysOf(beside, chips, 0), (Texts{"", "", "B0AP", "B0RM", "B0FC", "B0DC", "B0CT", "B0SC", "TB0T",
                                               "B0TE", "B0TF", "B0St"}));
    EXPECT_TRUE(beside.unplaced.empty());
}

TEST_F(KeyAssignmentTest, LabelsOfTheControllersOwnChipAreItsKeys) {
    const Chips chips{
        chip("platform/applesmc.768", "applesmc", labelledAll(temperature, {"TC0D", "Th1H", "TzQ9"}))};
    ASSERT_EQ(SMCKeyDatabase::hwMonitorDefinition("TzQ9"), std::nullopt);
    const KeyPlan own = plan(chips);
    EXPECT_EQ(keysOf(own, chips, 0), (Texts{"TC0D", "Th1H", "TzQ9"}));
    EXPECT_EQ(typeOf(own, 0, 0), "sp78");
}

TEST_F(KeyAssignmentTest, LabelsOfTheControllersOwnChipLeaveOutWhatTheyTell) {
    const Chips chips{
        coretemp({"Package id 0", "Core 0", "Core 1"}),
        chip("platform/applesmc.768", "applesmc", labelledAll(temperature, {"TA0P", "TC1C", "TW0P"})),
        chip("pci/06:00.0", "iwlwifi_1", {unlabelled(temperature, 1)})};
    const KeyPlan own = plan(chips);
    EXPECT_EQ(keysOf(own, chips, 0), (Texts{"TC0T", "", ""}));
    EXPECT_EQ(keysOf(own, chips, 1), (Texts{"TA0P", "TC1C", "TW0P"}));
    EXPECT_EQ(keysOf(own, chips, 2), Texts{""});
    EXPECT_TRUE(own.unplaced.empty());
}

// Fans

TEST_F(KeyAssignmentTest, AttributesOfAFanShareItsDigit) {
    const Chips chips{
        chip("platform/applesmc.768", "applesmc",
             {labelled(fan, 1, "Left side"), labelled(fan, 2, "Right side"), unlabelled(fanMinimum, 1),
              unlabelled(fanMinimum, 2), unlabelled(fanMaximum, 2), unlabelled(fanTarget, 1),
              unlabelled(fanSafe, 2), unlabelled(fanMode, 1), unlabelled(fanName, 2)})};
    const KeyPlan fans = plan(chips);
    EXPECT_EQ(keysOf(fans, chips, 0),
              (Texts{"F0Ac", "F1Ac", "F0Mn", "F1Mn", "F1Mx", "F0Tg", "F1Sf", "F0Md", "F1ID"}));
    EXPECT_EQ(typeOf(fans, 0, 0), "fpe2");
    EXPECT_EQ(typeOf(fans, 0, 2), "fpe2");
    EXPECT_EQ(typeOf(fans, 0, 7), "ui8 ");
    EXPECT_EQ(typeOf(fans, 0, 8), "ch8*");
}

TEST_F(KeyAssignmentTest, AttributesFollowTheirFanWhereItsNumberIsNotItsDigit) {
    const Chips chips{
        chip("a", "dell_smm", {unlabelled(fan, 1), unlabelled(fanName, 1)}),
        chip("b", "thinkpad",
             {unlabelled(fan, 1), unlabelled(fan, 2), unlabelled(fanName, 1), unlabelled(fanName, 2)})};
    const KeyPlan fans = plan(chips);
    EXPECT_EQ(keysOf(fans, chips, 0), (Texts{"F0Ac", "F0ID"}));
    EXPECT_EQ(keysOf(fans, chips, 1), (Texts{"F1Ac", "F2Ac", "F1ID", "F2ID"}));
}

TEST_F(KeyAssignmentTest, FansOfAppleSiliconAreFloats) {
    const Chips chips{chip("platform/macsmc", "macsmc_hwmon",
                           {labelled(fan, 1, "Fan 1"), labelled(fan, 2, "Fan 2"), unlabelled(fanMinimum, 1),
                            unlabelled(fanMaximum, 2), unlabelled(fanTarget, 2)})};
    const KeyPlan fans = plan(chips);
    EXPECT_EQ(keysOf(fans, chips, 0), (Texts{"F0Ac", "F1Ac", "F0Mn", "F1Mx", "F1Tg"}));
    for (std::size_t channel = 0; channel < 5; ++channel) EXPECT_EQ(typeOf(fans, 0, channel), "flt ");
}

TEST_F(KeyAssignmentTest, AttributesWithoutAKeyAreNotCounted) {
    const Chips chips{
        chip("a", "dell_smm", {unlabelled(fan, 1), unlabelled(fanMinimum, 1), unlabelled(fanTarget, 1)}),
        chip("b", "applesmc", {unlabelled(fanMinimum, 3), unlabelled(fanName, 3)})};
    const KeyPlan fans = plan(chips);
    EXPECT_EQ(fans.keys.size(), 1U);
    EXPECT_TRUE(fans.unplaced.empty());
}

TEST_F(KeyAssignmentTest, FansBeyondTheDigitsHaveKeysWithoutAttributes) {
    std::vector<SensorChannel> channels = unlabelledAll(fan, 12);
    for (int number = 1; number <= 12; ++number) channels.push_back(unlabelled(fanName, number));
    const Chips chips{chip("a", "unknown", channels)};
    const KeyPlan fans = plan(chips);
    const Texts keys = keysOf(fans, chips, 0);
    EXPECT_EQ(keys[9], "F9Ac");
    EXPECT_EQ(keys[10], "Fan0");
    EXPECT_EQ(keys[11], "Fan1");
    EXPECT_EQ(keys[12 + 9], "F9ID");
    EXPECT_EQ(keys[12 + 10], "");
    EXPECT_EQ(keys[12 + 11], "");
    EXPECT_TRUE(fans.unplaced.empty());
}

TEST_F(KeyAssignmentTest, ControllersFansLeaveTheirDigits) {
    const Chips chips{chip("a", "dell_smm", {unlabelled(fan, 1), unlabelled(fanName, 1)})};
    EXPECT_EQ(keysOf(plan(chips, {"F0Ac", "F0ID", "F1ID"}), chips, 0), (Texts{"F1Ac", ""}));
}

// Fans of the registry

TEST_F(KeyAssignmentTest, FansOfSensorChipsAreInTheRegistry) {
    const Chips chips{chip("platform/nct6775.656", "nct6798",
                           {unlabelled(fan, 1), labelled(fan, 2, "CPU Fan"), unlabelled(fanName, 1)}),
                      chip("platform/asus-ec", "asusec", {labelled(fan, 1, "CPU_Opt RPM")}),
                      chip("platform/dell", "dell_smm", {labelled(fan, 1, "Processor Fan")})};
    const KeyPlan fans = plan(chips);
    EXPECT_EQ(registryLabels(fans, chips), (Texts{"fan1", "CPU Fan", "CPU_Opt RPM"}));
    EXPECT_EQ(fans.registryFans[0].className, "HwmonSuperIO");
    EXPECT_EQ(fans.registryFans[2].className, "HwmonACPISensors");
    EXPECT_EQ(keysOf(fans, chips, 0), (Texts{"", "", ""}));
    EXPECT_EQ(keysOf(fans, chips, 1), Texts{""});
    EXPECT_EQ(keysOf(fans, chips, 2), Texts{"F0Ac"});
    EXPECT_TRUE(fans.unplaced.empty());
}

TEST_F(KeyAssignmentTest, LabelsThatDoNotSpeakOfFansBecomeKeys) {
    const Chips chips{
        chip("platform/nct6775.656", "nct6798",
             {labelled(fan, 1, "AIO Pump"), labelled(fan, 2, "System Fan"), labelled(fan, 3, "Fan3")})};
    const KeyPlan fans = plan(chips);
    EXPECT_EQ(registryLabels(fans, chips), Texts{"System Fan"});
    EXPECT_EQ(keysOf(fans, chips, 0), (Texts{"F0Ac", "", "F1Ac"}));
}

TEST_F(KeyAssignmentTest, FansThatShareALabelBecomeKeys) {
    const Chips chips{
        chip("platform/asus-ec", "asusec",
             {labelled(fan, 1, "Chassis Fan"), labelled(fan, 2, "Chassis Fan"), labelled(fan, 3, "CPU Fan")}),
        chip("platform/nct6775.656", "nct6798", {labelled(fan, 1, "CPU Fan")})};
    const KeyPlan fans = plan(chips);
    EXPECT_EQ(keysOf(fans, chips, 0), (Texts{"F0Ac", "F1Ac", ""}));
    EXPECT_EQ(keysOf(fans, chips, 1), Texts{""});
    EXPECT_EQ(registryLabels(fans, chips), (Texts{"CPU Fan", "CPU Fan"}));
}

TEST_F(KeyAssignmentTest, ANameOfAFanIsNoFanOfTheSameLabel) {
    const Chips chips{chip("platform/nct6775.656", "nct6798",
                           {labelled(fan, 1, "CPU Fan"), labelled(fanName, 1, "CPU Fan")})};
    EXPECT_EQ(registryLabels(plan(chips), chips), Texts{"CPU Fan"});
}

TEST_F(KeyAssignmentTest, TheRegistryHasNoMoreThanEightFans) {
    const Chips chips{chip("platform/nct6775.656", "nct6798", unlabelledAll(fan, 7)),
                      chip("platform/it87.2608", "it8792", unlabelledAll(fan, 3))};
    const KeyPlan fans = plan(chips);
    EXPECT_EQ(fans.registryFans.size(), 8U);
    EXPECT_EQ(keysOf(fans, chips, 0), Texts(7));
    EXPECT_EQ(keysOf(fans, chips, 1), (Texts{"", "F0Ac", "F1Ac"}));
}

TEST_F(KeyAssignmentTest, AGraphicsChipWithoutATemperatureIsCountedToo) {
    const Chips chips{
        chip("pci/02:00.0", "i915", {unlabelled(energy, 1)}),
        chip("pci/03:00.0", "amdgpu", {labelled(temperature, 1, "edge"), labelled(power, 1, "PPT")})};
    const KeyPlan both = plan(chips);
    EXPECT_EQ(keysOf(both, chips, 0), Texts{"PG0E"});
    EXPECT_EQ(keysOf(both, chips, 1), (Texts{"TG1D", "PG1C"}));
}

TEST_F(KeyAssignmentTest, CoresThatTheControllerTellsLaterAreLeftOutFromThenOn) {
    const Chips chips{coretemp({"Package id 0", "Core 0", "Core 1", "Core 2"})};
    ASSERT_EQ(keysOf(plan(chips), chips, 0), (Texts{"TC0T", "TC0C", "TC1C", "TC2C"}));
    EXPECT_EQ(keysOf(plan(chips, {"TC1C"}), chips, 0), (Texts{"TC0T", "", "", ""}));
}

TEST_F(KeyAssignmentTest, AKeyKeepsItsTypeForAsLongAsItsChannelKeepsIt) {
    const Chips chips{chip("platform/applesmc.768", "applesmc", labelledAll(temperature, {"TC0D"}))};
    const KeySet controllerKeys{"TC0D"};
    const KeyPlan earlier = plan(chips, controllerKeys);
    ASSERT_EQ(keysOf(earlier, chips, 0), Texts{"TA00"});
    ASSERT_EQ(typeOf(earlier, 0, 0), "flt ");
    const KeyPlan later = plan(chips, controllerKeys);
    EXPECT_EQ(keysOf(later, chips, 0), Texts{"TA00"});
    EXPECT_EQ(typeOf(later, 0, 0), "flt ");
}

TEST_F(KeyAssignmentTest, AFanKeepsItsKeyWhenTheRegistryGetsRoomForIt) {
    const SensorChip full = chip("platform/it87.2608", "it8628", unlabelledAll(fan, 8));
    const SensorChip other = chip("platform/it87.2656", "it8792", unlabelledAll(fan, 1));
    const Chips both{full, other};
    ASSERT_EQ(keysOf(plan(both), both, 1), Texts{"F0Ac"});
    const Chips alone{other};
    EXPECT_EQ(keysOf(plan(alone), alone, 0), Texts{"F0Ac"});
}

TEST_F(KeyAssignmentTest, OnlyTheFirstRuleThatFitsLeavesAChannelOut) {
    const Chips chips{chip("intel-rapl:0", "rapl", {labelled(energy, 0, "package-0")})};
    EXPECT_EQ(keysOf(plan(chips, {"PC1R"}), chips, 0), Texts{"PCPR"});
}

TEST_F(KeyAssignmentTest, DrivesPastTheHexDigitsHaveLetters) {
    Chips chips;
    for (int number = 0; number < 18; ++number) {
        chips.push_back(chip("ata" + std::to_string(number), "drivetemp", {unlabelled(temperature, 1)}));
    }
    const KeyPlan drives = plan(chips);
    EXPECT_EQ(keysOf(drives, chips, 15), Texts{"TSFP"});
    EXPECT_EQ(keysOf(drives, chips, 16), Texts{"TSGP"});
    EXPECT_EQ(keysOf(drives, chips, 17), Texts{"TSHP"});
}

/// A driver that is loaded again may count its name up.
TEST_F(KeyAssignmentTest, AChannelKeepsItsKeyWhenTheNameOfItsChipIsCountedUp) {
    Chips chips{chip("virtual/thermal", "iwlwifi_1", {unlabelled(temperature, 1)})};
    chips[0].stableName = "iwlwifi";
    ASSERT_EQ(keysOf(plan(chips), chips, 0), Texts{"TW0P"});
    chips[0].name = "iwlwifi_2";
    EXPECT_EQ(keysOf(plan(chips), chips, 0), Texts{"TW0P"});
}

} // namespace

} // namespace kelvinbar
