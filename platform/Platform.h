#pragma once

#include "smc/Machine.h"

namespace kelvinbar {

/// The ports of the machine that the program runs on. For composition roots only.
Machine makePlatform();

/// Whether a person at a terminal reads the program's standard output.
bool isStandardOutputTerminal();

} // namespace kelvinbar
