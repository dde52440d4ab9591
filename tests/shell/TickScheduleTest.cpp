#include "shell/TickSchedule.h"

#include <chrono>

#include <gtest/gtest.h>

namespace kelvinbar::tick_schedule_test {

namespace {

using namespace std::chrono_literals;

/// `sinceStart` after the start of the monotonic clock.
TickSchedule::Time at(std::chrono::microseconds sinceStart) { return TickSchedule::Time(sinceStart); }

TEST(TickSchedule, IsDueAtAMultipleOfTheTolerance) {
    EXPECT_EQ(TickSchedule(1000ms, 20ms, at(7'001'001us)).due(), at(8'020ms));
    EXPECT_EQ(TickSchedule(1000ms, 20ms, at(7'019'999us)).due(), at(8'020ms));
    EXPECT_EQ(TickSchedule(3000ms, 100ms, at(7'001ms)).due(), at(10'100ms));
}

TEST(TickSchedule, IsDueAfterExactlyOneIntervalWhereThatIsAMultiple) {
    EXPECT_EQ(TickSchedule(1000ms, 20ms, at(7'020ms)).due(), at(8'020ms));
    EXPECT_EQ(TickSchedule(3000ms, 100ms, at(7'100ms)).due(), at(10'100ms));
}

TEST(TickSchedule, IsNotRoundedWithoutATolerance) {
    EXPECT_EQ(TickSchedule(1000ms, 0ms, at(7'001'001us)).due(), at(8'001'001us));
}

TEST(TickSchedule, DoesNotDriftWithLateness) {
    TickSchedule schedule(1000ms, 20ms, at(7'020ms));
    for (int tick = 0; tick < 1000; ++tick) schedule.fired(schedule.due() + 20ms);
    EXPECT_EQ(schedule.due(), at(1'008'020ms));
}

TEST(TickSchedule, KeepsItsTimesWhenATimerFiresEarly) {
    TickSchedule schedule(1000ms, 20ms, at(7'020ms));
    schedule.fired(schedule.due() - 1ms);
    EXPECT_EQ(schedule.due(), at(9'020ms));
}

TEST(TickSchedule, StartsAnewFromATickThatIsTooLate) {
    TickSchedule schedule(1000ms, 20ms, at(7'020ms));
    schedule.fired(at(8'041ms));
    EXPECT_EQ(schedule.due(), at(9'060ms));
    schedule.fired(at(3'600'001ms)); // an hour of sleep is one tick, not many
    EXPECT_EQ(schedule.due(), at(3'601'020ms));
}

} // namespace
} // namespace kelvinbar::tick_schedule_test
