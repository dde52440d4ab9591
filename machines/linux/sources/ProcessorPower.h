#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <filesystem>
#include <vector>

namespace kelvinbar {

/// The energy counters of the processors (running average power limit), one chip a power zone, its channel
/// labelled with the zone's name ("package-0", "core", "dram"). `root` is the directory that holds sys/.
/// Most kernels let only the administrator read them.
std::vector<SensorChip> processorPowerChips(const std::filesystem::path& root);

} // namespace kelvinbar
