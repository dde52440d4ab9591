#pragma once

#include "machines/linux/naming/SensorChannel.h"
#include "sensors/SourceReport.h"

#include <filesystem>
#include <vector>

namespace kelvinbar {

/// The energy counters of the processors (RAPL). Each power zone is a chip with one channel, labelled with
/// the zone's name ("package-0", "core", "dram"). `root` is the directory that holds sys/.
///
/// Since Linux 5.10 only the administrator may read these counters, because energy readings leak secrets.
/// A zone without a name is added to `leftOut`, which may be null.
std::vector<SensorChip> processorPowerChips(const std::filesystem::path& root,
                                            LeftOutChannels* leftOut = nullptr);

} // namespace kelvinbar
