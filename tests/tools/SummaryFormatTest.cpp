#include "tools/formats/SummaryFormat.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::summary_format_test {

namespace {

SMCReading reading(std::string_view key, std::string_view name, std::string_view value, std::string_view unit,
                   std::optional<double> number, SMCCategory category = SMCCategory::power) {
    return {.key = std::string(key),
            .name = std::string(name),
            .category = category,
            .type = {},
            .value = std::string(value),
            .numericValue = number,
            .unit = std::string(unit),
            .raw = "1",
            .status = {}};
}

std::string summaryOf(std::vector<SMCReading> readings) {
    return makeSummaryWriter({})({.machine = {}, .time = {}, .status = {}, .readings = std::move(readings)});
}

/// The text after the heading of the line, which begins at the same column in all of them.
std::string line(int number, const std::vector<SMCReading>& readings) {
    std::string summary = summaryOf(readings);
    for (int skipped = 1; skipped < number; ++skipped) summary.erase(0, summary.find('\n') + 1);
    return summary.substr(13, summary.find('\n') - 13);
}

TEST(SummaryFormat, HasFourLinesWithoutReadings) {
    EXPECT_EQ(summaryOf({}), "Hottest      none\nFastest fan  none\nPower        none\nBattery      none\n");
}

TEST(SummaryFormat, NamesTheHottestSensor) {
    EXPECT_EQ(line(1, {reading("a", "A", "40", "°C", 40), reading("b", "B", "61", "°C", 61),
                       reading("c", "C", "99", "RPM", 99), reading("d", "D asleep", "asleep", "°C", {})}),
              "61 °C  B");
}

TEST(SummaryFormat, CountsNoSettings) {
    EXPECT_EQ(line(2, {reading("F0Mx", "Fan 0 Maximum", "5880", "RPM", 5880),
                       reading("F0Tg", "Fan 0 Target", "2160", "RPM", 2160),
                       reading("F0Ac", "Fan 0", "2156", "RPM", 2156)}),
              "2156 RPM  Fan 0");
    EXPECT_EQ(line(3, {reading("PCPL", "CPU Power Limit", "56", "W", 56)}), "none");
}

TEST(SummaryFormat, AddsTheHighestPowerOfEachChip) {
    EXPECT_EQ(line(3, {reading("rapl/energy1", "CPU Package Power", "30", "W", 30),
                       reading("rapl/energy2", "CPU Cores Power", "20", "W", 20),
                       reading("amdgpu-pci-0300/power1", "GPU Power", "12.50", "W", 12.5)}),
              "42.50 W");
}

TEST(SummaryFormat, TakesAControllerForOneDevice) {
    EXPECT_EQ(
        line(3, {reading("PC0R", "Package Total", "9", "W", 9), reading("PSTR", "Rest", "23", "W", 23)}),
        "23 W");
}

TEST(SummaryFormat, LeavesTheSumToAMeterOfTheWholeMachine) {
    EXPECT_EQ(line(3, {reading("rapl/energy1", "CPU Package Power", "30", "W", 30),
                       reading("power_meter-acpi-0/power1", "System Power", "80", "W", 80)}),
              "80 W  System Power");
}

TEST(SummaryFormat, AddsNoBattery) {
    EXPECT_EQ(line(3, {reading("BAT0/power_now", "Battery Power", "9", "W", 9, SMCCategory::battery)}),
              "none");
}

TEST(SummaryFormat, TellsTheBatterysLevelAndState) {
    const auto level = reading("BAT0/capacity", "Battery Level", "65", "%", 65, SMCCategory::battery);
    const auto state = reading("BAT0/status", "Battery Status", "Full", "", {}, SMCCategory::battery);
    EXPECT_EQ(line(4, {level, state}), "65 %  Full");
    EXPECT_EQ(line(4, {state}), "Full");
}

TEST(SummaryFormat, DerivesTheLevelFromCharges) {
    const auto remaining = reading("B0RM", "Battery 0 Remaining", "4037", "mAh", 4037, SMCCategory::battery);
    EXPECT_EQ(line(4, {remaining,
                       reading("B0FC", "Battery 0 Full Charge", "8074", "mAh", 8074, SMCCategory::battery)}),
              "50 %");
    EXPECT_EQ(
        line(4, {remaining, reading("B0FC", "Battery 0 Full Charge", "0", "mAh", 0, SMCCategory::battery)}),
        "none");
}

TEST(SummaryFormat, LeavesOutTheBatteryOfAMouse) {
    EXPECT_EQ(line(4, {reading("hid/capacity", "Device Battery Level", "9", "%", 9, SMCCategory::battery)}),
              "none");
}

} // namespace
} // namespace kelvinbar::summary_format_test
