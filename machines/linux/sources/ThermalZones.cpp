#include "machines/linux/sources/ThermalZones.h"

#include "machines/linux/files/SystemFile.h"
#include "machines/linux/files/VisitedRead.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
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

/// Calls `visit` with the type, the temperature and its file of each trip point that is real.
template <typename Visit>
void visitTripPoints(const std::filesystem::path& zone, const Visit& visit) {
    for (int index = 0;; ++index) {
        const std::string point = "trip_point_" + std::to_string(index);
        const auto type = systemFileLine(zone / (point + "_type"));
        if (!type) return;
        const std::filesystem::path file = zone / (point + "_temp");
        const auto temperature = systemFileNumber(file);
        if (temperature && *temperature >= lowestRealTripPoint) visit(*type, *temperature, file);
    }
}

std::vector<std::filesystem::path> zonesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> zones;
    for (const std::string& name : folderEntries(folder)) {
        if (name.starts_with("thermal_zone")) zones.push_back(folder / name);
    }
    return zones;
}

std::vector<CriticalTripPoint> criticalTripPointsOf(const std::filesystem::path& zone) {
    std::vector<CriticalTripPoint> points;
    visitTripPoints(zone, [&](const std::string& type, std::int64_t /*trip*/, const auto& file) {
        if (type != "critical") return;
        points.push_back(
            {.zoneType = systemFileLine(zone / "type").value_or(""), .zone = zone, .limit = file});
    });
    return points;
}

std::optional<int> thermalStateOfZone(const std::filesystem::path& zone) {
    const auto temperature = systemFileNumber(zone / "temp");
    if (!temperature) return std::nullopt;
    int state = 0;
    visitTripPoints(zone, [&](const std::string& type, std::int64_t trip, const auto& /*file*/) {
        if (*temperature >= trip) state = std::max(state, stateAtTripPoint(type));
    });
    return state;
}

} // namespace

std::optional<int> thermalStateOfZones(const std::filesystem::path& zones) {
    std::optional<int> state; // an empty optional is less than any number
    for (const auto& zone : zonesIn(zones)) state = std::max(state, thermalStateOfZone(zone));
    return state;
}

std::vector<CriticalTripPoint> criticalTripPoints(const std::filesystem::path& zones) {
    std::vector<CriticalTripPoint> points;
    for (const auto& zone : visitedRead(zones, [&] { return zonesIn(zones); })) {
        std::ranges::move(visitedRead(zone, [&] { return criticalTripPointsOf(zone); }),
                          std::back_inserter(points));
    }
    return points;
}

} // namespace kelvinbar
