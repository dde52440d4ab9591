#include "machines/macos/ContinuousClock.h"

#include <ctime>

namespace kelvinbar {

std::chrono::nanoseconds ContinuousClock::now() const {
    return std::chrono::nanoseconds(clock_gettime_nsec_np(CLOCK_MONOTONIC_RAW));
}

} // namespace kelvinbar
