#pragma once

#include "catalogue/KeySet.h"
#include "machines/linux/naming/SensorChannel.h"

#include <vector>

/// What Apple's controller measures and the kernel publishes a second time. The controller's key is shown.
namespace kelvinbar {

/// Whether one of `controllerKeys` measures the same as the channel.
bool isMeasuredByController(const SensorChip& chip, const SensorChannel& channel,
                            const KeySet& controllerKeys);

/// The keys with which the controller's driver labels its channels, where its keys cannot be listed.
KeySet keysOfControllerChips(const std::vector<SensorChip>& chips);

} // namespace kelvinbar
