#pragma once

#include "base/Finding.h"
#include "sensors/SourceReport.h"

#include <filesystem>
#include <span>
#include <vector>

/// What the sources of a Linux machine found and left out, for people. Pure functions, apart from the files
/// that they name.
namespace kelvinbar {

/// A finding for each class of devices, and one for each reason for which it leaves channels out.
std::vector<Finding> sourceFindings(std::span<const SourceReport> reports);

/// Whether this user may read all keys of an Apple computer's controller below `root`, the directory that
/// holds sys/. Empty if there is none, or if it does not answer.
std::vector<Finding> controllerFindings(const std::filesystem::path& root);

} // namespace kelvinbar
