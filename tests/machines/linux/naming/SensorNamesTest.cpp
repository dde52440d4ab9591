#include "machines/linux/naming/SensorNames.h"

#include "base/Text.h"
#include "tests/machines/linux/LabelledChannel.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::sensor_names_test {

namespace {

using testing::ElementsAre;
using enum SensorKind;

SensorChannel plain(SensorKind kind, int number) { return {kind, number}; }

/// A channel of a power supply, which has a name instead of a number.
SensorChannel attribute(SensorKind kind, std::string_view name) {
    SensorChannel channel = labelled(kind, 0, name);
    channel.feature = name;
    return channel;
}

/// `sensorsName` begins with the chip's name.
SensorChip chip(std::string_view sensorsName, std::string_view device, std::vector<SensorChannel> channels) {
    SensorChip chip;
    chip.sensorsName = sensorsName;
    chip.name = sensorsName.substr(0, sensorsName.find('-'));
    chip.stableName = chip.name;
    chip.device = device;
    chip.channels = std::move(channels);
    return chip;
}

SensorChip supply(std::string_view role, std::string_view entry, std::vector<SensorChannel> channels) {
    SensorChip supply = chip(entry, entry, std::move(channels));
    supply.stableName = role;
    supply.name = std::string(role).append(entry);
    return supply;
}

std::vector<SensorName> readings(const std::vector<SensorChip>& chips) {
    std::vector<SensorName> readings;
    for (const auto& ofChip : sensorNames(chips)) {
        for (const std::optional<SensorName>& reading : ofChip) {
            if (reading) readings.push_back(*reading);
        }
    }
    return readings;
}

std::vector<std::string> names(const std::vector<SensorChip>& chips) {
    std::vector<std::string> names;
    for (const SensorName& reading : readings(chips)) names.push_back(reading.name);
    return names;
}

std::vector<std::string> keys(const std::vector<SensorChip>& chips) {
    std::vector<std::string> keys;
    for (const SensorName& reading : readings(chips)) keys.push_back(reading.key);
    return keys;
}

/// The name of the only channel of a machine.
std::string nameOn(std::string_view sensorsName, const SensorChannel& channel) {
    return names({chip(sensorsName, "device", {channel})}).front();
}

SensorChip drive(std::string_view sensorsName, std::string_view model) {
    SensorChip drive = chip(sensorsName, sensorsName, {labelled(temperature, 1, "Composite")});
    drive.model = model;
    return drive;
}

SensorChip card(std::string_view sensorsName, std::string_view interface) {
    SensorChip card = chip(sensorsName, sensorsName, {plain(temperature, 1)});
    card.network = interface;
    return card;
}

// Keys

TEST(SensorNames, AKeyIsTheChipAsLibsensorsNamesItAndTheKernelsChannel) {
    EXPECT_THAT(
        keys({chip("nct6798-isa-0290", "a",
                   {plain(temperature, 2), plain(voltage, 0), plain(current, 1), plain(SensorKind::power, 1),
                    plain(energy, 3), plain(fan, 7), plain(frequency, 1), plain(humidity, 1)})}),
        ElementsAre("nct6798-isa-0290/temp2", "nct6798-isa-0290/in0", "nct6798-isa-0290/curr1",
                    "nct6798-isa-0290/power1", "nct6798-isa-0290/energy3", "nct6798-isa-0290/fan7",
                    "nct6798-isa-0290/freq1", "nct6798-isa-0290/humidity1"));
    EXPECT_THAT(keys({supply("battery:", "BAT0", {attribute(charge, "charge_now")})}),
                ElementsAre("BAT0/charge_now"));
}

TEST(SensorNames, ChipsThatLibsensorsCannotTellApartAreCountedInTheOrderOfTheirDevices) {
    const SensorChip first = chip("power_meter-acpi-0", "ACPI000D:02", {plain(SensorKind::power, 1)});
    const SensorChip second = chip("power_meter-acpi-0", "ACPI000D:10", {plain(SensorKind::power, 1)});
    EXPECT_THAT(keys({first, second}),
                ElementsAre("power_meter-acpi-0/power1", "power_meter-acpi-0#2/power1"));
    EXPECT_THAT(keys({second, first}),
                ElementsAre("power_meter-acpi-0#2/power1", "power_meter-acpi-0/power1"));
}

/// Keys by device.
std::map<std::string, std::string> keysOfDevices(const std::vector<std::string>& devices) {
    std::vector<SensorChip> chips;
    for (const std::string& device : devices) {
        chips.push_back(chip("power_meter-acpi-0", device, {plain(SensorKind::power, 1)}));
    }
    const auto found = keys(chips);
    std::map<std::string, std::string> keysByDevice;
    for (std::size_t index = 0; index < devices.size(); ++index) keysByDevice[devices[index]] = found[index];
    return keysByDevice;
}

/// Addresses compare as text and other folders in natural order: a mixture of both must not make a circle.
TEST(SensorNames, KeysDoNotDependOnTheOrderInWhichDevicesAreFound) {
    for (std::vector<std::string> devices :
         {std::vector<std::string>{"10:1", "9:1", "9a"}, {"01/a", "01/b", "1/a", "1/b"}}) {
        const auto expected = keysOfDevices(devices);
        while (std::ranges::next_permutation(devices).found) EXPECT_EQ(keysOfDevices(devices), expected);
    }
}

TEST(SensorNames, AKeyHasNoControlCharacters) {
    EXPECT_THAT(keys({chip("bad\tname-virtual-0", "", {plain(fan, 1)})}),
                ElementsAre("bad_name-virtual-0/fan1"));
}

TEST(SensorNames, AChipWithoutANameHasAKey) {
    SensorChip nameless;
    nameless.channels = {plain(fan, 1)};
    EXPECT_THAT(keys({nameless}), ElementsAre("hwmon/fan1"));
    EXPECT_THAT(names({nameless}), ElementsAre("Sensor Fan"));
}

// Which channels have readings

TEST(SensorNames, LimitsAndTargetsOfAFanHaveNoReading) {
    const auto entries = sensorNames({chip("macsmc_hwmon-isa-0000", "a",
                                           {plain(fanMinimum, 1), plain(fanMaximum, 1), plain(fanTarget, 1),
                                            plain(fanSafe, 1), plain(fanMode, 1), plain(fan, 1)})});
    ASSERT_EQ(entries.size(), 1U);
    ASSERT_EQ(entries[0].size(), 6U);
    for (std::size_t index = 0; index < 5; ++index) EXPECT_FALSE(entries[0][index]);
    EXPECT_TRUE(entries[0][5]);
}

TEST(SensorNames, ApplesControllerHasKeysOfItsOwnAndNoneHere) {
    EXPECT_THAT(keys({chip("applesmc-isa-0300", "applesmc.768", {labelled(temperature, 1, "TC0P")})}),
                ElementsAre());
}

TEST(SensorNames, WhatTheKernelsChipOfASupplyMeasuresIsNotTakenFromTheSupplyAgain) {
    const SensorChip monitor = chip("macsmc_battery-acpi-0", "a", {plain(voltage, 0)});
    const SensorChip battery = supply("battery:", "macsmc-battery",
                                      {attribute(voltage, "voltage_now"), attribute(current, "current_now")});
    EXPECT_THAT(keys({monitor, battery}),
                ElementsAre("macsmc_battery-acpi-0/in0", "macsmc-battery/current_now"));
    EXPECT_THAT(keys({battery}), ElementsAre("macsmc-battery/voltage_now", "macsmc-battery/current_now"));
}

// Names of channels

TEST(SensorNames, ANameIsTheDeviceAndTheLabel) {
    EXPECT_EQ(nameOn("k10temp-pci-00c3", labelled(temperature, 1, "Tctl")), "CPU Tctl");
    EXPECT_EQ(nameOn("nvme-pci-0100", labelled(temperature, 1, "Composite")), "NVMe Composite");
    EXPECT_EQ(nameOn("nvme-pci-0100", labelled(temperature, 2, "Sensor 1")), "NVMe Sensor 1");
    EXPECT_EQ(nameOn("nct6798-isa-0290", labelled(temperature, 4, "AUXTIN1")), "Mainboard AUXTIN1");
}

TEST(SensorNames, ARowGivesALabelItsWords) {
    EXPECT_EQ(nameOn("k10temp-pci-00c3", labelled(temperature, 3, "Tccd1")), "CPU CCD 1");
    EXPECT_EQ(nameOn("coretemp-isa-0000", labelled(temperature, 1, "Package id 0")), "CPU Package");
    EXPECT_EQ(nameOn("amdgpu-pci-0300", labelled(temperature, 2, "junction")), "GPU Hotspot");
    EXPECT_EQ(nameOn("amdgpu-pci-0300", labelled(frequency, 1, "sclk")), "GPU Clock");
    EXPECT_EQ(nameOn("nct6798-isa-0290", plain(voltage, 0)), "Mainboard Vcore");
    EXPECT_EQ(nameOn("enp5s0-pci-0500", labelled(temperature, 1, "PHY Temperature")), "Ethernet PHY");
}

TEST(SensorNames, SomeLabelsNeedNoDevice) {
    EXPECT_EQ(nameOn("coretemp-isa-0000", labelled(temperature, 2, "Core 0")), "Core 0");
    EXPECT_EQ(nameOn("asus_wmi_sensors-virtual-0", labelled(fan, 2, "Chassis Fan 1")), "Chassis Fan 1");
    EXPECT_EQ(nameOn("asus_wmi_sensors-virtual-0", plain(fan, 2)), "Mainboard Fan 2");
}

TEST(SensorNames, ALabelThatNamesTheDeviceDoesNotNameItTwice) {
    EXPECT_EQ(nameOn("nouveau-pci-0100", labelled(voltage, 0, "GPU core")), "GPU core");
}

TEST(SensorNames, AChannelWithoutALabelGoesByItsKindAndNumber) {
    EXPECT_EQ(nameOn("it8628-isa-0a40", plain(temperature, 3)), "Mainboard Temperature 3");
    EXPECT_EQ(nameOn("it8628-isa-0a40", plain(voltage, 5)), "Mainboard Voltage 5");
    EXPECT_EQ(nameOn("bogus-virtual-0", plain(humidity, 2)), "bogus Humidity 2");
}

TEST(SensorNames, TheOnlyChannelOfItsKindHasNoNumber) {
    EXPECT_EQ(nameOn("amdgpu-pci-0300", plain(fan, 1)), "GPU Fan");
    EXPECT_EQ(nameOn("BAT0-acpi-0", plain(voltage, 0)), "Battery Voltage");
    EXPECT_THAT(names({chip("radeon-pci-0100", "a", {plain(temperature, 1), plain(temperature, 2)})}),
                ElementsAre("GPU Temperature 1", "GPU Temperature 2"));
}

TEST(SensorNames, ADeviceWithOneSensorGoesByItsOwnName) {
    EXPECT_EQ(nameOn("iwlwifi_1-virtual-0", plain(temperature, 1)), "Wi-Fi");
    EXPECT_EQ(nameOn("pch_cannonlake-virtual-0", plain(temperature, 1)), "Chipset");
    EXPECT_EQ(nameOn("drivetemp-scsi-0-0", plain(temperature, 1)), "SATA Drive");
    EXPECT_EQ(nameOn("i350bb-pci-0500", labelled(temperature, 1, "loc1")), "Ethernet");
    EXPECT_THAT(names({chip("acpitz-acpi-0", "a", {plain(temperature, 1), plain(temperature, 2)})}),
                ElementsAre("ACPI Thermal Zone 1", "ACPI Thermal Zone 2"));
}

TEST(SensorNames, AFanThatIsOnlyDrivenIsAFanInPercent) {
    SensorChannel output(percent, 1);
    output.feature = "pwm1";
    const auto found = readings({chip("nouveau-pci-0100", "a", {output})});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].key, "nouveau-pci-0100/pwm1");
    EXPECT_EQ(found[0].name, "GPU Fan");
    EXPECT_EQ(found[0].unit, "%");
    EXPECT_EQ(found[0].category, SMCCategory::fans);
}

TEST(SensorNames, AChipThatNoRowNamesGoesByItsDriver) {
    EXPECT_EQ(nameOn("pmic_thermal-virtual-0", plain(temperature, 1)), "pmic Temperature");
    EXPECT_EQ(nameOn("some_chip-i2c-0-40", labelled(voltage, 1, "1V8")), "some chip 1V8");
}

TEST(SensorNames, AnUnknownChipOfANetworkCardIsEthernetOrWiFi) {
    EXPECT_THAT(names({card("newnic-pci-0500", "enp5s0")}), ElementsAre("Ethernet"));
    EXPECT_THAT(names({card("newradio-pci-0600", "wlp6s0")}), ElementsAre("Wi-Fi"));
}

// Several equal devices

TEST(SensorNames, DrivesAreToldApartByTheirModels) {
    EXPECT_THAT(names({drive("nvme-pci-0100", "Samsung SSD 980"), drive("nvme-pci-0200", "WD Blue SN570 ")}),
                ElementsAre("NVMe Samsung SSD 980 Composite", "NVMe WD Blue SN570 Composite"));
    EXPECT_THAT(names({drive("nvme-pci-0100", "Samsung SSD 980")}), ElementsAre("NVMe Composite"));
}

TEST(SensorNames, DrivesOfOneModelAndWithoutOneAreCounted) {
    EXPECT_THAT(names({drive("nvme-pci-0200", "Same"), drive("nvme-pci-0100", "Same")}),
                ElementsAre("NVMe 2 Same Composite", "NVMe Same Composite"));
    EXPECT_THAT(names({drive("nvme-pci-0100", ""), drive("nvme-pci-0200", "")}),
                ElementsAre("NVMe Composite", "NVMe 2 Composite"));
}

TEST(SensorNames, ALongModelLosesWhatSaysLittle) {
    EXPECT_THAT(
        names({drive("nvme-pci-0100", "Samsung SSD 970 EVO Plus 1TB"),
               drive("nvme-pci-0200", "Samsung SSD 970 EVO Plus 2TB")}),
        ElementsAre("NVMe Samsung 970 EVO Plus 1TB Composite", "NVMe Samsung 970 EVO Plus 2TB Composite"));
}

TEST(SensorNames, ASecondGraphicsCardHasItsNumberWhateverItsDriver) {
    const SensorChip first = chip("i915-pci-0010", "pci0000:00/0000:00:02.0", {plain(temperature, 1)});
    const SensorChip second =
        chip("nouveau-pci-0100", "pci0000:00/0000:00:1d.0", {plain(temperature, 1), plain(fan, 1)});
    EXPECT_THAT(names({second, first}), ElementsAre("GPU 2 Temperature", "GPU 2 Fan", "GPU Temperature"));
}

TEST(SensorNames, AddressesAreOrderedAsHexadecimalNumbers) {
    EXPECT_THAT(names({chip("amdgpu-pci-0a00", "0000:0a:00.0", {plain(fan, 1)}),
                       chip("amdgpu-pci-1000", "0000:10:00.0", {plain(fan, 1)})}),
                ElementsAre("GPU Fan", "GPU 2 Fan"));
}

TEST(SensorNames, NetworkCardsAreToldApartByTheirInterfaces) {
    EXPECT_THAT(names({card("igc-pci-0500", "enp5s0"), card("igc-pci-0600", "enp6s0")}),
                ElementsAre("Ethernet enp5s0", "Ethernet enp6s0"));
    EXPECT_THAT(names({card("mt7921_phy0-pci-0500", ""), card("mt7921_phy1-pci-0600", "")}),
                ElementsAre("Wi-Fi", "Wi-Fi 2"));
}

TEST(SensorNames, MemoryModulesGoByTheirSlots) {
    EXPECT_THAT(names({chip("spd5118-i2c-4-53", "b", {plain(temperature, 1)}),
                       chip("spd5118-i2c-4-51", "a", {plain(temperature, 1)})}),
                ElementsAre("Memory DIMM 4", "Memory DIMM 2"));
    EXPECT_THAT(names({chip("jc42-i2c-0-18", "a", {plain(temperature, 1)})}), ElementsAre("Memory DIMM 1"));
}

TEST(SensorNames, ASecondProcessorIsNamedEvenWithItsCores) {
    const auto cores = [](std::string_view name) {
        return chip(name, name,
                    {labelled(temperature, 1, "Package id 0"), labelled(temperature, 2, "Core 0")});
    };
    EXPECT_THAT(names({cores("coretemp-isa-0000"), cores("coretemp-isa-0001")}),
                ElementsAre("CPU Package", "Core 0", "CPU 2 Package", "CPU 2 Core 0"));
}

TEST(SensorNames, AnEnergyCounterBelongsToItsSocket) {
    SensorChip counter = chip("intel-rapl-1-0", "intel-rapl:1:0", {attribute(energy, "core")});
    counter.name = "rapl";
    counter.place = 1;
    EXPECT_THAT(names({counter}), ElementsAre("CPU 2 Cores Power"));
}

TEST(SensorNames, ABatteryAndTheKernelsChipForItAreOneDevice) {
    EXPECT_THAT(names({chip("BAT0-acpi-0", "a", {plain(voltage, 0)}),
                       supply("battery:", "BAT0", {attribute(percent, "capacity")}),
                       supply("battery:", "BAT1", {attribute(percent, "capacity")})}),
                ElementsAre("Battery Voltage", "Battery Level", "Battery 2 Level"));
}

// Types and units of supplies

TEST(SensorNames, ASupplyTellsInItsTypeWhatItIs) {
    const auto found =
        readings({supply("battery:", "BAT0", {attribute(charge, "charge_now")}),
                  supply("charger:", "AC", {attribute(flag, "online")}),
                  supply("charger:", "ucsi-source-psy-USBC000:001", {attribute(voltage, "voltage_now")}),
                  supply("peripheral:", "hidpp_battery_0", {attribute(percent, "capacity")})});
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(found[0].type, "battery");
    EXPECT_EQ(found[0].unit, "mAh");
    EXPECT_EQ(found[1].type, "charger");
    EXPECT_EQ(found[1].name, "Charger Connected");
    EXPECT_EQ(found[1].unit, "");
    EXPECT_EQ(found[2].type, "usb");
    EXPECT_EQ(found[2].name, "USB-C Voltage");
    EXPECT_EQ(found[3].type, "peripheral");
    EXPECT_EQ(found[3].name, "Device Battery Level");
    EXPECT_EQ(found[3].category, SMCCategory::battery);
}

// Unique, short and readable

TEST(SensorNames, WhereKindsDifferTheKindTellsNamesApart) {
    EXPECT_THAT(names({chip("asusec-isa-0000", "a",
                            {labelled(temperature, 1, "CPU"), labelled(current, 1, "CPU"),
                             labelled(fan, 1, "CPU")})}),
                ElementsAre("CPU Temperature", "CPU Current", "CPU Fan"));
}

TEST(SensorNames, EqualNamesAreCountedAndThoseWithNumbersHaveTheirChipBehindThem) {
    EXPECT_THAT(names({chip("bogus-virtual-0", "a", {labelled(fan, 1, "Same"), labelled(fan, 2, "Same")})}),
                ElementsAre("bogus Same", "bogus Same 2"));
    EXPECT_THAT(names({chip("gigabyte_wmi-virtual-0", "b", {plain(temperature, 2)}),
                       chip("it8628-isa-0a40", "a", {plain(temperature, 2)})}),
                ElementsAre("Mainboard Temperature 2 (gigabyte_wmi)", "Mainboard Temperature 2"));
}

TEST(SensorNames, ANumberThatIsAddedDoesNotMakeANewDouble) {
    EXPECT_THAT(
        names({chip("bogus-virtual-0", "a",
                    {labelled(fan, 1, "Same"), labelled(fan, 2, "Same"), labelled(fan, 3, "Same 2")})}),
        ElementsAre("bogus Same", "bogus Same (bogus)", "bogus Same 2"));
}

TEST(SensorNames, AFourLetterLabelIsNotANameByItself) {
    EXPECT_EQ(nameOn("asusec-isa-0000", labelled(temperature, 1, "VRM1")), "VRM1 Temperature");
}

TEST(SensorNames, ALabelOfBlanksAndControlCharactersCountsAsNone) {
    EXPECT_EQ(nameOn("it8628-isa-0a40", labelled(fan, 2, " \t\n")), "Mainboard Fan 2");
    EXPECT_EQ(nameOn("it8628-isa-0a40", labelled(fan, 2, "Rear\nfan")), "Mainboard Rear fan");
}

TEST(SensorNames, AnOverlongNameDropsTheDeviceBeforeItIsCut) {
    EXPECT_EQ(nameOn("nct6798-isa-0290", labelled(fan, 1, "Front radiator fan in the upper bay")),
              "Front radiator fan in the upper bay");
    const std::string cut = nameOn("nct6798-isa-0290", labelled(fan, 1, std::string(50, 'x')));
    EXPECT_EQ(cut, std::string(39, 'x').append("…"));
}

} // namespace
} // namespace kelvinbar::sensor_names_test
