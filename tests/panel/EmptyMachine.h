#pragma once

#include "sensors/Machine.h"
#include "smc/SMCBridge.h"
#include "tests/fakes/FakeIORegistry.h"
#include "tests/fakes/FakeSMCDriver.h"

#include <memory>
#include <utility>

namespace kelvinbar::fakes {

/// A machine without readings: its SMC lists no key, or it has no SMC and no system facts.
inline Machine emptyMachine(bool hasController, std::shared_ptr<const MonotonicClock> clock) {
    auto driver = std::make_shared<FakeSMCDriver>();
    driver->hasService = hasController;
    return {.source =
                std::make_shared<SMCBridge>(std::move(driver), std::make_shared<FakeIORegistry>(), clock),
            .system = nullptr,
            .clock = std::move(clock)};
}

} // namespace kelvinbar::fakes
