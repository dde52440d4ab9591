#pragma once

#include "catalogue/SMCCategory.h"
#include "machines/linux/naming/SensorChannel.h"

#include <optional>
#include <string>
#include <string_view>

/// What can be told of a kernel sensor from the texts of its reading, without its files. A snapshot that was
/// taken on Linux is read with these on any system.
namespace kelvinbar {

struct LineMeaning {
    SMCCategory category = SMCCategory::unknown;
    std::string unit; ///< "°C", "V", "A", "W", "RPM", "MHz", "%", "mAh", "min"; empty for texts and counts
};

/// Whether a key is one of a kernel sensor: a chip, a slash, and the kernel's name of a channel
/// ("k10temp-pci-00c3/temp1", "BAT0/charge_now"). Keys of a controller have four characters and are none.
bool isSensorKey(std::string_view key);

/// What the name of a channel tells of it: "temp3" is a temperature, "charge_now" a charge.
std::optional<SensorKind> kindOfFeature(std::string_view feature);

/// The unit in which readings of a kind are shown; empty for texts, counts and flags.
std::string_view unitOf(SensorKind kind);

/// The section of a reading, by its device, its kind and the words in its name.
SMCCategory categoryOf(std::string_view type, SensorKind kind, std::string_view name);

/// Category and unit of a reading that was written as these texts; nothing when the key is no sensor's. A
/// value without a number ("asleep") has no unit.
std::optional<LineMeaning> meaningOfLine(std::string_view key, std::string_view type, std::string_view name,
                                         std::string_view displayValue);

} // namespace kelvinbar
