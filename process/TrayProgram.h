#pragma once

#include "process/ProgramCost.h"

#include <chrono>
#include <cstdint>
#include <variant>

namespace kelvinbar {

/// Why the tray program does not tell what it costs.
enum class NoAnswer : std::uint8_t {
    cannotAsk,   ///< the build knows no bus, or libsystemd is missing
    notRunning,  ///< there is no bus, or nobody has the program's name on it
    unreachable, ///< there should be a bus, and it cannot be connected to
    silent,      ///< the program or the bus does not answer, or not as it should
};

using TrayAnswer = std::variant<ProgramCost, NoAnswer>;

/// Asks the tray program of this user on the session bus what it costs, and waits for `limit` at the longest.
/// Does not start the program. Reads the environment. Any thread.
TrayAnswer askTrayProgram(std::chrono::microseconds limit);

} // namespace kelvinbar
