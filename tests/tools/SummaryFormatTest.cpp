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

SMCReading packagePower() { return reading("intel-rapl-0/energy", "CPU Package Power", "30", "W", 30); }

SMCReading graphicsPower() { return reading("amdgpu-pci-0300/power1", "GPU Power", "12.50", "W", 12.5); }

TEST(SummaryFormat, AddsTheHighestPowerOfEachChip) {
    EXPECT_EQ(line(3, {packagePower(), graphicsPower(),
                       reading("amdgpu-pci-0300/power2", "GPU Rail Power", "8", "W", 8)}),
              "42.50 W");
}

TEST(SummaryFormat, CountsCoresAndUncoreAsPartsOfTheirPackage) {
    EXPECT_EQ(line(3, {reading("intel-rapl-0-0/energy", "CPU Cores Power", "20", "W", 20),
                       reading("intel-rapl-0-1/energy", "CPU Uncore Power", "4", "W", 4), packagePower()}),
              "30 W");
}

TEST(SummaryFormat, AddsPackagesAndTheirMemory) {
    EXPECT_EQ(line(3, {packagePower(), reading("intel-rapl-0-0/energy", "CPU 1 Cores Power", "20", "W", 20),
                       reading("intel-rapl-0-1/energy", "CPU 1 Memory Power", "5", "W", 5),
                       reading("intel-rapl-1/energy", "CPU 2 Package Power", "40", "W", 40),
                       reading("intel-rapl-1-0/energy", "CPU 2 Memory Power", "6", "W", 6)}),
              "81 W");
}

TEST(SummaryFormat, CountsGraphicsInTheProcessorAsThePackage) {
    const auto voltage =
        reading("amdgpu-pci-0300/in1", "GPU SoC Voltage", "0.81", "V", 0.81, SMCCategory::voltages);
    EXPECT_EQ(line(3, {graphicsPower(), voltage, packagePower()}), "30 W");
    EXPECT_EQ(line(3, {graphicsPower(), voltage}), "12.50 W");
}

TEST(SummaryFormat, TakesAControllerForOneDevice) {
    EXPECT_EQ(
        line(3, {reading("PC0R", "Package Total", "9", "W", 9), reading("PCTR", "Rest", "23", "W", 23)}),
        "23 W");
}

TEST(SummaryFormat, AddsNoGraphicsToAControllersTotal) {
    EXPECT_EQ(line(3, {graphicsPower(), reading("PC0R", "Package Total", "9", "W", 9),
                       reading("PSTR", "CPU Package Energy", "23", "W", 23)}),
              "23 W");
}

TEST(SummaryFormat, LeavesTheSumToAMeterOfTheWholeMachine) {
    EXPECT_EQ(line(3, {packagePower(), reading("power_meter-acpi-0/power1", "System Power", "80", "W", 80)}),
              "80 W  System Power");
    EXPECT_EQ(line(3, {packagePower(), reading("intel-rapl-1/energy", "Platform Power", "70", "W", 70)}),
              "70 W  Platform Power");
}

TEST(SummaryFormat, LeavesOutAMeterOfTheWholeMachineThatIsNotWired) {
    EXPECT_EQ(line(3, {packagePower(), reading("intel-rapl-1/energy", "Platform Power", "0", "W", 0)}),
              "30 W");
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
