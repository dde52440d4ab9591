#pragma once

#include <filesystem>
#include <optional>

namespace kelvinbar {

/// How close the kernel's thermal zones in `zones` (/sys/class/thermal) are to their trip points:
/// - 3: a zone has reached its critical trip point
/// - 2: a hot one
/// - 1: a passive one, at which the kernel slows the processor down
/// - 0: none of these
///
/// Nothing when no zone can be read.
std::optional<int> thermalStateOfZones(const std::filesystem::path& zones);

} // namespace kelvinbar
