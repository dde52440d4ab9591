#include "machines/linux/sources/ChipLimits.h"

#include "machines/linux/files/SystemFile.h"
#include "machines/linux/files/VisitedRead.h"
#include "machines/linux/sources/HwmonChips.h"
#include "machines/linux/sources/ThermalZones.h"

#include <algorithm>

namespace kelvinbar {

namespace {

constexpr double countsPerDegree = 1000;

bool isSuspended(const std::vector<std::filesystem::path>& powerStates) {
    return std::ranges::any_of(powerStates,
                               [](const auto& state) { return systemFileLine(state) == "suspended"; });
}

} // namespace

std::optional<CriticalMargin> ChipLimits::smallestMargin() {
    const auto limited = channels();
    std::optional<CriticalMargin> smallest;
    for (const LimitedChannel& channel : *limited) {
        const auto degrees = visitedRead(channel.device, [&] { return degreesBelowLimit(channel); });
        if (!degrees || (smallest && smallest->degrees <= *degrees)) continue;
        smallest = CriticalMargin{.sensor = channel.name, .degrees = *degrees};
    }
    return smallest;
}

std::shared_ptr<const ChipLimits::Channels> ChipLimits::channels() {
    {
        const std::scoped_lock lock(mutex_);
        if (channels_ != nullptr) return channels_;
    }
    auto found = std::make_shared<Channels>();
    addChips(*found);
    addZones(*found);
    const WatchedPass* const pass = WatchedPass::current();
    const bool isWhole = pass == nullptr || (!pass->isAbandoned() && pass->silentDevices().empty());
    if (isWhole) {
        const std::scoped_lock lock(mutex_);
        channels_ = found;
    }
    return found;
}

void ChipLimits::addChips(Channels& channels) const {
    for (const SensorChip& chip : hwmonChips(root_)) {
        for (const SensorChannel& channel : chip.channels) {
            const auto limit = chip.folder / (channel.feature + "_crit");
            if (channel.kind != SensorKind::temperature || channel.file.empty() || !isThere(limit)) continue;
            channels.push_back({.name = chip.sensorsName + "/" + channel.feature,
                                .device = chip.entry,
                                .value = channel.file,
                                .limit = limit,
                                .fault = channel.fault,
                                .powerStates = chip.powerStates});
        }
    }
}

void ChipLimits::addZones(Channels& channels) const {
    for (const CriticalTripPoint& point : criticalTripPoints(root_ / "sys/class/thermal")) {
        const std::string name = point.zone.filename().string();
        channels.push_back({.name = point.zoneType.empty() ? name : point.zoneType + "/" + name,
                            .device = point.zone,
                            .value = point.zone / "temp",
                            .limit = point.limit});
    }
}

std::optional<double> ChipLimits::degreesBelowLimit(const LimitedChannel& channel) {
    if (isSuspended(channel.powerStates)) return std::nullopt;
    if (!channel.fault.empty() && systemFileNumber(channel.fault).value_or(0) != 0) return std::nullopt;
    const auto limit = systemFileNumber(channel.limit);
    if (!limit || *limit <= 0) return std::nullopt;
    const auto value = systemFileNumber(channel.value);
    if (!value) return std::nullopt;
    return static_cast<double>(*limit - *value) / countsPerDegree;
}

} // namespace kelvinbar
