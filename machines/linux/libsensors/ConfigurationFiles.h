#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kelvinbar {

/// The files from which libsensors reads its configuration, in its order: sensors3.conf, or sensors.conf
/// without one, in `directory` ("/etc"), then the files in sensors.d. Only files that exist.
std::vector<std::filesystem::path> configurationFiles(const std::filesystem::path& directory);

/// A text that changes when one of the files is changed or replaced (path, inode, size and time). Reads no
/// file.
std::string stampOf(const std::vector<std::filesystem::path>& files);

} // namespace kelvinbar
