#pragma once

#include "catalogue/SMCReading.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The first line of every snapshot.
inline constexpr std::string_view snapshotTitle = "Kelvinbar snapshot";

/// `readings` as plain text for a bug report or a spreadsheet: a header, then one line per reading, sorted by
/// key, with five fields separated by tabs. Does not end with a line feed. Hardware addresses and serial
/// numbers in keys, types and names are masked (AddressMask.h).
std::string snapshotText(const std::vector<SMCReading>& readings, std::chrono::system_clock::time_point time);

/// The same with the lines in the order of `readings`.
std::string snapshotTextInOrder(const std::vector<SMCReading>& readings,
                                std::chrono::system_clock::time_point time);

/// Masks addresses and serial numbers in keys, types and names as the snapshot of `readings` does: to compare
/// them with a snapshot. The order of `readings` does not matter.
void maskAddresses(std::vector<SMCReading>& readings);

} // namespace kelvinbar
