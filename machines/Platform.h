#pragma once

#include "base/Log.h"
#include "sensors/Machine.h"

#include <string_view>

namespace kelvinbar {

/// The machine that the program runs on. For composition roots only. `log` outlives the machine.
Machine makePlatform(Log& log);

/// The made-up machine that looks most like those of the platform, by its name among demoMachineNames().
std::string_view usualDemoMachine();

} // namespace kelvinbar
