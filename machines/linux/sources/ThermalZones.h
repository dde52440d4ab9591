#pragma once

#include <filesystem>
#include <optional>

namespace kelvinbar {

/// How close the kernel's thermal zones in `zones` (/sys/class/thermal) are to their trip points: 3 when one
/// has reached its critical point, 2 its hot point, 1 a point at which the processor is slowed down, else 0.
/// Nothing when no zone can be read.
std::optional<int> thermalStateOfZones(const std::filesystem::path& zones);

} // namespace kelvinbar
