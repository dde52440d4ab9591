#pragma once

#include <filesystem>

namespace kelvinbar {

/// How hot the kernel's thermal zones (`zones` is /sys/class/thermal) are against their trip points: 3 when
/// one has reached its critical point, 2 its hot point, 1 a point at which the processor is slowed down,
/// otherwise 0; -1 when no zone can be read.
int thermalStateOfZones(const std::filesystem::path& zones);

} // namespace kelvinbar
