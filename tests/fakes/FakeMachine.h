#pragma once

#include "sensors/Machine.h"
#include "smc/SMCBridge.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeIORegistry.h"
#include "tests/fakes/FakeSMCDriver.h"
#include "tests/fakes/FakeSystemInformation.h"

#include <memory>

namespace kelvinbar::fakes {

/// A machine with a controller, a registry and system facts, all fakes.
struct FakeMachine {
    std::shared_ptr<FakeSMCDriver> driver = std::make_shared<FakeSMCDriver>();
    std::shared_ptr<FakeIORegistry> registry = std::make_shared<FakeIORegistry>();
    std::shared_ptr<FakeSystemInformation> system = std::make_shared<FakeSystemInformation>();
    std::shared_ptr<FakeMonotonicClock> clock = std::make_shared<FakeMonotonicClock>();
    std::shared_ptr<SMCBridge> bridge = std::make_shared<SMCBridge>(driver, registry, clock);

    [[nodiscard]] Machine machine() const { return {.source = bridge, .system = system, .clock = clock}; }
};

} // namespace kelvinbar::fakes
