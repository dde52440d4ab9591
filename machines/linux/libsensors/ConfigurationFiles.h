#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kelvinbar {

/// The files in which libsensors looks for its configuration, in the order in which it reads them:
/// sensors3.conf or else sensors.conf in `directory` ("/etc"), then those in sensors.d. Only files that
/// exist.
std::vector<std::filesystem::path> configurationFiles(const std::filesystem::path& directory);

/// A text that differs when one of the files was changed or replaced. Reads no file.
std::string stampOf(const std::vector<std::filesystem::path>& files);

} // namespace kelvinbar
