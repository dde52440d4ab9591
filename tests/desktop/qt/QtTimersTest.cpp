#include "desktop/qt/QtTimers.h"

#include "tests/desktop/EventLoop.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QProcess>
#include <chrono>
#include <csignal>
#include <memory>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::qt_timers_test {

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

TEST_F(QtTimersTest, MayBeDestroyedByItsBlock) {
    std::unique_ptr<RepeatingTimer> timer;
    const auto witness = std::make_shared<int>(0);
    timer = timers_.start(milliseconds(5), milliseconds(1), [&timer, witness] {
        timer = nullptr;
        ++*witness;
    });
    ASSERT_TRUE(waitFor([&] { return *witness == 1; }));
    EXPECT_EQ(witness.use_count(), 1);
}

TEST_F(QtTimersTest, FiresOnceForTheTicksThatABusyProgramMissed) {
    const auto timer = timers_.start(milliseconds(100), milliseconds(10), [this] { ++firings_; });
    std::this_thread::sleep_for(milliseconds(450));
    QCoreApplication::processEvents();
    EXPECT_EQ(firings_, 1);
}

TEST_F(QtTimersTest, FiresOnceAfterItsProcessWasStopped) {
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {"--print-ticks", "50"});
    QByteArray output;
    const auto waitForTicks = [&](qsizetype count) {
        return waitFor([&] { return (output += process.readAllStandardOutput()).count('\n') >= count; });
    };
    ASSERT_TRUE(waitForTicks(2));
    ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), SIGSTOP), 0);
    std::this_thread::sleep_for(milliseconds(500));
    ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), SIGCONT), 0);
    ASSERT_TRUE(waitForTicks(output.count('\n') + 4));
    process.kill();
    EXPECT_TRUE(process.waitForFinished());

    std::vector<int> gaps;
    for (const QByteArray& line : output.trimmed().split('\n')) gaps.push_back(line.toInt());
    EXPECT_THAT(gaps, testing::Contains(testing::Ge(450)));
    EXPECT_THAT(gaps, testing::Each(testing::Ge(25)));
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

} // namespace
} // namespace kelvinbar::qt_timers_test
