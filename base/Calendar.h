#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Dates for people and for exported files. Independent of the time zone and the locale of the process.
namespace kelvinbar {

enum class TimePrecision : std::uint8_t { seconds, milliseconds };

/// `time` as an ISO 8601 date and time in UTC, for example "2026-03-01T14:05:09Z" or
/// "2026-03-01T14:05:09.250Z". Smaller fractions of a second are dropped, towards the past. Any thread.
std::string iso8601Text(std::chrono::system_clock::time_point time,
                        TimePrecision precision = TimePrecision::seconds);

/// The time that `iso8601Text` prints as `text` with whole seconds, from 1970 to 2199; no value for other
/// texts. Any thread.
std::optional<std::chrono::system_clock::time_point> timeOfIso8601Text(std::string_view text);

} // namespace kelvinbar
