#pragma once

#include "base/Clock.h"

namespace kelvinbar {

/// Time since boot, including time asleep. That is CLOCK_MONOTONIC_RAW on macOS, which keeps running in sleep
/// (CLOCK_UPTIME_RAW is the clock that stops). Any thread.
class ContinuousClock final : public MonotonicClock {
  public:
    [[nodiscard]] std::chrono::nanoseconds now() const override;
};

} // namespace kelvinbar
