#include "machines/linux/naming/SensorMeaning.h"

#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::sensor_meaning_test {

namespace {

using Category = SMCCategory;
using enum SensorKind;

TEST(SensorMeaning, AKeyIsAChipASlashAndAChannel) {
    for (const std::string_view key :
         {"k10temp-pci-00c3/temp1", "nct6798-isa-0290/in0", "BAT0/charge_now", "intel-rapl-0-1/energy",
          "power_meter-acpi-0#2/power1", "amdgpu-pci-0300/freq1", "sht4x-i2c-1-44/humidity1",
          "pwmfan-isa-0000/pwm1", "AC/online"}) {
        EXPECT_TRUE(isSensorKey(key)) << key;
    }
}

TEST(SensorMeaning, OtherTextsAreNoKeys) {
    for (const std::string_view key : {"", "TC0P", "T/0P", "/temp1", "k10temp-pci-00c3/", "k10temp-pci-00c3",
                                       "x/temp1x", "x/1", "a/fan1_min", "a/voltage_now2", "a/bogus1"}) {
        EXPECT_FALSE(isSensorKey(key)) << key;
    }
}

TEST(SensorMeaning, EveryKindHasItsUnit) {
    EXPECT_EQ(unitOf(temperature), "°C");
    EXPECT_EQ(unitOf(voltage), "V");
    EXPECT_EQ(unitOf(current), "A");
    EXPECT_EQ(unitOf(power), "W");
    EXPECT_EQ(unitOf(energy), "W");
    EXPECT_EQ(unitOf(fan), "RPM");
    EXPECT_EQ(unitOf(charge), "mAh");
    EXPECT_EQ(unitOf(duration), "min");
    EXPECT_EQ(unitOf(percent), "%");
    EXPECT_EQ(unitOf(humidity), "%");
    EXPECT_EQ(unitOf(frequency), "MHz");
    EXPECT_EQ(unitOf(count), "");
    EXPECT_EQ(unitOf(flag), "");
    EXPECT_EQ(unitOf(text), "");
}

TEST(SensorMeaning, TemperaturesBelongToTheirDevice) {
    EXPECT_EQ(categoryOf("k10temp", temperature, "CPU Tctl"), Category::cpu);
    EXPECT_EQ(categoryOf("amdgpu", temperature, "GPU Edge"), Category::gpu);
    EXPECT_EQ(categoryOf("spd5118", temperature, "Memory DIMM 1"), Category::memory);
    EXPECT_EQ(categoryOf("nvme", temperature, "NVMe Composite"), Category::storage);
    EXPECT_EQ(categoryOf("BAT0", temperature, "Battery Temperature"), Category::battery);
    EXPECT_EQ(categoryOf("iwlwifi_1", temperature, "Wi-Fi"), Category::thermal);
    EXPECT_EQ(categoryOf("nobody_knows", temperature, "nobody knows Temperature"), Category::thermal);
}

TEST(SensorMeaning, OtherMeasurementsBelongToTheirKind) {
    EXPECT_EQ(categoryOf("amdgpu", fan, "GPU Fan"), Category::fans);
    EXPECT_EQ(categoryOf("amdgpu", percent, "GPU Fan"), Category::fans);
    EXPECT_EQ(categoryOf("amdgpu", voltage, "GPU Voltage"), Category::voltages);
    EXPECT_EQ(categoryOf("k10temp", current, "CPU Icore"), Category::currents);
    EXPECT_EQ(categoryOf("amdgpu", power, "GPU Power"), Category::power);
    EXPECT_EQ(categoryOf("rapl", energy, "CPU Package Power"), Category::power);
}

TEST(SensorMeaning, FrequenciesAndHumidityBelongToTheirDevice) {
    EXPECT_EQ(categoryOf("amdgpu", frequency, "GPU Clock"), Category::gpu);
    EXPECT_EQ(categoryOf("sht4x", humidity, "Climate Sensor Humidity"), Category::thermal);
}

TEST(SensorMeaning, AllOfABatteryBelongsToIt) {
    for (const SensorKind kind : {voltage, current, power, charge, count, duration, percent, text}) {
        EXPECT_EQ(categoryOf("battery", kind, "Battery"), Category::battery);
    }
    EXPECT_EQ(categoryOf("charger", flag, "Charger Connected"), Category::battery);
    EXPECT_EQ(categoryOf("macsmc_hwmon", voltage, "Battery Voltage"), Category::battery);
}

TEST(SensorMeaning, OnAMainboardTheNameOfATemperatureDecides) {
    EXPECT_EQ(categoryOf("nct6798", temperature, "Mainboard CPUTIN"), Category::cpu);
    EXPECT_EQ(categoryOf("nct6798", temperature, "Mainboard PECI Agent 0"), Category::cpu);
    EXPECT_EQ(categoryOf("thinkpad", temperature, "ThinkPad GPU"), Category::gpu);
    EXPECT_EQ(categoryOf("dell_smm", temperature, "Dell SODIMM"), Category::memory);
    EXPECT_EQ(categoryOf("macsmc_hwmon", temperature, "NAND Flash"), Category::storage);
    EXPECT_EQ(categoryOf("macsmc_hwmon", temperature, "Battery Hotspot"), Category::battery);
    EXPECT_EQ(categoryOf("nct6798", temperature, "Mainboard SYSTIN"), Category::thermal);
    EXPECT_EQ(categoryOf("asusec", voltage, "CPU Core"), Category::voltages);
}

TEST(SensorMeaning, ALineTellsCategoryAndUnit) {
    const auto meaning = meaningOfLine("k10temp-pci-00c3/temp1", "k10temp", "CPU Tctl", "54.5 °C");
    ASSERT_TRUE(meaning);
    EXPECT_EQ(meaning->category, Category::cpu);
    EXPECT_EQ(meaning->unit, "°C");
}

TEST(SensorMeaning, AValueThatIsNoNumberHasNoUnit) {
    const auto asleep = meaningOfLine("amdgpu-pci-0300/temp1", "amdgpu", "GPU Edge", "asleep");
    ASSERT_TRUE(asleep);
    EXPECT_EQ(asleep->unit, "");
    EXPECT_EQ(asleep->category, Category::gpu);
    EXPECT_EQ(meaningOfLine("amdgpu-pci-0300/temp1", "amdgpu", "GPU Edge", "-3 °C")->unit, "°C");
    EXPECT_EQ(meaningOfLine("amdgpu-pci-0300/temp1", "amdgpu", "GPU Edge", "-")->unit, "");
}

TEST(SensorMeaning, ANumberHasItsUnitInEverySpelling) {
    for (const std::string_view value : {".7", "-.7", "+7", "+.7", "7.", "7e1"}) {
        EXPECT_EQ(meaningOfLine("amdgpu-pci-0300/temp1", "amdgpu", "GPU Edge", value)->unit, "°C") << value;
    }
    EXPECT_EQ(meaningOfLine("amdgpu-pci-0300/temp1", "amdgpu", "GPU Edge", "+.")->unit, "");
}

TEST(SensorMeaning, ALineOfAControllerHasNoMeaningHere) {
    EXPECT_FALSE(meaningOfLine("TC0P", "sp78", "CPU Proximity", "45 °C"));
}

} // namespace
} // namespace kelvinbar::sensor_meaning_test
