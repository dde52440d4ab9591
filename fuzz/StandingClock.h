#pragma once

#include "base/Clock.h"

#include <chrono>

namespace kelvinbar::fuzz {

/// A clock that stands still, so that an input always has the same result.
class StandingClock final : public MonotonicClock {
  public:
    [[nodiscard]] std::chrono::nanoseconds now() const override { return std::chrono::nanoseconds(0); }
};

} // namespace kelvinbar::fuzz
