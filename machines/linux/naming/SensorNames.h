#pragma once

#include "catalogue/SMCCategory.h"
#include "machines/linux/naming/SensorChannel.h"

#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// What a reading of a channel carries besides its value.
struct SensorName {
    std::string key;  ///< "k10temp-pci-00c3/temp1": the chip as libsensors names it, a slash, the feature
    std::string name; ///< "CPU Tctl"; unique among the chips, 1 to 40 characters
    SMCCategory category = SMCCategory::unknown;
    std::string unit; ///< "°C", "V", …; empty for texts, counts and flags
    std::string
        type; ///< the chip's name ("k10temp"); a supply is a "battery", "charger", "usb" or "peripheral"
};

/// Keys, names, categories and units of all channels, in the order of `chips` and their channels. A channel
/// that has no reading of its own has no entry: limits and targets of fans, what another chip measures as
/// well, and all channels of Apple's controller, whose keys have names of their own.
///
/// A key depends on its device alone, except that chips which libsensors cannot tell apart are counted in the
/// order of their device paths ("power_meter-acpi-0#2/power1"). A name also depends on the other chips: it
/// tells no more than is needed to tell them apart. Neither depends on the order of `chips`.
std::vector<std::vector<std::optional<SensorName>>> sensorNames(const std::vector<SensorChip>& chips);

} // namespace kelvinbar
