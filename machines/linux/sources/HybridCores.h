#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <filesystem>
#include <vector>

namespace kelvinbar {

/// On processors with two types of cores, relabels the core channels of `chips` ("Core 12") so that the types
/// can be distinguished, each numbered from 0 ("P-Core 3", "E-Core 0"). Does nothing on other processors.
/// `root` is the directory that holds sys/.
void nameHybridCores(const std::filesystem::path& root, std::vector<SensorChip>& chips);

} // namespace kelvinbar
