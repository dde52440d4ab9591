#include "machines/linux/libsensors/CallLock.h"

#include "sensors/ReadWatch.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/RecordingLog.h"

#include <chrono>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

namespace kelvinbar::call_lock_test {

namespace {

using namespace std::chrono_literals;

constexpr auto longTime = 1h;

class CallLockTest : public testing::Test {
  protected:
    /// A pass that is in a device takes the lock, on a thread of its own.
    void takeInAPass() {
        std::thread([this] {
            const WatchedPass::Scope scope(pass_);
            const DeviceVisit visit("device", LogCategory::sourceKernel);
            ASSERT_TRUE(lock_.try_lock_for(0ms));
            clock_->advance(watch_->limit());
            watch_->setAsideSilentDevices();
        }).join();
    }

    fakes::RecordingLog recording_;
    std::shared_ptr<fakes::FakeMonotonicClock> clock_ = std::make_shared<fakes::FakeMonotonicClock>();
    std::shared_ptr<ReadWatch> watch_ = std::make_shared<ReadWatch>(clock_, recording_.log);
    WatchedPass pass_{watch_};
    CallLock lock_;
};

TEST_F(CallLockTest, IsNotWaitedForWhileAnAbandonedPassHoldsIt) {
    takeInAPass();
    ASSERT_TRUE(pass_.isAbandoned());
    EXPECT_FALSE(lock_.try_lock_for(longTime));
}

TEST_F(CallLockTest, IsFreeAgainAfterAnAbandonedPass) {
    takeInAPass();
    lock_.unlock();
    EXPECT_TRUE(lock_.try_lock_for(0ms));
}

TEST_F(CallLockTest, IsWaitedForWhileItsHolderWorks) {
    ASSERT_TRUE(lock_.try_lock_for(0ms));
    std::thread holder([this] {
        std::this_thread::sleep_for(20ms);
        lock_.unlock();
    });
    EXPECT_TRUE(lock_.try_lock_for(longTime));
    holder.join();
}

TEST_F(CallLockTest, IsWaitedForNoLongerThanTheLimit) {
    ASSERT_TRUE(lock_.try_lock_for(0ms));
    EXPECT_FALSE(lock_.try_lock_for(1ms));
}

} // namespace
} // namespace kelvinbar::call_lock_test
