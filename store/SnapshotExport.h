#pragma once

#include "catalogue/SMCReading.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The first line of every snapshot.
inline constexpr std::string_view snapshotTitle = "Kelvinbar snapshot";

/// All `readings` as plain text for a bug report or a spreadsheet: a header, and one line a reading with five
/// fields separated by tabs, sorted by key. No line feed at the end.
std::string snapshotText(const std::vector<SMCReading>& readings, std::chrono::system_clock::time_point time);

} // namespace kelvinbar
