#include "tools/WatchLoop.h"

namespace kelvinbar {

std::chrono::nanoseconds TickTimes::next(std::chrono::nanoseconds now) {
    last_ += interval_;
    if (last_ <= now) last_ += ((now - last_) / interval_ + 1) * interval_;
    return last_;
}

void watch(std::chrono::nanoseconds interval, const MonotonicClock& clock, const WatchActions& actions) {
    TickTimes times(interval, clock.now());
    while (actions.tick()) {
        const auto now = clock.now();
        if (actions.isEndedWithin(times.next(now) - now)) return;
    }
}

} // namespace kelvinbar
