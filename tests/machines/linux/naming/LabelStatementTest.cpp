#include "machines/linux/naming/LabelStatement.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

namespace kelvinbar::label_statement_test {

namespace {

TEST(LabelledFeature, IsTheChipAndTheChannelOfAKey) {
    for (const std::string_view chip : {"k10temp-pci-00c3", "nct6798-isa-0290", "acpitz-acpi-0",
                                        "iwlwifi_1-virtual-0", "r8169_0_300:00-mdio-0"}) {
        for (const std::string_view feature :
             {"temp1", "in0", "fan2", "power1", "curr10", "energy1", "humidity1"}) {
            const auto found = labelledFeature(std::string(chip).append("/").append(feature));
            EXPECT_EQ(found, (LabelledFeature{std::string(chip), std::string(feature)}));
        }
    }
}

TEST(LabelledFeature, HasNoBusNumberThatChangesFromBootToBoot) {
    using Names = std::pair<std::string_view, std::string_view>;
    for (const auto& [key, chip] : {Names{"spd5118-i2c-0-50/temp1", "spd5118-i2c-*-50"},
                                    Names{"ltc2945-spi-1-0/temp1", "ltc2945-spi-*-0"},
                                    Names{"corsairpsu-hid-3-4/temp1", "corsairpsu-hid-*-4"},
                                    Names{"drivetemp-scsi-11-0/temp1", "drivetemp-scsi-*-0"}}) {
        const auto found = labelledFeature(key);
        ASSERT_TRUE(found) << key;
        EXPECT_EQ(found->chip, chip);
    }
}

TEST(LabelledFeature, IsNoneForWhatLibsensorsDoesNotKnow) {
    for (const std::string_view key :
         {"TC0P", "NARC", "BAT0/charge_now", "intel-rapl:0/energy1", "amdgpu-pci-0300/freq1",
          "nct6798-isa-0290/pwm1", "nct6798-isa-0290/temp", "nct6798-isa-0290/temp1x", "/temp1",
          "nct6798/temp1", "k10temp-pci-00c3", ""}) {
        EXPECT_EQ(labelledFeature(key), std::nullopt) << key;
    }
}

TEST(LabelledFeature, IsNoneForTheSecondChipOfAName) {
    EXPECT_EQ(labelledFeature("acpitz-acpi-0#2/temp1"), std::nullopt);
}

TEST(LabelStatement, NamesTheChipAndTheChannel) {
    EXPECT_EQ(labelStatement({"nct6798-isa-0290", "temp2"}, "CPU Socket"),
              "chip \"nct6798-isa-0290\"\n    label temp2 \"CPU Socket\"\n");
}

TEST(LabelStatement, CannotBeLeftByACharacterOfTheLabel) {
    EXPECT_EQ(labelStatement({"chip-isa-0000", "in0"}, "a \"b\\\nc"),
              "chip \"chip-isa-0000\"\n    label in0 \"a \\\"b\\\\ c\"\n");
}

} // namespace
} // namespace kelvinbar::label_statement_test
