#pragma once

#include <chrono>

namespace kelvinbar {

/// When a repeating timer is due. Times are multiples of the tolerance on the monotonic clock, so that
/// programs that round likewise wake the processor together. They keep their distance whatever the timer's
/// lateness is: nothing drifts.
///
/// What is later than the tolerance, after a sleep or a stop of the process for example, is made up for once:
/// the schedule starts anew from there.
class TickSchedule {
  public:
    using Time = std::chrono::steady_clock::time_point;

    /// Due for the first time one interval after `now`, and at most the tolerance later. Without a tolerance,
    /// times are not rounded.
    TickSchedule(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance, Time now);

    [[nodiscard]] Time due() const { return due_; }

    /// Call when the timer has fired, before or after `due`.
    void fired(Time now);

  private:
    [[nodiscard]] Time oneIntervalAfter(Time now) const;

    std::chrono::milliseconds interval_;
    std::chrono::milliseconds tolerance_;
    Time due_;
};

} // namespace kelvinbar
