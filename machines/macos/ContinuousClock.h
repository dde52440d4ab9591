#pragma once

#include "base/Clock.h"

namespace kelvinbar {

/// Time since boot, time asleep included (CLOCK_MONOTONIC_RAW, which on this system goes on in sleep).
class ContinuousClock final : public MonotonicClock {
  public:
    [[nodiscard]] std::chrono::nanoseconds now() const override;
};

} // namespace kelvinbar
