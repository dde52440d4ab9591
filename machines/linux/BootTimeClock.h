#pragma once

#include "base/Clock.h"

namespace kelvinbar {

/// Time since boot, suspended time included (CLOCK_BOOTTIME).
class BootTimeClock final : public MonotonicClock {
  public:
    [[nodiscard]] std::chrono::nanoseconds now() const override;
};

} // namespace kelvinbar
