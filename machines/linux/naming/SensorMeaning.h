#pragma once

#include "catalogue/SMCCategory.h"
#include "machines/linux/naming/SensorChannel.h"

#include <optional>
#include <string>
#include <string_view>

/// Category and unit of a kernel sensor, derived from the texts of its reading alone. A snapshot line has
/// neither, so a snapshot from Linux is read with these functions on every system. Pure functions.
namespace kelvinbar {

struct LineMeaning {
    SMCCategory category = SMCCategory::unknown;
    std::string unit; ///< "°C", "V", "A", "W", "RPM", "MHz", "%", "mAh", "min"; may be empty
};

/// Whether a key belongs to a kernel sensor: a chip, a slash, and the kernel's name of a channel
/// ("k10temp-pci-00c3/temp1", "BAT0/charge_now"). SMC keys have four characters and never match.
bool isSensorKey(std::string_view key);

/// The kind of a channel, from the kernel's name of it: "temp3" is a temperature, "charge_now" a charge.
std::optional<SensorKind> kindOfFeature(std::string_view feature);

/// The unit of readings of a kind; empty for texts, counts and flags.
std::string_view unitOf(SensorKind kind);

/// The category of a reading, from its device, its kind and the words in its name.
SMCCategory categoryOf(std::string_view type, SensorKind kind, std::string_view name);

/// Category and unit of a snapshot line with these texts. Nothing when the key does not belong to a kernel
/// sensor. A value without a number ("asleep") has no unit.
std::optional<LineMeaning> meaningOfLine(std::string_view key, std::string_view type, std::string_view name,
                                         std::string_view displayValue);

} // namespace kelvinbar
