#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <filesystem>
#include <vector>

namespace kelvinbar {

/// The chips of the kernel's hardware-monitoring class with every channel that has a value, sorted by device.
/// `root` is the directory that holds sys/. Chips that old drivers publish on the device itself are found
/// there. The numbers of the class (hwmon3) play no part: they change from boot to boot.
std::vector<SensorChip> hwmonChips(const std::filesystem::path& root);

} // namespace kelvinbar
