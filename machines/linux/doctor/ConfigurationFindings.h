#pragma once

#include "base/Finding.h"
#include "sensors/SourceReport.h"

#include <filesystem>
#include <span>
#include <vector>

namespace kelvinbar {

/// What configures the sources, and whether the file with the program's preferences can be read. An empty
/// path stands for a user without one.
std::vector<Finding> configurationFindings(std::span<const SourceReport> reports,
                                           const std::filesystem::path& preferences);

} // namespace kelvinbar
