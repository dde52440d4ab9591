#pragma once

#include <chrono>

/// Two clocks for two purposes. Use the wall clock for times that a person reads; it can jump when the user
/// or a time server sets it. Use the monotonic clock to measure how long ago something happened.
///
/// Both are ports so that tests can move time by hand.
namespace kelvinbar {

/// Port: the time of day.
class WallClock {
  public:
    virtual ~WallClock() = default;
    [[nodiscard]] virtual std::chrono::system_clock::time_point now() const = 0;
};

/// The wall clock of the system. Any thread.
class SystemWallClock final : public WallClock {
  public:
    [[nodiscard]] std::chrono::system_clock::time_point now() const override {
        return std::chrono::system_clock::now();
    }
};

/// Port: a clock for intervals. It never runs backwards and is not affected by changes of the time of day. It
/// keeps counting while the machine sleeps, so cached data from before a sleep counts as old afterwards;
/// std::chrono::steady_clock does not guarantee that. Any thread.
class MonotonicClock {
  public:
    virtual ~MonotonicClock() = default;
    /// Time since a fixed but arbitrary point. Only differences are meaningful, and only within one process.
    [[nodiscard]] virtual std::chrono::nanoseconds now() const = 0;
};

} // namespace kelvinbar
