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

/// The made-up machine that looks most like those of the platform, by its name among demoMachineNames().
std::string_view usualDemoMachine();

} // namespace kelvinbar
