#include "catalogue/KnownKey.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::known_key_test {
namespace {

std::array<std::span<const KnownKey>, 7> allRows() {
    return {thermalKeys(), powerKeys(),        voltageKeys(), currentKeys(),
            batteryKeys(), boardThermalKeys(), otherKeys()};
}

std::array<std::span<const NumberedKeys>, 4> allNumberedRows() {
    return {numberedTemperatures(), fanFields(), batteryFields(), otherNumberedKeys()};
}

TEST(KnownKeys, HaveOneRowEach) {
    std::vector<std::string_view> keys;
    for (const auto& rows : allRows())
        for (const KnownKey& row : rows) keys.push_back(row.key);
    for (const auto& runs : allNumberedRows())
        for (const NumberedKeys& run : runs) keys.push_back(run.row.key);
    ASSERT_FALSE(keys.empty());
    std::ranges::sort(keys);
    const auto repeated = std::ranges::adjacent_find(keys);
    EXPECT_EQ(repeated, keys.end()) << (repeated == keys.end() ? "" : *repeated);
}

TEST(KnownKeys, AreFoundInTheirList) {
    for (const auto& rows : allRows())
        for (const KnownKey& row : rows) EXPECT_EQ(findRow(rows, row.key), &row) << row.key;
    for (const auto& runs : allNumberedRows())
        for (const NumberedKeys& run : runs) EXPECT_EQ(findRow(runs, run.row.key), &run.row) << run.row.key;
}

TEST(KnownKeys, AreNotFoundInOtherLists) {
    EXPECT_EQ(findRow(powerKeys(), "VBLC"), nullptr);
    EXPECT_EQ(findRow(currentKeys(), "CHBI"), nullptr);
    EXPECT_EQ(findRow(fanFields(), "TC#C"), nullptr);
}

TEST(KnownKeys, AreNotFoundByTextsOfAnotherLength) {
    for (const std::string_view key : {"", "V", "VTT", "VTT  ", "VBLCVBLC"})
        EXPECT_EQ(findRow(voltageKeys(), key), nullptr) << key;
}

TEST(KnownKeys, AreNotFoundByTextsBeforeTheFirstOrAfterTheLast) {
    EXPECT_EQ(findRow(voltageKeys(), "    "), nullptr);
    EXPECT_EQ(findRow(voltageKeys(), "VTT!"), nullptr);
    EXPECT_EQ(findRow(voltageKeys(), "\xFF\xFF\xFF\xFF"), nullptr);
}

TEST(KnownKey, HasItsOwnNameInTheRulesUnlessTheRowGivesAnother) {
    const KnownKey same{"TW0P", "Wi-Fi Proximity", SMCCategory::thermal, celsius};
    EXPECT_EQ(same.ruleName(), "Wi-Fi Proximity");
    const KnownKey other{"TPCD", "PCH Diode", SMCCategory::thermal, celsius, "PCH"};
    EXPECT_EQ(other.ruleName(), "PCH");
}

TEST(NumberedKeys, HaveOneHashInTheKeyAndLimitsThatFitAHexDigit) {
    for (const auto& runs : allNumberedRows()) {
        for (const auto& [row, first, last] : runs) {
            EXPECT_EQ(std::ranges::count(row.key, '#'), 1) << row.key;
            EXPECT_LE(first, last) << row.key;
            EXPECT_LE(last, 15U) << row.key;
        }
    }
}

TEST(NumberedName, HasTheNumberInDecimal) {
    const KnownKey core{"Tp#C", "CPU P-Core #", SMCCategory::cpu, celsius};
    EXPECT_EQ(numberedName(core, 0), "CPU P-Core 0");
    EXPECT_EQ(numberedName(core, 15), "CPU P-Core 15");
    const KnownKey heatsink{"TC#H", "CPU Heatsink", SMCCategory::cpu, celsius};
    EXPECT_EQ(numberedName(heatsink, 3), "CPU Heatsink");
}

} // namespace
} // namespace kelvinbar::known_key_test
