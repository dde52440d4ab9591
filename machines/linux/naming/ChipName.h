#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kelvinbar {

/// One step from a hwmon entry towards its hardware: the device that a `device` link leads to, and the bus or
/// class of that device.
struct DeviceStep {
    std::string name;      ///< "0000:01:00.0", "nct6775.656", "0-0050"
    std::string subsystem; ///< "pci", "platform", "i2c"; empty without a link
};

/// The name of a chip as libsensors prints it and as sensors.conf addresses it: "k10temp-pci-00c3",
/// "nct6798-isa-0290", "spd5118-i2c-0-50", "acpitz-acpi-0", "iwlwifi_1-virtual-0".
///
/// `driverName` is the content of the chip's `name` file; `steps` follow the `device` links, nearest first.
/// The first step on a bus that libsensors knows decides; a chip without one is virtual.
std::string chipName(std::string_view driverName, std::span<const DeviceStep> steps);

} // namespace kelvinbar
