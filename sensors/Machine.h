#pragma once

#include "base/Clock.h"
#include "sensors/MachineTexts.h"
#include "sensors/SensorSource.h"
#include "sensors/SystemInformation.h"

#include <memory>

namespace kelvinbar {

/// A machine to read: one platform's, a recorded one, or a test's. A value that is handed on; whoever builds
/// it decides what is read, and nothing about it is process-wide. Only `system` may be null.
struct Machine {
    std::shared_ptr<SensorSource> source;
    std::shared_ptr<const SystemInformation> system; ///< null: nothing stands in for the source
    std::shared_ptr<const MonotonicClock> clock;
    MachineTexts texts{}; ///< of the platform that the program runs on, whichever machine is read
};

} // namespace kelvinbar
