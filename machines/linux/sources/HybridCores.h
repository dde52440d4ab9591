#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <filesystem>
#include <vector>

namespace kelvinbar {

/// On processors with two kinds of cores, renames the core channels of `chips` ("Core 12") to tell the kinds
/// apart and count each from 0 ("P-Core 3", "E-Core 0"). Elsewhere nothing changes. `root` is the directory
/// that holds sys/.
void nameHybridCores(const std::filesystem::path& root, std::vector<SensorChip>& chips);

} // namespace kelvinbar
