#include "machines/linux/naming/SupplyMonitors.h"

#include "base/Text.h"

#include <set>

namespace kelvinbar {

bool isSupply(const SensorChip& chip) {
    return contains(chip.name, ":") && chip.name == std::string(chip.stableName).append(chip.sensorsName);
}

std::string monitorNameOf(const SensorChip& supply) { return replacedAll(supply.sensorsName, "-", "_"); }

SupplyMonitors::SupplyMonitors(const std::vector<SensorChip>& chips) {
    std::set<std::string> names;
    for (const SensorChip& chip : chips) {
        if (isSupply(chip)) names.insert(monitorNameOf(chip));
    }
    for (const SensorChip& chip : chips) {
        if (!names.contains(chip.name)) continue;
        for (const SensorChannel& channel : chip.channels) {
            monitors_.try_emplace({chip.name, channel.kind}, &chip);
        }
    }
}

const SensorChip* SupplyMonitors::find(const SensorChip& supply, SensorKind kind) const {
    if (monitors_.empty() || !isSupply(supply)) return nullptr;
    const std::string name = monitorNameOf(supply);
    const auto monitor = monitors_.find({name, kind});
    return monitor == monitors_.end() ? nullptr : monitor->second;
}

} // namespace kelvinbar
