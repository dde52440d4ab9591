#pragma once

#include "catalogue/SMCCategory.h"
#include "machines/linux/naming/SensorChannel.h"
#include "sensors/SourceReport.h"

#include <optional>
#include <string>
#include <vector>

/// Names for kernel sensors. The kernel has no names that people can read or that last: a chip is "hwmon3",
/// which may be "hwmon5" after a reboot, and its label may be missing or "temp1". Here each channel gets a
/// stable key, a short unique name, a category and a unit.
///
/// Limit: keys are as stable as libsensors names. The key of a chip on a numbered bus changes with the bus;
/// SensorPlaces.h finds such chips again. Pure functions; the tables are in SensorWords.h.
namespace kelvinbar {

/// The constant part of a channel's reading.
struct SensorName {
    std::string key;  ///< "k10temp-pci-00c3/temp1": the chip as libsensors names it, a slash, the feature
    std::string name; ///< "CPU Tctl"; unique among the chips, 1 to 40 characters
    SMCCategory category = SMCCategory::unknown;
    std::string unit; ///< "°C", "V", …; empty for texts, counts and flags
    std::string
        type; ///< the chip's name ("k10temp"); a supply is a "battery", "charger", "usb" or "peripheral"
};

/// Names for all channels: one list per chip, with one entry per channel, in their order. An entry is empty
/// for a channel without a reading of its own: limits and targets of fans, repetitions of another chip, and
/// all channels of Apple's SMC, whose keys have names in the catalogue.
///
/// A key depends on its device alone. Only chips with the same libsensors name are numbered, in the order of
/// their device paths ("power_meter-acpi-0#2/power1"). A name also depends on the other chips, since it is
/// only as specific as needed to be unique. Neither depends on the order of `chips`.
///
/// Adds the channels without a reading to `leftOut`, apart from those of Apple's SMC; may be null.
std::vector<std::vector<std::optional<SensorName>>> sensorNames(const std::vector<SensorChip>& chips,
                                                                LeftOutChannels* leftOut = nullptr);

} // namespace kelvinbar
