#include "machines/linux/BootTimeClock.h"

#include <chrono>
#include <time.h> // NOLINT(modernize-deprecated-headers): CLOCK_BOOTTIME is no part of <ctime>

#include <gtest/gtest.h>

namespace kelvinbar::boot_time_clock_test {

namespace {

TEST(BootTimeClock, DoesNotRunBackwards) {
    const BootTimeClock clock;
    auto last = clock.now();
    for (int count = 0; count < 10'000; ++count) {
        const auto now = clock.now();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST(BootTimeClock, CountsTheTimeSinceBootSuspendedTimeIncluded) {
    const auto bootTime = [] {
        timespec time{};
        EXPECT_EQ(clock_gettime(CLOCK_BOOTTIME, &time), 0);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    };
    const auto before = bootTime();
    const auto now = BootTimeClock().now();
    EXPECT_GE(now, before);
    EXPECT_LE(now, bootTime());
}

} // namespace
} // namespace kelvinbar::boot_time_clock_test
