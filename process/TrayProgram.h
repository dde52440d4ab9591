#pragma once

#include "process/ProgramCost.h"

#include <chrono>
#include <optional>

namespace kelvinbar {

/// Asks the tray program of this user on the session bus what it costs, and waits for `limit` at the longest.
/// No value if it does not run or does not answer, if there is no bus, and where the build knows no bus. Does
/// not start the program. Any thread.
std::optional<ProgramCost> costOfTrayProgram(std::chrono::microseconds limit);

} // namespace kelvinbar
