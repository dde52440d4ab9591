#pragma once

#include "tools/Identification.h"

#include <cstddef>
#include <string>

/// What an identification found. Pure functions; any thread.
namespace kelvinbar {

/// How many readings the text names.
inline constexpr std::size_t mostNamedReadings = 10;

/// For people: the readings that responded, the likeliest first, how many others there are, and, for those of
/// hardware monitors, the lines of libsensors' configuration that name them.
std::string identificationText(const IdentificationRecord& record);

/// One JSON object with all readings that changed, the likeliest first.
std::string identificationJson(const IdentificationRecord& record);

} // namespace kelvinbar
