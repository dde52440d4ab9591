#pragma once

#include "base/Clock.h"

#include <atomic>

namespace kelvinbar::fakes {

/// A clock that stands still until a test moves it. Any thread.
class FakeMonotonicClock final : public MonotonicClock {
  public:
    [[nodiscard]] std::chrono::nanoseconds now() const override { return std::chrono::nanoseconds(now_); }

    void advance(std::chrono::nanoseconds time) { now_ += time.count(); }

  private:
    std::atomic<std::chrono::nanoseconds::rep> now_{1'000'000'000};
};

/// A time of day that a test sets. One thread.
struct FakeWallClock final : public WallClock {
    std::chrono::system_clock::time_point time;

    [[nodiscard]] std::chrono::system_clock::time_point now() const override { return time; }
};

} // namespace kelvinbar::fakes
