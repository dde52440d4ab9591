#pragma once

#include "base/Clock.h"
#include "smc/IORegistry.h"
#include "smc/SMCDriver.h"
#include "smc/SystemInformation.h"

#include <memory>

namespace kelvinbar {

/// A machine to read: the ports of one platform, or of one test.
struct Machine {
    std::shared_ptr<SMCDriver> driver;
    std::shared_ptr<IORegistry> registry;
    std::shared_ptr<const SystemInformation> system;
    std::shared_ptr<const MonotonicClock> clock;
};

/// Makes `machine` the one that SMCBridge and NativeMacSupport read, for the whole process. An open
/// connection to the previous machine is closed, and what was cached of it forgotten. No pass may be running.
void useMachine(const Machine& machine);

} // namespace kelvinbar
