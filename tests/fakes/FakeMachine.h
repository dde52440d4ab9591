#pragma once

#include "smc/Machine.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeIORegistry.h"
#include "tests/fakes/FakeSMCDriver.h"
#include "tests/fakes/FakeSystemInformation.h"

#include <memory>

namespace kelvinbar::fakes {

/// A machine of fakes that is the process's own for as long as this lives.
struct FakeMachine {
    std::shared_ptr<FakeSMCDriver> driver = std::make_shared<FakeSMCDriver>();
    std::shared_ptr<FakeIORegistry> registry = std::make_shared<FakeIORegistry>();
    std::shared_ptr<FakeSystemInformation> system = std::make_shared<FakeSystemInformation>();
    std::shared_ptr<FakeMonotonicClock> clock = std::make_shared<FakeMonotonicClock>();

    FakeMachine() { useMachine({.driver = driver, .registry = registry, .system = system, .clock = clock}); }

    FakeMachine(const FakeMachine&) = delete;
    FakeMachine& operator=(const FakeMachine&) = delete;

    ~FakeMachine() { useMachine({}); }
};

} // namespace kelvinbar::fakes
