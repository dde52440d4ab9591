#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// How close the kernel's thermal zones in `zones` (/sys/class/thermal) are to their trip points:
/// - 3: a zone has reached its critical trip point
/// - 2: a hot one
/// - 1: a passive one, at which the kernel slows the processor down
/// - 0: none of these
///
/// Nothing when no zone can be read.
std::optional<int> thermalStateOfZones(const std::filesystem::path& zones);

/// A temperature at which the kernel shuts the machine down.
struct CriticalTripPoint {
    std::string zoneType; ///< what the zone measures: "acpitz"; may be empty
    std::filesystem::path zone;
    std::filesystem::path limit; ///< file, in thousandths of a degree Celsius
};

/// Those of all zones in `zones`, without the meaningless ones of some firmware, below 40 °C.
std::vector<CriticalTripPoint> criticalTripPoints(const std::filesystem::path& zones);

} // namespace kelvinbar
