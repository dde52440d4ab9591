#pragma once

#include "machines/linux/libsensors/SensorConfiguration.h"
#include "machines/linux/naming/SensorChannel.h"
#include "sensors/SourceReport.h"

#include <memory>
#include <vector>

namespace kelvinbar {

/// Applies the configuration to `chips`, which are all hardware monitors: sets labels and removes ignored
/// channels, and chips without any channel left. A configured label counts as the driver's own. Adds the
/// channels that it removes to `leftOut`, which may be null.
void applyConfiguration(std::vector<SensorChip>& chips, SensorConfiguration& configuration,
                        LeftOutChannels* leftOut = nullptr);

/// How the configuration computes the channel's value; null for a channel that it cannot change.
std::shared_ptr<const ConfiguredValue> configuredValue(const SensorConfiguration& configuration,
                                                       const SensorChip& chip, const SensorChannel& channel);

} // namespace kelvinbar
