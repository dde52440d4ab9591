#pragma once

#include "base/Log.h"
#include "sensors/Machine.h"

#include <string_view>

namespace kelvinbar {

/// The machine that the program runs on. Defined by the folder of the operating system that the build is for;
/// only composition roots call it. It opens nothing: a source opens its files or its driver when it is first
/// read.
///
/// `log` outlives the machine.
Machine makePlatform(Log& log);

/// The name of the demo machine that resembles the platform's own machines most; one of demoMachineNames().
std::string_view usualDemoMachine();

} // namespace kelvinbar
