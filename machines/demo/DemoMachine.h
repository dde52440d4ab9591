#pragma once

#include "sensors/Machine.h"

#include <memory>

namespace kelvinbar {

/// A made-up Intel notebook at work, for those who have no sensors, for pictures and for tests. The same
/// clock gives the same values.
Machine makeDemoMachine(std::shared_ptr<const MonotonicClock> clock);

} // namespace kelvinbar
