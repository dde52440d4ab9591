#pragma once

#include "base/Clock.h"

namespace kelvinbar {

/// Time since boot, including time in suspend (CLOCK_BOOTTIME). With a clock that stops in suspend, cached
/// keys and fans would look fresh after a resume. Any thread.
class BootTimeClock final : public MonotonicClock {
  public:
    [[nodiscard]] std::chrono::nanoseconds now() const override;
};

} // namespace kelvinbar
