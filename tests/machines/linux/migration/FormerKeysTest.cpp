#include "machines/linux/migration/FormerKeys.h"

#include "catalogue/SMCKeyDatabase.h"
#include "tests/machines/linux/LabelledChannel.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::former_keys_test {

namespace {

using enum SensorKind;
using Texts = std::vector<std::string>;
using Chips = std::vector<SensorChip>;
using Keys = std::map<std::string, ChannelPlace>;

std::string numbered(std::string_view text, int number) {
    return std::string(text).append(std::to_string(number));
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

/// A channel without a label, which is named after its file.
SensorChannel unlabelled(SensorKind kind, int number) {
    SensorChannel channel(kind, number);
    channel.label = numbered(filePrefix(kind), number);
    return channel;
}

/// Channels numbered from 1 in the order of their labels.
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

/// The keys of a chip in the order of its channels; empty for those without one.
Texts keysOf(const Keys& keys, const Chips& chips, std::size_t chip) {
    Texts texts(chips[chip].channels.size());
    for (const auto& [key, place] : keys) {
        if (place.chip == chip) texts[place.channel] = key;
    }
    return texts;
}

std::size_t channelCount(const Chips& chips) {
    std::size_t count = 0;
    for (const SensorChip& chip : chips) count += chip.channels.size();
    return count;
}

/// The former keys, of which no two belong to one channel.
Keys keysIn(const Chips& chips, const KeySet& controllerKeys = {}) {
    Keys keys = formerKeys(chips, controllerKeys);
    std::set<ChannelPlace> places;
    for (const auto& [key, place] : keys) EXPECT_TRUE(places.insert(place).second) << key;
    return keys;
}

/// The keys of a single chip.
Texts keysOfChip(const SensorChip& chip, const KeySet& controllerKeys = {}) {
    const Chips chips{chip};
    return keysOf(keysIn(chips, controllerKeys), chips, 0);
}

// Processors

TEST(FormerKeysTest, NothingHadNoKeys) { EXPECT_TRUE(keysIn({}).empty()); }

TEST(FormerKeysTest, PackageAndCoresHaveTheirNumbers) {
    const Texts keys = keysOfChip(coretemp({"Package id 0", "Core 0", "Core 1", "Core 10", "Core 15"}));
    EXPECT_EQ(keys, (Texts{"TC0T", "TC0C", "TC1C", "TCAC", "TCFC"}));
}

TEST(FormerKeysTest, CoresOfTwoKindsAreToldApart) {
    const Texts keys = keysOfChip(coretemp({"Package id 0", "P-Core 0", "P-Core 5", "E-Core 0", "E-Core 7"}));
    EXPECT_EQ(keys, (Texts{"TC0T", "Tp0C", "Tp5C", "Te0C", "Te7C"}));
}

TEST(FormerKeysTest, TwoPackagesHaveTheirNumbersAndNoCoreIsLost) {
    const Chips chips{
        chip("platform/coretemp.0", "coretemp", labelledAll(temperature, {"Package id 0", "Core 0"})),
        chip("platform/coretemp.1", "coretemp", labelledAll(temperature, {"Package id 1", "Core 0"}))};
    const Keys both = keysIn(chips);
    EXPECT_EQ(keysOf(both, chips, 0), (Texts{"TC0T", "TC0C"}));
    EXPECT_EQ(keysOf(both, chips, 1), (Texts{"TC1T", "Ts0C"}));
}

TEST(FormerKeysTest, FortyCoresAreAllThere) {
    Texts labels{"Package id 0"};
    for (int core = 0; core < 40; ++core) labels.push_back(numbered("Core ", core));
    const Chips chips{coretemp(labels)};
    const Keys many = keysIn(chips);
    EXPECT_EQ(many.size(), labels.size());
}

TEST(FormerKeysTest, TheControlTemperatureIsThePackageWhereThereIsNoDie) {
    EXPECT_EQ(keysOfChip(chip("pci/18.3", "k10temp", labelledAll(temperature, {"Tctl", "Tccd1", "Tccd2"}))),
              (Texts{"TC0T", "TC1D", "TC2D"}));
}

TEST(FormerKeysTest, TheDieIsThePackageBesideTheControlTemperature) {
    EXPECT_EQ(keysOfChip(chip("pci/18.3", "k10temp", labelledAll(temperature, {"Tctl", "Tdie"}))),
              (Texts{"TC0P", "TC0T"}));
}

TEST(FormerKeysTest, TwoProcessorsOfOneChipEachAreCounted) {
    const Chips chips{chip("pci/18.3", "k10temp", labelledAll(temperature, {"Tctl"})),
                      chip("pci/19.3", "k10temp", labelledAll(temperature, {"Tctl"}))};
    const Keys both = keysIn(chips);
    EXPECT_EQ(keysOf(both, chips, 0), Texts{"TC0T"});
    EXPECT_EQ(keysOf(both, chips, 1), Texts{"TC1T"});
}

TEST(FormerKeysTest, ProcessorPowerZonesAreNamed) {
    const Chips chips{chip("intel-rapl:0", "rapl", {labelled(energy, 0, "package-0")}),
                      chip("intel-rapl:0:0", "rapl", {labelled(energy, 0, "core")}),
                      chip("intel-rapl:0:1", "rapl", {labelled(energy, 0, "uncore")}),
                      chip("intel-rapl:0:2", "rapl", {labelled(energy, 0, "dram")}),
                      chip("intel-rapl:1", "rapl", {labelled(energy, 0, "package-1")})};
    const Keys zones = keysIn(chips);
    EXPECT_EQ(keysOf(zones, chips, 0), Texts{"PCPR"});
    EXPECT_EQ(keysOf(zones, chips, 1), Texts{"PCPC"});
    EXPECT_EQ(keysOf(zones, chips, 2), Texts{"PCPG"});
    EXPECT_EQ(keysOf(zones, chips, 3), Texts{"PC00"});
    EXPECT_EQ(keysOf(zones, chips, 4), Texts{"PC1R"});
}

// Graphics, drives, memory, cards, firmware

TEST(FormerKeysTest, PartsOfAGraphicsChipAreNamed) {
    const Texts keys = keysOfChip(
        chip("pci/03:00.0", "amdgpu",
             {labelled(temperature, 1, "edge"), labelled(temperature, 2, "junction"),
              labelled(temperature, 3, "mem"), labelled(voltage, 0, "vddgfx"), labelled(power, 1, "PPT")}));
    EXPECT_EQ(keys, (Texts{"TG0D", "TG0C", "TG0M", "VG0C", "PG0C"}));
}

TEST(FormerKeysTest, GraphicsChipsAreCountedInTheOrderOfTheirDevices) {
    const auto parts = labelledAll(temperature, {"edge", "junction", "mem"});
    const Chips chips{chip("pci/03:00.0", "amdgpu", parts), chip("pci/0c:00.0", "amdgpu", parts)};
    const Keys both = keysIn(chips);
    EXPECT_EQ(keysOf(both, chips, 0), (Texts{"TG0D", "TG0C", "TG0M"}));
    EXPECT_EQ(keysOf(both, chips, 1), (Texts{"TG1D", "TG1C", "TG1M"}));
}

TEST(FormerKeysTest, GraphicsChipsOfDifferentMakeAreCountedTogether) {
    const Chips chips{chip("pci/03:00.0", "nouveau", {unlabelled(temperature, 1)}),
                      chip("pci/0c:00.0", "amdgpu", {labelled(temperature, 1, "edge")})};
    const Keys both = keysIn(chips);
    EXPECT_EQ(keysOf(both, chips, 0), Texts{"TG0D"});
    EXPECT_EQ(keysOf(both, chips, 1), Texts{"TG1D"});
}

TEST(FormerKeysTest, SolidStateDrivesHaveTheirIndexAndTheSensorsTheirNumbers) {
    const auto sensors = labelledAll(temperature, {"Composite", "Sensor 1", "Sensor 2", "Sensor 8"});
    const Chips chips{chip("pci/04:00.0", "nvme", sensors), chip("pci/05:00.0", "nvme", sensors)};
    const Keys both = keysIn(chips);
    EXPECT_EQ(keysOf(both, chips, 0), (Texts{"TN0P", "TN0D", "TN02", "TN08"}));
    EXPECT_EQ(keysOf(both, chips, 1), (Texts{"TN1P", "TN1D", "TN12", "TN18"}));
}

TEST(FormerKeysTest, DrivesAreCounted) {
    const Chips chips{chip("ata1/0:0:0:0", "drivetemp", {unlabelled(temperature, 1)}),
                      chip("ata2/1:0:0:0", "drivetemp", {unlabelled(temperature, 1)})};
    const Keys both = keysIn(chips);
    EXPECT_EQ(keysOf(both, chips, 0), Texts{"TS0P"});
    EXPECT_EQ(keysOf(both, chips, 1), Texts{"TS1P"});
}

TEST(FormerKeysTest, TwentyDrivesAreAllThere) {
    Chips chips;
    for (int drive = 0; drive < 20; ++drive) {
        chips.push_back(chip(numbered("ata", drive), "drivetemp", {unlabelled(temperature, 1)}));
    }
    const Keys many = keysIn(chips);
    EXPECT_EQ(many.size(), chips.size());
    for (const auto& [key, place] : many) EXPECT_TRUE(key.starts_with("TS")) << key;
}

TEST(FormerKeysTest, MemoryModulesAreCountedFromOne) {
    const Chips chips{chip("i2c/0-0050", "spd5118", {unlabelled(temperature, 1)}),
                      chip("i2c/0-0051", "spd5118", {unlabelled(temperature, 1)}),
                      chip("i2c/0-0019", "jc42", {unlabelled(temperature, 1)})};
    const Keys modules = keysIn(chips);
    Texts keys;
    for (std::size_t module = 0; module < chips.size(); ++module) {
        keys.push_back(keysOf(modules, chips, module).front());
    }
    EXPECT_EQ(keys, (Texts{"TM1P", "TM2P", "TM3P"}));
}

TEST(FormerKeysTest, CardsAndChipsetAreNamed) {
    EXPECT_EQ(keysOfChip(chip("pci/06:00.0", "iwlwifi_1", {unlabelled(temperature, 1)})), Texts{"TW0P"});
    EXPECT_EQ(keysOfChip(chip("virtual/pch", "pch_cannonlake", {unlabelled(temperature, 1)})), Texts{"TPCD"});
    EXPECT_EQ(keysOfChip(
                  chip("virtual/acpitz", "acpitz", {unlabelled(temperature, 1), unlabelled(temperature, 2)})),
              (Texts{"THRM", "TP00"}));
}

// Boards

TEST(FormerKeysTest, TemperaturesOfASuperIOChipAreNamedByTheirLabels) {
    const Chips chips{chip("platform/nct6775.656", "nct6798",
                           labelledAll(temperature, {"SYSTIN", "CPUTIN", "AUXTIN0", "AUXTIN1", "PECI Agent 0",
                                                     "PCH_CHIP_TEMP", "TSI1_TEMP"}))};
    EXPECT_EQ(keysOf(keysIn(chips), chips, 0),
              (Texts{"TSYS", "TCPU", "TAUX", "TA00", "TC0J", "TPCH", "TC1J"}));
}

TEST(FormerKeysTest, RailsOfASuperIOChipAreNamedByTheirPins) {
    const Chips chips{chip("platform/nct6775.656", "nct6798",
                           {unlabelled(voltage, 0), unlabelled(voltage, 1), unlabelled(voltage, 3),
                            unlabelled(voltage, 7), unlabelled(voltage, 8), unlabelled(voltage, 12)})};
    const Texts keys = keysOf(keysIn(chips), chips, 0);
    EXPECT_EQ(keys, (Texts{"VCOR", "VIN1", "V33R", "VSB3", "VBAT", "VINC"}));
}

TEST(FormerKeysTest, PinsOfOtherSuperIOChipsHaveNoMeaning) {
    EXPECT_EQ(
        keysOfChip(chip("platform/it87.2608", "it8628", {unlabelled(voltage, 0), unlabelled(voltage, 8)})),
        (Texts{"VIN0", "VIN8"}));
}

TEST(FormerKeysTest, BoardZonesAreNamedByTheirLabels) {
    EXPECT_EQ(keysOfChip(chip(
                  "platform/board", "some_board",
                  labelledAll(temperature, {"CPU (PECI)", "Motherboard", "VRM MOS", "Chipset", "T_Sensor",
                                            "System", "Ambient", "Wi-Fi", "DIMM A1", "SSD"}))),
              (Texts{"TCPU", "TMB1", "TVRM", "TPCH", "TAUX", "TSYS", "TAMB", "TW0P", "TM1P", "TH0P"}));
}

TEST(FormerKeysTest, RailsAreNamedByTheirLabels) {
    EXPECT_EQ(keysOfChip(chip("platform/board", "some_board",
                              labelledAll(voltage, {"CPU Vcore", "+12V", "+5V", "+3.3V", "3VSB", "+5VSB",
                                                    "Vbat", "VDDCR_SOC", "DRAM"}))),
              (Texts{"VCOR", "V12R", "V05R", "V33R", "VSB3", "VSB5", "VBAT", "VC0S", "VC0M"}));
}

TEST(FormerKeysTest, WhatNoRuleKnowsGetsAKeyOfItsKind) {
    EXPECT_EQ(keysOfChip(chip("platform/unknown", "unknown",
                              {unlabelled(temperature, 1), unlabelled(voltage, 2), unlabelled(current, 1),
                               unlabelled(power, 1), unlabelled(energy, 1), unlabelled(fan, 1)})),
              (Texts{"TA00", "VIN2", "IX00", "PC00", "PC01", "F0Ac"}));
}

TEST(FormerKeysTest, ThreeHundredUnlabelledTemperaturesAreAllThere) {
    const Chips chips{chip("platform/unknown", "unknown", unlabelledAll(temperature, 300))};
    const Keys many = keysIn(chips);
    EXPECT_EQ(many.size(), 300U);
    for (const auto& [key, place] : many) {
        const auto definition = SMCKeyDatabase::hwMonitorDefinition(key);
        ASSERT_TRUE(definition.has_value()) << key;
        EXPECT_EQ(definition->unit, "°C") << key;
    }
}

TEST(FormerKeysTest, ManyChannelsOfOneLabelAreAllThere) {
    Chips chips;
    for (int board = 0; board < 30; ++board) {
        chips.push_back(chip(numbered("platform/", board), "board",
                             {labelled(temperature, 1, "CPU"), labelled(voltage, 0, "+12V"),
                              labelled(current, 1, "CPU"), labelled(power, 1, "CPU")}));
    }
    const Keys many = keysIn(chips);
    EXPECT_EQ(many.size(), channelCount(chips));
}

TEST(FormerKeysTest, FrequenciesAndHumidityHaveNoKeys) {
    const Chips chips{
        chip("pci/03:00.0", "amdgpu", {labelled(frequency, 1, "sclk"), labelled(temperature, 1, "edge")}),
        chip("i2c/1-0040", "sht3x", {unlabelled(humidity, 1)})};
    const Keys mixed = keysIn(chips);
    EXPECT_EQ(keysOf(mixed, chips, 0), (Texts{"", "TG0D"}));
    EXPECT_EQ(keysOf(mixed, chips, 1), Texts{""});
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

TEST(FormerKeysTest, TwoBatteriesHadTheSameKeysWithTheirIndices) {
    const Chips chips{chip("BAT0", "battery:BAT0", batteryChannels()),
                      chip("BAT1", "battery:BAT1", batteryChannels())};
    const Keys both = keysIn(chips);
    EXPECT_EQ(keysOf(both, chips, 0), (Texts{"B0AV", "B0Am", "B0AP", "B0RM", "B0FC", "B0DC", "B0CT", "B0SC",
                                             "TB0T", "B0TE", "B0TF", "B0St"}));
    EXPECT_EQ(keysOf(both, chips, 1), (Texts{"B1AV", "B1Am", "B1AP", "B1RM", "B1FC", "B1DC", "B1CT", "B1SC",
                                             "TB1T", "B1TE", "B1TF", "B1St"}));
}

TEST(FormerKeysTest, EnergiesOfABatteryStandForItsCharges) {
    EXPECT_EQ(keysOfChip(chip("BAT0", "battery:BAT0",
                              labelledAll(charge, {"energy_now", "energy_full", "energy_full_design"}))),
              (Texts{"B0RM", "B0FC", "B0DC"}));
}

TEST(FormerKeysTest, ChargersAreCountedAndOneHasAllKeys) {
    const Chips chips{chip("AC", "charger:AC",
                           {labelled(flag, 0, "online"), labelled(voltage, 0, "voltage_now"),
                            labelled(current, 0, "current_now"), labelled(power, 0, "power_now")}),
                      chip("USBC", "charger:USBC", {labelled(flag, 0, "online")})};
    const Keys both = keysIn(chips);
    EXPECT_EQ(keysOf(both, chips, 0), (Texts{"CH0B", "CH0V", "CH0C", "CH0W"}));
    EXPECT_EQ(keysOf(both, chips, 1), Texts{"CH1B"});
}

// More of the same than there are keys

TEST(FormerKeysTest, WithMoreChannelsThanKeysTheRestHadNone) {
    const Chips chips{chip("a", "unknown", unlabelledAll(fan, 30))};
    const Texts keys = keysOfChip(chips.front());
    EXPECT_EQ(keys[25], "FanF");
    for (std::size_t channel = 26; channel < 30; ++channel) EXPECT_EQ(keys[channel], "");
}

TEST(FormerKeysTest, TwoChipsThatNothingTellsApartBothHadKeys) {
    const SensorChip twin = chip("", "unknown", unlabelledAll(temperature, 1));
    const Chips chips{twin, twin};
    const Keys both = keysIn(chips);
    EXPECT_EQ(keysOf(both, chips, 0), Texts{"TA00"});
    EXPECT_EQ(keysOf(both, chips, 1), Texts{"TA01"});
}

TEST(FormerKeysTest, TwoDrivesThatNothingTellsApartWereCounted) {
    const SensorChip twin = chip("", "nvme", labelledAll(temperature, {"Composite"}));
    const Chips chips{twin, twin};
    EXPECT_EQ(keysOf(keysIn(chips), chips, 1), Texts{"TN1P"});
}

TEST(FormerKeysTest, DrivesPastTheHexDigitsHadLetters) {
    Chips chips;
    for (int number = 0; number < 18; ++number) {
        chips.push_back(chip(numbered("ata", number), "drivetemp", {unlabelled(temperature, 1)}));
    }
    const Keys drives = keysIn(chips);
    EXPECT_EQ(keysOf(drives, chips, 15), Texts{"TSFP"});
    EXPECT_EQ(keysOf(drives, chips, 16), Texts{"TSGP"});
    EXPECT_EQ(keysOf(drives, chips, 17), Texts{"TSHP"});
}

TEST(FormerKeysTest, AGraphicsChipWithoutATemperatureWasCountedToo) {
    const Chips chips{
        chip("pci/02:00.0", "i915", {unlabelled(energy, 1)}),
        chip("pci/03:00.0", "amdgpu", {labelled(temperature, 1, "edge"), labelled(power, 1, "PPT")})};
    const Keys both = keysIn(chips);
    EXPECT_EQ(keysOf(both, chips, 0), Texts{"PG0E"});
    EXPECT_EQ(keysOf(both, chips, 1), (Texts{"TG1D", "PG1C"}));
}

// Batteries that have a hwmon chip too

SensorChip supply(std::string_view name, std::string_view prefix, std::vector<SensorChannel> channels) {
    SensorChip supply = chip(name, std::string(prefix).append(name), std::move(channels));
    supply.stableName = prefix;
    supply.sensorsName = name;
    return supply;
}

TEST(FormerKeysTest, KeysOfABatteryAreNowThoseOfItsHwmonChip) {
    const Chips chips{chip("acpi/BAT0", "BAT0", {unlabelled(voltage, 0), unlabelled(current, 1)}),
                      supply("BAT0", "battery:",
                             {labelled(voltage, 0, "voltage_now"), labelled(current, 0, "current_now"),
                              labelled(charge, 0, "charge_now")})};
    const Keys keys = keysIn(chips);
    EXPECT_EQ(keysOf(keys, chips, 0), (Texts{"B0AV", "B0Am"}));
    EXPECT_EQ(keysOf(keys, chips, 1), (Texts{"", "", "B0RM"}));
}

TEST(FormerKeysTest, TheHwmonChipOfABatteryHadKeysOnlyForWhatTheBatteryDoesNotTell) {
    const Chips chips{chip("acpi/BAT0", "BAT0", {unlabelled(voltage, 0), unlabelled(current, 1)}),
                      chip("platform/unknown", "unknown", {unlabelled(voltage, 0)}),
                      supply("BAT0", "battery:", {labelled(voltage, 0, "voltage_now")})};
    const Keys keys = keysIn(chips);
    EXPECT_EQ(keysOf(keys, chips, 0), (Texts{"B0AV", "B0Am"}));
    EXPECT_EQ(keysOf(keys, chips, 1), Texts{"VIN0"}) << "the repeated voltage took no key";
}

TEST(FormerKeysTest, TheSecondTemperatureOfABatteryIsTheSecondOfItsHwmonChip) {
    const Chips chips{
        chip("platform/macsmc", "macsmc_battery", {unlabelled(temperature, 1), unlabelled(temperature, 2)}),
        supply("macsmc-battery",
               "battery:", {labelled(temperature, 0, "temp"), labelled(temperature, 0, "temp_ambient")})};
    EXPECT_EQ(keysOf(keysIn(chips), chips, 0), (Texts{"TB0T", "TB00"}));
}

TEST(FormerKeysTest, ABatteryWithMoreTemperaturesThanItsHwmonChipKeepsTheOthers) {
    const Chips chips{chip("acpi/BAT0", "BAT0", {unlabelled(temperature, 1)}),
                      supply("BAT0", "battery:",
                             {labelled(temperature, 0, "temp"), labelled(temperature, 0, "temp_ambient")})};
    const Keys keys = keysIn(chips);
    EXPECT_EQ(keysOf(keys, chips, 0), Texts{"TB0T"});
    EXPECT_EQ(keysOf(keys, chips, 1), (Texts{"", "TB00"}));
}

// Next to an SMC

TEST(FormerKeysTest, KeysOfTheControllerWereNeverGiven) {
    const Chips chips{coretemp({"Package id 0"}),
                      chip("pci/03:00.0", "amdgpu", {labelled(temperature, 1, "edge")}),
                      chip("platform/unknown", "unknown", unlabelledAll(temperature, 2))};
    const Keys beside = keysIn(chips, {"TC0T", "TG0D", "TA00"});
    EXPECT_EQ(keysOf(beside, chips, 0), Texts{"TC0p"});
    EXPECT_EQ(keysOf(beside, chips, 1), Texts{"TG0P"});
    EXPECT_EQ(keysOf(beside, chips, 2), (Texts{"TA01", "TA02"}));
}

TEST(FormerKeysTest, CoresThatTheControllerMeasuresHadNoKeys) {
    EXPECT_EQ(keysOfChip(coretemp({"Package id 0", "Core 0", "Core 1", "Core 2"}), {"TC1C"}),
              (Texts{"TC0T", "", "", ""}));
}

TEST(FormerKeysTest, AKeyThatDiffersByLetterCaseMeasuresSomethingElse) {
    EXPECT_EQ(keysOfChip(coretemp({"Core 0"}), {"TC0c", "tC1C"}), Texts{"TC0C"});
}

TEST(FormerKeysTest, OnlyTheFirstRuleThatFitsDecidesWhetherTheControllerMeasuresIt) {
    EXPECT_EQ(keysOfChip(chip("intel-rapl:0", "rapl", {labelled(energy, 0, "package-0")}), {"PC1R"}),
              Texts{"PCPR"});
}

TEST(FormerKeysTest, WhatTheControllerMeasuresOfTheBatteryHadNoKey) {
    EXPECT_EQ(
        keysOfChip(chip("BAT0", "battery:BAT0", batteryChannels()), {"B0AV", "B0AC"}),
        (Texts{"", "", "B0AP", "B0RM", "B0FC", "B0DC", "B0CT", "B0SC", "TB0T", "B0TE", "B0TF", "B0St"}));
}

TEST(FormerKeysTest, ChannelsOfApplesControllerKeepTheirOwnKeys) {
    const Chips chips{chip("a", "applesmc",
                           {labelled(temperature, 1, "TC0D"), labelled(temperature, 2, "TzQ9"),
                            labelled(fan, 1, "Left side"), unlabelled(fanMinimum, 1)}),
                      chip("b", "unknown", {unlabelled(temperature, 1), unlabelled(fan, 1)})};
    for (const KeySet& listed : {KeySet{}, KeySet{"F0Ac", "F0Mn", "TC0D", "TzQ9"}}) {
        const Keys keys = keysIn(chips, listed);
        EXPECT_EQ(keysOf(keys, chips, 0), Texts(4));
        EXPECT_EQ(keysOf(keys, chips, 1), (Texts{"TA00", "F1Ac"}));
    }
}

TEST(FormerKeysTest, WhatTheDriverOfApplesControllerLabelsHadNoOtherKey) {
    const Chips chips{
        coretemp({"Package id 0", "Core 0", "Core 1"}),
        chip("platform/applesmc.768", "applesmc", labelledAll(temperature, {"TA0P", "TC1C", "TW0P"})),
        chip("pci/06:00.0", "iwlwifi_1", {unlabelled(temperature, 1)})};
    const Keys keys = keysIn(chips);
    EXPECT_EQ(keysOf(keys, chips, 0), (Texts{"TC0T", "", ""}));
    EXPECT_EQ(keysOf(keys, chips, 2), Texts{""});
}

// Fans

TEST(FormerKeysTest, LimitsAndTargetsOfAppleSiliconHadTheDigitOfTheirFan) {
    EXPECT_EQ(
        keysOfChip(chip("platform/macsmc", "macsmc_hwmon",
                        {labelled(fan, 1, "Fan 1"), labelled(fan, 2, "Fan 2"), unlabelled(fanMinimum, 1),
                         unlabelled(fanMaximum, 2), unlabelled(fanTarget, 2)})),
        (Texts{"F0Ac", "F1Ac", "F0Mn", "F1Mx", "F1Tg"}));
}

TEST(FormerKeysTest, LimitsAndTargetsOfOtherFansHadNoKeys) {
    EXPECT_EQ(keysOfChip(chip("a", "dell_smm",
                              {unlabelled(fan, 1), unlabelled(fanMinimum, 1), unlabelled(fanTarget, 1)})),
              (Texts{"F0Ac", "", ""}));
}

TEST(FormerKeysTest, FansBeyondTheDigitsHadOtherKeys) {
    const Texts keys = keysOfChip(chip("a", "unknown", unlabelledAll(fan, 12)));
    EXPECT_EQ(keys[9], "F9Ac");
    EXPECT_EQ(keys[10], "Fan0");
    EXPECT_EQ(keys[11], "Fan1");
}

TEST(FormerKeysTest, FansOfTheControllerKeptTheirDigits) {
    EXPECT_EQ(keysOfChip(chip("a", "dell_smm", {unlabelled(fan, 1)}), {"F0Ac"}), Texts{"F1Ac"});
}

// Fans of the registry

TEST(FormerKeysTest, FansOfSensorChipsWereNumberedInTheRegistry) {
    const Chips chips{
        chip("platform/asus-ec", "asusec", {labelled(fan, 1, "CPU_Opt RPM")}),
        chip("platform/dell", "dell_smm", {labelled(fan, 1, "Processor Fan")}),
        chip("platform/nct6775.656", "nct6798", {unlabelled(fan, 1), labelled(fan, 2, "CPU Fan")})};
    const Keys fans = keysIn(chips);
    EXPECT_EQ(keysOf(fans, chips, 0), Texts{"FAN0"});
    EXPECT_EQ(keysOf(fans, chips, 1), Texts{"F0Ac"});
    EXPECT_EQ(keysOf(fans, chips, 2), (Texts{"FAN1", "FAN2"}));
}

TEST(FormerKeysTest, FansWhoseLabelIsNoNameOfAFanHadKeys) {
    EXPECT_EQ(keysOfChip(chip(
                  "platform/nct6775.656", "nct6798",
                  {labelled(fan, 1, "AIO Pump"), labelled(fan, 2, "System Fan"), labelled(fan, 3, "Fan3")})),
              (Texts{"F0Ac", "FAN0", "F1Ac"}));
}

TEST(FormerKeysTest, FansThatShareALabelHadKeys) {
    const Chips chips{
        chip("platform/asus-ec", "asusec",
             {labelled(fan, 1, "Chassis Fan"), labelled(fan, 2, "Chassis Fan"), labelled(fan, 3, "CPU Fan")}),
        chip("platform/nct6775.656", "nct6798", {labelled(fan, 1, "CPU Fan")})};
    const Keys fans = keysIn(chips);
    EXPECT_EQ(keysOf(fans, chips, 0), (Texts{"F0Ac", "F1Ac", "FAN0"}));
    EXPECT_EQ(keysOf(fans, chips, 1), Texts{"FAN1"});
}

TEST(FormerKeysTest, TheRegistryHadNoMoreThanEightFans) {
    const Chips chips{chip("platform/nct6775.656", "nct6798", unlabelledAll(fan, 7)),
                      chip("platform/it87.2608", "it8792", unlabelledAll(fan, 3))};
    const Keys fans = keysIn(chips);
    EXPECT_EQ(keysOf(fans, chips, 0), (Texts{"FAN0", "FAN1", "FAN2", "FAN3", "FAN4", "FAN5", "FAN6"}));
    EXPECT_EQ(keysOf(fans, chips, 1), (Texts{"FAN7", "F0Ac", "F1Ac"}));
}

TEST(FormerKeysTest, FansOfSuperIOChipsCameBeforeThoseOfTheBoardWhereTheRegistryWasFull) {
    const Chips chips{chip("platform/asus-ec", "asusec", {labelled(fan, 1, "CPU_Opt RPM")}),
                      chip("platform/nct6775.656", "nct6798", unlabelledAll(fan, 8))};
    const Keys fans = keysIn(chips);
    EXPECT_EQ(keysOf(fans, chips, 0), Texts{"F0Ac"});
    EXPECT_EQ(keysOf(fans, chips, 1).front(), "FAN0");
}

} // namespace
} // namespace kelvinbar::former_keys_test
