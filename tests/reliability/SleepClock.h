#pragma once

#include "base/Clock.h"

namespace kelvinbar::fakes {

/// A clock that moves when the program sleeps, and only then. A sleep takes no time: the program replaces the
/// C library's function, so that an attack need not wait for the first power of an energy counter. One
/// thread.
class SleepClock final : public MonotonicClock {
  public:
    [[nodiscard]] std::chrono::nanoseconds now() const override;
};

} // namespace kelvinbar::fakes
