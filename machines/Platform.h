#pragma once

#include "base/Log.h"
#include "sensors/Machine.h"

namespace kelvinbar {

/// The machine that the program runs on. For composition roots only. `log` outlives the machine.
Machine makePlatform(Log& log);

} // namespace kelvinbar
