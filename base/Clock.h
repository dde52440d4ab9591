#pragma once

#include <chrono>

namespace kelvinbar {

/// Port: the time of day.
class WallClock {
  public:
    virtual ~WallClock() = default;
    [[nodiscard]] virtual std::chrono::system_clock::time_point now() const = 0;
};

class SystemWallClock final : public WallClock {
  public:
    [[nodiscard]] std::chrono::system_clock::time_point now() const override {
        return std::chrono::system_clock::now();
    }
};

/// Port: a clock for intervals. It never runs backwards, no change of the time of day moves it, and it keeps
/// counting while the machine sleeps, so that what was learnt before a sleep counts as old after it.
/// Callable from any thread.
class MonotonicClock {
  public:
    virtual ~MonotonicClock() = default;
    /// Time since an arbitrary fixed point.
    [[nodiscard]] virtual std::chrono::nanoseconds now() const = 0;
};

} // namespace kelvinbar
