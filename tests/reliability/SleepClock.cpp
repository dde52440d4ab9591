#include "tests/reliability/SleepClock.h"

#include <ctime>

namespace {

std::chrono::nanoseconds timeOfSleeps{1'000'000'000};

} // namespace

namespace kelvinbar::fakes {

std::chrono::nanoseconds SleepClock::now() const { return timeOfSleeps; }

} // namespace kelvinbar::fakes

// The name is the C library's.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" [[gnu::visibility("default")]] int nanosleep(const timespec* duration, timespec* /*left*/) {
    timeOfSleeps += std::chrono::seconds(duration->tv_sec) + std::chrono::nanoseconds(duration->tv_nsec);
    return 0;
}
