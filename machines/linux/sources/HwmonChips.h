#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <filesystem>
#include <vector>

namespace kelvinbar {

/// The chips of the kernel's hardware-monitoring class, with all channels that have a value, sorted by device
/// path. `root` is the directory that holds sys/. Reads directories, names and labels, but no values; a
/// device that sleeps is not woken.
///
/// The number of a class entry (hwmon3) is ignored, because it changes from boot to boot. Old drivers put
/// their files on the device instead of the entry; these are found too. Drivers without speed inputs get the
/// duty cycles of their fans (pwm1) as channels in percent.
std::vector<SensorChip> hwmonChips(const std::filesystem::path& root);

} // namespace kelvinbar
