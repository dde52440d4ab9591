#include "tools/WatchLoop.h"

#include "tests/fakes/FakeClocks.h"

#include <chrono>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::watch_loop_test {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(TickTimes, KeepTheirDistancesWhateverTheLateness) {
    TickTimes times(2s, 100s);
    EXPECT_EQ(times.next(100s), 102s);
    EXPECT_EQ(times.next(102s + 300ms), 104s);
    EXPECT_EQ(times.next(105s + 999ms), 106s);
}

TEST(TickTimes, AreNotMadeUpFor) {
    TickTimes times(2s, 100s);
    EXPECT_EQ(times.next(107s), 108s);
    EXPECT_EQ(times.next(1h), 1h + 2s);
}

TEST(TickTimes, AreNeverNow) {
    TickTimes times(2s, 100s);
    EXPECT_EQ(times.next(102s), 104s);
}

/// A watch over a clock that moves only while somebody waits or reads.
struct WatchFixture {
    fakes::FakeMonotonicClock clock;
    std::vector<std::chrono::nanoseconds> waits;

    /// Waits as asked, `count` times.
    auto waitTimes(std::size_t count) {
        return [this, count](std::chrono::nanoseconds time) {
            waits.push_back(time);
            clock.advance(time);
            return waits.size() == count;
        };
    }
};

TEST(Watch, ReadsAtOnceAndThenAfterEachWait) {
    WatchFixture fixture;
    int ticks = 0;
    watch(1s, fixture.clock, {.tick = [&] { return ++ticks > 0; }, .isEndedWithin = fixture.waitTimes(3)});
    EXPECT_EQ(ticks, 3);
    EXPECT_THAT(fixture.waits, ElementsAre(1s, 1s, 1s));
}

TEST(Watch, WaitsForWhatReadingHasLeftOfTheInterval) {
    WatchFixture fixture;
    const auto slowTick = [&] {
        fixture.clock.advance(300ms);
        return true;
    };
    watch(1s, fixture.clock, {.tick = slowTick, .isEndedWithin = fixture.waitTimes(2)});
    EXPECT_THAT(fixture.waits, ElementsAre(700ms, 700ms));
}

TEST(Watch, LeavesOutWhatASlowReadHasMissed) {
    WatchFixture fixture;
    const auto verySlowTick = [&] {
        fixture.clock.advance(2500ms);
        return true;
    };
    watch(1s, fixture.clock, {.tick = verySlowTick, .isEndedWithin = fixture.waitTimes(1)});
    EXPECT_THAT(fixture.waits, ElementsAre(500ms));
}

TEST(Watch, EndsWithoutAWaitWhenTheTickEndsIt) {
    WatchFixture fixture;
    watch(1s, fixture.clock, {.tick = [] { return false; }, .isEndedWithin = fixture.waitTimes(1)});
    EXPECT_TRUE(fixture.waits.empty());
}

} // namespace
} // namespace kelvinbar::watch_loop_test
