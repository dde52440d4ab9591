#pragma once

#include "base/Clock.h"

#include <chrono>
#include <functional>

namespace kelvinbar {

/// Times at fixed distances from a beginning. A time that was missed is left out, and those that follow keep
/// their distances from the beginning: nothing drifts and nothing is made up for.
class TickTimes {
  public:
    /// `interval` is greater than zero. The times are those of a MonotonicClock.
    TickTimes(std::chrono::nanoseconds interval, std::chrono::nanoseconds beginning)
        : interval_(interval), last_(beginning) {}

    /// The first time after `now` and after the last one returned.
    std::chrono::nanoseconds next(std::chrono::nanoseconds now);

  private:
    std::chrono::nanoseconds interval_;
    std::chrono::nanoseconds last_;
};

/// What a watch does. Called on the thread that watches.
struct WatchActions {
    std::function<bool()> tick;                                       ///< false: end
    std::function<bool(std::chrono::nanoseconds time)> isEndedWithin; ///< waits; true: end
};

/// Calls `tick` at once and then at each interval until one of the actions ends it. Blocks.
void watch(std::chrono::nanoseconds interval, const MonotonicClock& clock, const WatchActions& actions);

} // namespace kelvinbar
