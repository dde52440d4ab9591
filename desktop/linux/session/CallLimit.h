#pragma once

#include <algorithm>
#include <chrono>

namespace kelvinbar {

/// How many calls of others are answered: some at once, and a few each second in the long run, so that nobody
/// on the bus keeps the program busy. Starts with the whole burst. Costs nothing while no calls come. Not
/// synchronized.
class CallLimit {
  public:
    using Time = std::chrono::steady_clock::time_point;

    /// More than a tray asks for when it starts, and when it follows a reading that changes every second.
    static constexpr double usualBurst = 100;
    static constexpr double usualRate = 50; ///< a second

    explicit CallLimit(double burst = usualBurst, double rate = usualRate)
        : burst_(burst), rate_(rate), left_(burst) {}

    /// Whether the call that came at `now` is answered. Times must not decrease.
    bool admits(Time now) {
        const std::chrono::duration<double> passed = now - last_;
        last_ = now;
        left_ = std::min(burst_, left_ + passed.count() * rate_);
        if (left_ < 1) return false;
        left_ -= 1;
        return true;
    }

  private:
    double burst_;
    double rate_;
    double left_; ///< calls that are answered if they come now
    Time last_{};
};

} // namespace kelvinbar
