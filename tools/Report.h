#pragma once

#include "catalogue/SMCReading.h"

#include <chrono>
#include <string>
#include <vector>

namespace kelvinbar {

/// What a snapshot prints: the chosen readings of one moment, in the order in which they are printed.
struct Report {
    std::string machine;                          ///< for people: "this machine", "the sample linux-pc"
    std::chrono::system_clock::time_point time{}; ///< of the readings, or that of a new snapshot
    std::string status;                           ///< for people: how reading went
    std::vector<SMCReading> readings;
};

} // namespace kelvinbar
