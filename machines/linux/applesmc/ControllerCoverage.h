#pragma once

#include "catalogue/KeySet.h"
#include "machines/linux/naming/SensorChannel.h"

#include <vector>

/// Which kernel channels repeat an SMC key. The SMC's key is shown then, and the channel is left out. The
/// rules are a table of chips, labels and keys. Pure functions.
namespace kelvinbar {

/// Whether one of `controllerKeys` is the same measurement as the channel.
bool isMeasuredByController(const SensorChip& chip, const SensorChannel& channel,
                            const KeySet& controllerKeys);

/// The SMC keys that the driver uses as labels of its channels. They stand in for `controllerKeys` where the
/// SMC's keys cannot be listed.
KeySet keysOfControllerChips(const std::vector<SensorChip>& chips);

} // namespace kelvinbar
