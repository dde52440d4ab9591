#include "desktop/qt/QtTimers.h"

#include "tests/desktop/EventLoop.h"

#include <chrono>
#include <memory>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

using std::chrono::milliseconds;

class QtTimersTest : public testing::Test {
  protected:
    std::unique_ptr<RepeatingTimer> start(milliseconds tolerance) {
        return timers_.start(milliseconds(5), tolerance, [this] { ++firings_; });
    }

    bool waitForFirings(int count) {
        return waitFor([&] { return firings_ >= count; });
    }

    QtTimers timers_;
    int firings_ = 0;
};

} // namespace

TEST_F(QtTimersTest, FiresAgainAndAgain) {
    const auto timer = start(milliseconds(1));
    EXPECT_EQ(firings_, 0);
    EXPECT_TRUE(waitForFirings(5));
}

TEST_F(QtTimersTest, FiresAgainAndAgainWithoutTolerance) {
    const auto timer = start(milliseconds(0));
    EXPECT_TRUE(waitForFirings(5));
}

TEST_F(QtTimersTest, FiresNoMoreWhenInvalidated) {
    const auto timer = start(milliseconds(1));
    ASSERT_TRUE(waitForFirings(1));
    timer->invalidate();
    const int firings = firings_;
    runEventLoop(milliseconds(50));
    EXPECT_EQ(firings_, firings);
    timer->invalidate();
    EXPECT_EQ(firings_, firings);
}

TEST_F(QtTimersTest, FiresNoMoreWhenDestroyed) {
    auto timer = start(milliseconds(1));
    ASSERT_TRUE(waitForFirings(1));
    timer = nullptr;
    const int firings = firings_;
    runEventLoop(milliseconds(50));
    EXPECT_EQ(firings_, firings);
}

TEST_F(QtTimersTest, MayBeInvalidatedByItsBlock) {
    std::unique_ptr<RepeatingTimer> timer;
    timer = timers_.start(milliseconds(5), milliseconds(1), [&] {
        ++firings_;
        timer->invalidate();
    });
    ASSERT_TRUE(waitForFirings(1));
    runEventLoop(milliseconds(50));
    EXPECT_EQ(firings_, 1);
}

TEST_F(QtTimersTest, TimersDoNotDisturbEachOther) {
    int others = 0;
    const auto other = timers_.start(milliseconds(5), milliseconds(1), [&] { ++others; });
    const auto timer = start(milliseconds(1));
    ASSERT_TRUE(waitForFirings(1));
    timer->invalidate();
    const int reached = others;
    EXPECT_TRUE(waitFor([&] { return others >= reached + 3; }));
}

} // namespace kelvinbar
