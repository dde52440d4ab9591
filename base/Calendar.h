#pragma once

#include <chrono>
#include <string>

namespace kelvinbar {

/// `time` as an ISO 8601 internet date-time in UTC, whole seconds (fractions are dropped), for example
/// "2026-03-01T14:05:09Z".
std::string iso8601Text(std::chrono::system_clock::time_point time);

} // namespace kelvinbar
