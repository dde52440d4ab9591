#pragma once

#include "machines/linux/libsensors/SensorConfiguration.h"
#include "machines/linux/naming/SensorChannel.h"

#include <memory>
#include <vector>

namespace kelvinbar {

/// Gives the channels of `chips`, which are all hardware monitors, the labels of the configuration and drops
/// what it ignores; a chip that has no channel left is dropped too. The configuration's labels count as the
/// driver's.
void applyConfiguration(std::vector<SensorChip>& chips, SensorConfiguration& configuration);

/// What the configuration makes of the channel's value; null for a channel that it cannot change.
std::shared_ptr<const ConfiguredValue> configuredValue(const SensorConfiguration& configuration,
                                                       const SensorChip& chip, const SensorChannel& channel);

} // namespace kelvinbar
