#pragma once

#include "base/Log.h"
#include "machines/linux/libsensors/SensorConfiguration.h"
#include "machines/linux/naming/SensorChannel.h"
#include "sensors/SourceReport.h"

#include <filesystem>
#include <vector>

namespace kelvinbar {

/// All chips that the kernel publishes below `root`, the directory that holds sys/: hardware monitors, power
/// supplies and energy counters of processors. Counters that this user may not read are left out, with a line
/// in the log.
///
/// `configuration` sets labels of hardware monitors and removes what it ignores; it may be null.
/// What is left out here is added to `leftOut`, which may be null.
std::vector<SensorChip> sensorChips(const std::filesystem::path& root, SensorConfiguration* configuration,
                                    Log& log, LeftOutChannels* leftOut = nullptr);

} // namespace kelvinbar
