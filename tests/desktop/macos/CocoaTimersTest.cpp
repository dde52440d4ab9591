#include "desktop/macos/CocoaTimers.h"

#include "tests/macos-runtime/CocoaTest.h"

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace kelvinbar::cocoa_timers_test {

namespace {

using fakes::FakeTimer;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class CocoaTimersTest : public CocoaTest {
  protected:
    std::unique_ptr<RepeatingTimer> start(std::function<void()> block) {
        return CocoaTimers().start(milliseconds(2500), milliseconds(250), std::move(block));
    }
};

TEST_F(CocoaTimersTest, ATimerRepeatsInItsIntervalWithItsTolerance) {
    const auto timer = start([] {});
    EXPECT_THAT(cocoa.timers(), ElementsAre(FakeTimer{.interval = 2.5, .tolerance = 0.25, .repeats = true}));
}

TEST_F(CocoaTimersTest, ATimerFiresUntilItIsInvalidated) {
    int ticks = 0;
    const auto timer = start([&] { ++ticks; });
    cocoa.fireTimers();
    cocoa.fireTimers();
    EXPECT_EQ(ticks, 2);
    timer->invalidate();
    cocoa.fireTimers();
    EXPECT_EQ(ticks, 2);
    EXPECT_THAT(cocoa.timers(), IsEmpty());
}

TEST_F(CocoaTimersTest, ATimerEndsWithItsOwner) {
    auto timer = start([] {});
    timer.reset();
    EXPECT_THAT(cocoa.timers(), IsEmpty());
}

TEST_F(CocoaTimersTest, ABlockMayInvalidateItsTimer) {
    std::unique_ptr<RepeatingTimer> timer;
    int ticks = 0;
    timer = start([&timer, &ticks] {
        timer->invalidate();
        ++ticks;
    });
    cocoa.fireTimers();
    cocoa.fireTimers();
    EXPECT_EQ(ticks, 1);
}

TEST_F(CocoaTimersTest, ABlockMayDestroyItsTimer) {
    std::unique_ptr<RepeatingTimer> timer;
    int ticks = 0;
    timer = start([&timer, &ticks] {
        timer.reset();
        ++ticks;
    });
    cocoa.fireTimers();
    EXPECT_EQ(ticks, 1);
    EXPECT_THAT(cocoa.timers(), IsEmpty());
}

TEST_F(CocoaTimersTest, TheBlocksStateEndsWithTheTimer) {
    const auto state = std::make_shared<int>();
    auto timer = start([state] {});
    timer.reset();
    EXPECT_EQ(state.use_count(), 1);
}

} // namespace
} // namespace kelvinbar::cocoa_timers_test
