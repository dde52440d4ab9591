#include "machines/linux/sources/ThermalZones.h"

#include "machines/linux/files/SystemFile.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace kelvinbar {

namespace {

/// Some firmware declares meaningless trip points at or near zero.
constexpr std::int64_t lowestRealTripPoint = 40'000; // thousandths of a degree Celsius

int stateAtTripPoint(const std::string& type) {
    if (type == "critical") return 3;
    if (type == "hot") return 2;
    if (type == "passive") return 1;
    return 0;
}

std::optional<int> thermalStateOfZone(const std::filesystem::path& zone) {
    const auto temperature = systemFileNumber(zone / "temp");
    if (!temperature) return std::nullopt;
    int state = 0;
    for (int index = 0;; ++index) {
        const std::string point = "trip_point_" + std::to_string(index);
        const auto type = systemFileLine(zone / (point + "_type"));
        if (!type) return state;
        const auto trip = systemFileNumber(zone / (point + "_temp"));
        const bool reached = trip && *trip >= lowestRealTripPoint && *temperature >= *trip;
        if (reached) state = std::max(state, stateAtTripPoint(*type));
    }
}

} // namespace

std::optional<int> thermalStateOfZones(const std::filesystem::path& zones) {
    std::optional<int> state; // an empty optional is less than any number
    for (const std::string& name : folderEntries(zones)) {
        if (name.starts_with("thermal_zone")) state = std::max(state, thermalStateOfZone(zones / name));
    }
    return state;
}

} // namespace kelvinbar
