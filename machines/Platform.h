#pragma once

#include "sensors/Machine.h"

namespace kelvinbar {

/// The ports of the machine that the program runs on. For composition roots only.
Machine makePlatform();

} // namespace kelvinbar
