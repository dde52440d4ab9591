#include "machines/linux/naming/SensorPlaces.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::sensor_places_test {

namespace {

SensorChip chip(std::string_view device, std::string_view name, std::string_view sensorsName) {
    SensorChip chip;
    chip.device = device;
    chip.name = chip.stableName = name;
    chip.sensorsName = sensorsName;
    return chip;
}

/// The place of temp1.
std::optional<std::string> placeOf(const SensorChip& chip) {
    SensorChannel channel(SensorKind::temperature, 1);
    channel.feature = "temp1";
    return sensorPlace(chip, channel);
}

TEST(SensorPlacesTest, AKeyWithAnAddressOfItsOwnNeedsNoPlace) {
    EXPECT_EQ(placeOf(chip("pci0000:00/0000:00:18.3", "k10temp", "k10temp-pci-00c3")), std::nullopt);
    EXPECT_EQ(placeOf(chip("platform/nct6775.656", "nct6798", "nct6798-isa-0290")), std::nullopt);
    EXPECT_EQ(placeOf(chip("LNXSYSTM:00/ACPI0001:00", "BAT0", "BAT0-acpi-0")), std::nullopt);
}

TEST(SensorPlacesTest, AKeyWithTheNumberOfABusHasAPlace) {
    EXPECT_EQ(placeOf(chip("virtual/thermal", "acpitz", "acpitz-virtual-0")), "virtual/thermal/acpitz/temp1");
    EXPECT_EQ(placeOf(chip("pci/mdio_bus/r8169-0-400:00", "r8169", "r8169-mdio-1")),
              "pci/mdio_bus/r8169-0-400:00/r8169/temp1");
}

TEST(SensorPlacesTest, AChipWhoseNameIsCountedUpGoesByItsNameWithoutTheNumber) {
    SensorChip card = chip("pci0000:00/0000:02:00.0", "iwlwifi_1", "iwlwifi_1-pci-0200");
    card.stableName = "iwlwifi";
    EXPECT_EQ(placeOf(card), "pci0000:00/0000:02:00.0/iwlwifi/temp1");
    SensorChip reloaded = card;
    reloaded.name = "iwlwifi_2";
    reloaded.sensorsName = "iwlwifi_2-pci-0200";
    EXPECT_EQ(placeOf(reloaded), placeOf(card));
}

TEST(SensorPlacesTest, AChipWithoutADevicePathHasNoPlace) {
    EXPECT_EQ(placeOf(chip("", "spd5118", "spd5118-i2c-0-50")), std::nullopt);
}

TEST(SensorPlacesTest, ChannelsOfOneChipHaveTheirOwnPlaces) {
    const SensorChip module = chip("pci/i2c-0/0-0050", "spd5118", "spd5118-i2c-0-50");
    SensorChannel second(SensorKind::temperature, 2);
    second.feature = "temp2";
    ASSERT_NE(placeOf(module), std::nullopt);
    EXPECT_NE(sensorPlace(module, second), placeOf(module));
}

TEST(SensorPlacesTest, TheNumberOfAnI2CBusIsNotInThePlace) {
    const auto moduleOn = [](std::string_view device, std::string_view sensorsName) {
        return placeOf(chip(device, "spd5118", sensorsName));
    };
    const auto place = moduleOn("pci0000:00/0000:00:1f.4/i2c-0/0-0050", "spd5118-i2c-0-50");
    ASSERT_NE(place, std::nullopt);
    EXPECT_EQ(moduleOn("pci0000:00/0000:00:1f.4/i2c-12/12-0050", "spd5118-i2c-12-50"), place);
    EXPECT_NE(moduleOn("pci0000:00/0000:00:1f.4/i2c-0/0-0051", "spd5118-i2c-0-51"), place);
    EXPECT_NE(moduleOn("pci0000:00/0000:00:14.0/i2c-0/0-0050", "spd5118-i2c-0-50"), place);
}

TEST(SensorPlacesTest, TheNumberOfASCSIHostIsNotInThePlace) {
    const auto driveOn = [](std::string_view device, std::string_view sensorsName) {
        return placeOf(chip(device, "drivetemp", sensorsName));
    };
    const auto place = driveOn("pci/0000:00:17.0/ata2/host1/target1:0:0/1:0:0:0", "drivetemp-scsi-1-0");
    ASSERT_NE(place, std::nullopt);
    EXPECT_EQ(driveOn("pci/0000:00:17.0/ata2/host3/target3:0:0/3:0:0:0", "drivetemp-scsi-3-0"), place);
    EXPECT_NE(driveOn("pci/0000:00:17.0/ata3/host1/target1:0:0/1:0:0:0", "drivetemp-scsi-1-0"), place);
    EXPECT_NE(driveOn("pci/0000:00:17.0/ata2/host1/target1:0:4/1:0:4:0", "drivetemp-scsi-1-40"), place);
}

TEST(SensorPlacesTest, TheNumberOfAHIDConnectionIsNotInThePlace) {
    const auto coolerOn = [](std::string_view device, std::string_view sensorsName) {
        return placeOf(chip(device, "kraken2023", sensorsName));
    };
    const auto place = coolerOn("usb1/1-12/1-12:1.1/0003:1E71:300E.0005", "kraken2023-hid-3-5");
    ASSERT_NE(place, std::nullopt);
    EXPECT_EQ(coolerOn("usb1/1-12/1-12:1.1/0003:1E71:300E.000A", "kraken2023-hid-3-a"), place);
    EXPECT_NE(coolerOn("usb1/1-11/1-11:1.1/0003:1E71:300E.0005", "kraken2023-hid-3-5"), place);
    EXPECT_NE(coolerOn("usb1/1-1.12/1-1.12:1.1/0003:1E71:300E.0005", "kraken2023-hid-3-5"), place);
}

TEST(SensorPlacesTest, AddressesThatLookLikeNumbersStayInThePlace) {
    for (const std::string_view device :
         {"pci0000:00/0000:00:1f.4", "usb1/1-1.12/1-1.12:1.1",
          "platform/PNP0C14:01/wmi_bus/wmi_bus-PNP0C14:01", "platform/i2c-designware.0", "hostess", "7", "-",
          ":", "target", "targets:0:0", "::", "i2c-"}) {
        EXPECT_EQ(placeOf(chip(device, "a", "a-virtual-0")), std::string(device).append("/a/temp1"));
    }
}

TEST(SensorPlacesTest, PlacesOfSeveralKeysAreNumberedInTheNaturalOrderOfTheKeys) {
    std::map<std::string, std::string> places{
        {"a-i2c-10-50/temp1", "a"}, {"a-i2c-9-50/temp1", "a"}, {"a-i2c-11-50/temp1", "a"}, {"b", "b"}};
    makeUnique(places);
    EXPECT_EQ(places, (std::map<std::string, std::string>{{"a-i2c-9-50/temp1", "a"},
                                                          {"a-i2c-10-50/temp1", "a#2"},
                                                          {"a-i2c-11-50/temp1", "a#3"},
                                                          {"b", "b"}}));
}

} // namespace
} // namespace kelvinbar::sensor_places_test
