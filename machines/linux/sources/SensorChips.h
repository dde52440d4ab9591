#pragma once

#include "base/Log.h"
#include "machines/linux/libsensors/SensorConfiguration.h"
#include "machines/linux/naming/SensorChannel.h"

#include <filesystem>
#include <vector>

namespace kelvinbar {

/// All chips with sensors that the kernel publishes below `root`, the directory that holds sys/: hardware
/// monitors, power supplies and the processors' energy counters. Counters that only the administrator may
/// read are left out. Hardware monitors have the labels of `configuration` and lack what it ignores; it may
/// be null.
std::vector<SensorChip> sensorChips(const std::filesystem::path& root, SensorConfiguration* configuration,
                                    Log& log);

} // namespace kelvinbar
