#include "machines/linux/naming/ChipName.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::chip_name_test {

namespace {

using Steps = std::vector<DeviceStep>;

std::string on(std::string_view subsystem, std::string_view device) {
    return chipName("chip", Steps{{std::string(device), std::string(subsystem)}});
}

TEST(ChipName, APciDeviceIsNamedAfterBusSlotAndFunction) {
    EXPECT_EQ(on("pci", "0000:00:18.3"), "chip-pci-00c3");
    EXPECT_EQ(on("pci", "0000:0b:00.0"), "chip-pci-0b00");
    EXPECT_EQ(on("pci", "0001:01:00.0"), "chip-pci-10100");
    // libsensors stores 32 bits, which is too short for the domain of a drive behind a storage bridge.
    EXPECT_EQ(on("pci", "10000:01:00.0"), "chip-pci-0100");
}

TEST(ChipName, APlatformDeviceIsNamedAfterTheNumberBehindItsPoint) {
    EXPECT_EQ(on("platform", "nct6775.656"), "chip-isa-0290");
    EXPECT_EQ(on("platform", "coretemp.1"), "chip-isa-0001");
    EXPECT_EQ(on("platform", "thinkpad_hwmon"), "chip-isa-0000");
    EXPECT_EQ(on("of_platform", "fan.2"), "chip-isa-0002");
}

TEST(ChipName, AnI2cDeviceIsNamedAfterBusAndAddress) {
    EXPECT_EQ(on("i2c", "0-0050"), "chip-i2c-0-50");
    EXPECT_EQ(on("i2c", "12-0008"), "chip-i2c-12-08");
    EXPECT_EQ(on("i2c", "9191-0290"), "chip-isa-0290");
}

TEST(ChipName, OtherBusesHaveTheirOwnForms) {
    EXPECT_EQ(on("spi", "spi0.1"), "chip-spi-0-1");
    EXPECT_EQ(on("acpi", "PNP0C0A:00"), "chip-acpi-0");
    EXPECT_EQ(on("hid", "0003:1B1C:1C05.000A"), "chip-hid-3-a");
    EXPECT_EQ(on("mdio_bus", "r8169-0-300:01"), "chip-mdio-1");
    EXPECT_EQ(on("scsi", "1:0:0:0"), "chip-scsi-1-0");
    EXPECT_EQ(on("scsi", "2:1:3:4"), "chip-scsi-2-134");
}

TEST(ChipName, ADeviceOfAClassIsNamedAfterTheDeviceBehindIt) {
    EXPECT_EQ(chipName("nvme", Steps{{"nvme0", "nvme"}, {"0000:01:00.0", "pci"}}), "nvme-pci-0100");
    EXPECT_EQ(chipName("BAT0", Steps{{"BAT0", "power_supply"}, {"PNP0C0A:00", "acpi"}}), "BAT0-acpi-0");
    EXPECT_EQ(chipName("acpitz", Steps{{"thermal_zone0", "thermal"}, {"LNXTHERM:00", "acpi"}}),
              "acpitz-acpi-0");
}

TEST(ChipName, AChipWithoutADeviceOnAKnownBusIsVirtual) {
    EXPECT_EQ(chipName("bogus", {}), "bogus-virtual-0");
    EXPECT_EQ(chipName("iwlwifi_1", Steps{{"thermal_zone3", "thermal"}}), "iwlwifi_1-virtual-0");
    EXPECT_EQ(on("wmi", "DEADBEEF-2001"), "chip-virtual-0");
}

TEST(ChipName, AnAddressThatIsNoneOfItsBusDoesNotCount) {
    EXPECT_EQ(on("pci", "pci0"), "chip-virtual-0");
    EXPECT_EQ(on("i2c", "i2c-4"), "chip-virtual-0");
    EXPECT_EQ(on("i2c", "4-"), "chip-virtual-0");
    EXPECT_EQ(on("spi", "spi0"), "chip-virtual-0");
    EXPECT_EQ(on("spi", "spi0."), "chip-virtual-0");
    EXPECT_EQ(on("spi", "0.1"), "chip-virtual-0");
    EXPECT_EQ(on("hid", "0003:1B1C"), "chip-virtual-0");
    EXPECT_EQ(on("scsi", "1:0:0"), "chip-virtual-0");
    EXPECT_EQ(on("mdio_bus", "phy"), "chip-mdio-0");
}

TEST(ChipName, WhereTheKernelTellsNoBusTheFormOfTheNameDecides) {
    EXPECT_EQ(on("", "0-002d"), "chip-i2c-0-2d");
    EXPECT_EQ(on("", "spi1.0"), "chip-spi-1-0");
    EXPECT_EQ(on("", "0000:01:00.0"), "chip-pci-0100");
    EXPECT_EQ(on("", "it87.2624"), "chip-isa-0a40");
}

} // namespace
} // namespace kelvinbar::chip_name_test
