#include "machines/linux/applesmc/ControllerCoverage.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::controller_coverage_test {

namespace {

using enum SensorKind;

SensorChip chipNamed(std::string_view name) {
    SensorChip chip;
    chip.name = name;
    return chip;
}

SensorChannel channelOf(SensorKind kind, std::string_view label) {
    SensorChannel channel(kind, 1);
    channel.label = label;
    channel.isLabelled = true;
    return channel;
}

struct Case {
    std::string_view chip;
    SensorKind kind;
    std::string_view label;
    std::string_view keys; ///< separated by spaces; each one alone covers the channel
};

const std::vector<Case> cases{
    {"coretemp", temperature, "Core 0", "TC0C TC1C TC9C TCaC"},
    {"rapl", energy, "package-0", "PCPR PC0R PC0C"},
    {"rapl", energy, "package-1", "PC1R"},
    {"rapl", energy, "core", "PCPC"},
    {"rapl", energy, "uncore", "PCPG"},
    {"iwlwifi_1", temperature, "temp1", "TW0P"},
    {"ath10k_hwmon", temperature, "temp1", "TW0P"},
    {"ath9k", temperature, "temp1", ""},
    {"mt7921_phy0", temperature, "temp1", "TW0P"},
    {"rtw89", temperature, "temp1", "TW0P"},
    {"brcmfmac", temperature, "temp1", "TW0P"},
    {"pch_cannonlake", temperature, "temp1", "TPCD"},
    {"battery:BAT0", voltage, "voltage_now", "B0AV B1AV"},
    {"BAT0", voltage, "in0", "B0AV"},
    {"CMB1", voltage, "in0", "B0AV"},
    {"battery:BAT0", current, "current_now", "B0AC B0Am"},
    {"BAT0", current, "curr1", "B0AC"},
    {"battery:BAT0", power, "power_now", "B0AP"},
    {"battery:BAT0", temperature, "temp", "TB0T"},
    {"battery:BAT0", charge, "charge_now", "B0RM"},
    {"battery:BAT0", charge, "energy_now", "B0RM"},
    {"battery:BAT0", charge, "charge_full", "B0FC"},
    {"battery:BAT0", charge, "energy_full", "B0FC"},
    {"battery:BAT0", charge, "charge_full_design", "B0DC"},
    {"battery:BAT0", charge, "energy_full_design", "B0DC"},
    {"battery:BAT0", count, "cycle_count", "B0CT"},
    {"battery:BAT0", percent, "capacity", "BRSC"},
    {"battery:BAT0", duration, "time_to_full_now", "B0TF"},
    {"battery:BAT0", duration, "time_to_empty_now", "B0TE"},
    {"battery:BAT0", text, "status", "B0St"},
    {"charger:AC", flag, "online", "CH0B"},
    {"charger:AC", voltage, "voltage_now", "CH0V"},
    {"charger:AC", current, "current_now", "CH0C"},
    {"charger:AC", power, "power_now", "CH0W ACPW"},
    // Not measured by any SMC key.
    {"coretemp", temperature, "Package id 0", ""},
    {"coretemp", voltage, "Core 0", ""},
    {"rapl", energy, "dram", ""},
    {"rapl", power, "package-0", ""},
    {"peripheral:hidpp_battery_0", percent, "capacity", ""},
    {"nvme", temperature, "Composite", ""},
    {"amdgpu", temperature, "edge", ""},
    {"charger:AC", flag, "present", ""},
};

KeySet wordsOf(std::string_view keys) {
    KeySet words;
    while (!keys.empty()) {
        const std::size_t end = std::min(keys.find(' '), keys.size());
        words.emplace(keys.substr(0, end));
        keys.remove_prefix(std::min(end + 1, keys.size()));
    }
    return words;
}

KeySet allKeys() {
    KeySet keys{"FNum", "TC0P", "F0Ac", "TG0P", "VC0C"};
    for (const Case& each : cases) keys.merge(wordsOf(each.keys));
    return keys;
}

bool isMeasured(const Case& each, const KeySet& keys) {
    return isMeasuredByController(chipNamed(each.chip), channelOf(each.kind, each.label), keys);
}

std::string describe(const Case& each) { return std::string(each.chip).append(" ").append(each.label); }

TEST(ControllerCoverage, EachOfTheKeysOfAChannelCoversIt) {
    for (const Case& each : cases) {
        SCOPED_TRACE(describe(each));
        for (const std::string& key : wordsOf(each.keys)) EXPECT_TRUE(isMeasured(each, {"TC0P", key})) << key;
        EXPECT_EQ(isMeasured(each, allKeys()), !each.keys.empty());
    }
}

TEST(ControllerCoverage, OtherKeysDoNotCoverIt) {
    for (const Case& each : cases) {
        SCOPED_TRACE(describe(each));
        KeySet others = allKeys();
        std::erase_if(others, [&](const std::string& key) { return isMeasured(each, {key}); });
        EXPECT_FALSE(isMeasured(each, others));
        EXPECT_LE(allKeys().size() - others.size(), 4U) << "few keys measure one thing";
        EXPECT_FALSE(isMeasured(each, {}));
    }
}

TEST(ControllerCoverage, LetterCaseOfKeysCounts) {
    EXPECT_FALSE(isMeasured({"coretemp", temperature, "Core 0", ""}, {"Tc0c", "tC0C", "TC0c"}));
    EXPECT_FALSE(isMeasured({"pch_cannonlake", temperature, "temp1", ""}, {"TPCd"}));
}

TEST(ControllerCoverage, TheKeysOfTheControllersChipAreTheLabelsOfItsChannels) {
    SensorChip controller = chipNamed("applesmc");
    SensorChannel unlabelled(temperature, 3);
    unlabelled.label = "temp3";
    controller.channels = {channelOf(temperature, "TC0P"), channelOf(temperature, "TW0P"), unlabelled};
    SensorChip other = chipNamed("coretemp");
    other.channels = {channelOf(temperature, "Core 0")};
    EXPECT_EQ(keysOfControllerChips({other, controller}), (KeySet{"TC0P", "TW0P"}));
    EXPECT_EQ(keysOfControllerChips({other}), KeySet());
}

} // namespace
} // namespace kelvinbar::controller_coverage_test
