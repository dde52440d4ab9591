#include "machines/linux/naming/SensorWords.h"

#include "base/Text.h"
#include "machines/linux/naming/NameText.h"
#include "machines/linux/naming/TextPattern.h"

#include <set>
#include <string>
#include <string_view>
#include <tuple>

#include <gtest/gtest.h>

namespace kelvinbar::sensor_words_test {

namespace {

/// A text that the first alternative of a pattern matches.
std::string exampleOf(std::string_view pattern) {
    return replacedAll(replacedAll(pattern.substr(0, pattern.find('|')), "*", ""), "?", "1");
}

TEST(SensorWords, EveryDeviceRowIsTheFirstForItsChips) {
    for (const DeviceRow& row : deviceRows()) {
        const std::string example = exampleOf(row.chips);
        EXPECT_EQ(deviceRowOf(example), &row) << example;
    }
}

TEST(SensorWords, EveryLabelRowIsTheFirstForItsLabels) {
    for (const LabelRow& row : labelRows()) {
        const std::string chip = row.chips == "*" ? "bogus" : exampleOf(row.chips);
        const SensorKind kind = row.kind.value_or(SensorKind::voltage);
        const std::string label = exampleOf(row.labels);
        EXPECT_EQ(labelRowOf(chip, kind, label), &row) << chip << " " << label;
    }
}

TEST(SensorWords, TheWordsOfRowsAreFitForNames) {
    constexpr std::size_t longestDevice = 18;
    constexpr std::size_t longestLabel = 22;
    for (const DeviceRow& row : deviceRows()) {
        EXPECT_FALSE(row.words.empty()) << row.chips;
        EXPECT_EQ(cleanedText(row.words), row.words);
        EXPECT_LE(characterCount(row.words), longestDevice) << row.words;
    }
    for (const LabelRow& row : labelRows()) {
        EXPECT_EQ(cleanedText(row.words), row.words);
        EXPECT_LE(characterCount(row.words), longestLabel) << row.words;
        EXPECT_FALSE(row.isWhole && row.words.empty()) << row.labels;
    }
}

TEST(SensorWords, ARowThatNumbersHasANumberInItsLabels) {
    for (const LabelRow& row : labelRows()) {
        if (!contains(row.words, "#")) continue;
        EXPECT_TRUE(contains(row.labels, "*") || contains(row.labels, "?")) << row.labels;
    }
}

TEST(SensorWords, CommonDriversHaveARow) {
    for (const std::string_view chip : {"coretemp",
                                        "k10temp",
                                        "zenpower",
                                        "k8temp",
                                        "fam15h_power",
                                        "via_cputemp",
                                        "cpu_thermal",
                                        "soc_thermal",
                                        "cpu0_thermal",
                                        "soc_dts0",
                                        "cluster0_thermal",
                                        "rapl",
                                        "amdgpu",
                                        "radeon",
                                        "nouveau",
                                        "nvidia",
                                        "i915",
                                        "xe",
                                        "nvme",
                                        "drivetemp",
                                        "spd5118",
                                        "jc42",
                                        "ee1004",
                                        "iwlwifi_1",
                                        "ath10k_hwmon",
                                        "ath11k_hwmon",
                                        "mt7921_phy0",
                                        "rtw89_8852be",
                                        "brcmfmac",
                                        "pch_cannonlake",
                                        "acpitz",
                                        "nct6775",
                                        "nct6798",
                                        "nct7802",
                                        "it8728",
                                        "it8792",
                                        "f71882fg",
                                        "f8000",
                                        "w83627ehf",
                                        "w83795g",
                                        "sch5627",
                                        "dme1737",
                                        "pc87360",
                                        "smsc47m1",
                                        "vt1211",
                                        "lm78",
                                        "asb100",
                                        "asus_wmi_sensors",
                                        "asusec",
                                        "atk0110",
                                        "hp_wmi_sensors",
                                        "gigabyte_wmi",
                                        "thinkpad",
                                        "dell_smm",
                                        "asus",
                                        "macsmc_hwmon",
                                        "macsmc_battery",
                                        "BAT0",
                                        "BAT1",
                                        "CMB0",
                                        "AC",
                                        "ADP1",
                                        "ucsi_source_psy_USBC000:001",
                                        "hidpp_battery_0",
                                        "corsairpsu",
                                        "corsaircpro",
                                        "kraken3",
                                        "d5next",
                                        "power_meter",
                                        "pwmfan",
                                        "rp1_adc",
                                        "lm75",
                                        "sht4x",
                                        "i350bb",
                                        "r8169_0_300:00",
                                        "mlx5",
                                        "steamdeck_hwmon",
                                        "cros_ec"}) {
        EXPECT_NE(deviceRowOf(chip), nullptr) << chip;
    }
    EXPECT_EQ(deviceRowOf("bogus"), nullptr);
    EXPECT_EQ(deviceRowOf(""), nullptr);
}

TEST(SensorWords, EveryKindThatChipsMeasureHasWords) {
    std::set<std::string_view> words;
    for (const SensorKind kind :
         {SensorKind::temperature, SensorKind::voltage, SensorKind::current, SensorKind::power,
          SensorKind::fan, SensorKind::frequency, SensorKind::humidity}) {
        EXPECT_TRUE(words.insert(kindWords(kind)).second) << kindWords(kind);
    }
    EXPECT_EQ(kindWords(SensorKind::energy), "Power");
    EXPECT_EQ(kindWords(SensorKind::percent), "Fan");
}

} // namespace
} // namespace kelvinbar::sensor_words_test
