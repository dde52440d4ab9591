#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What an examination of the machine, the tray or the program has found, for people. Whoever knows a part
/// says what it finds there; the programs print it. Plain values.
namespace kelvinbar {

enum class FindingState : std::uint8_t {
    good,
    note,    ///< worth knowing; nothing is wrong
    problem, ///< the user misses something
};

/// Texts are one line without a full stop, and name neither person, host, serial number nor hardware address.
struct Finding {
    std::string subject; ///< what was looked at: "energy counters"
    FindingState state = FindingState::good;
    std::string found;    ///< "4 readings of 2 devices"
    std::string advice{}; ///< one sentence on what to do; empty if there is nothing
};

/// Findings on one part, under a heading: "Sources".
struct FindingSection {
    std::string title;
    std::vector<Finding> findings;
};

} // namespace kelvinbar
