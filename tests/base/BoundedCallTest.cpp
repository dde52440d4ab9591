#include "base/BoundedCall.h"

#include <chrono>
#include <future>
#include <memory>
#include <new>
#include <thread>

#include <gtest/gtest.h>

namespace kelvinbar::bounded_call_test {
namespace {

/// Long enough for any machine; only a failing test waits so long.
constexpr std::chrono::seconds patience{20};
constexpr std::chrono::milliseconds moment{20};

/// Work that does not return before `release`.
class StuckWork {
  public:
    [[nodiscard]] BoundedCall::Work work() const {
        return [released = released_] { return released.wait_for(patience) == std::future_status::ready; };
    }

    void release() { release_.set_value(); }

  private:
    std::promise<void> release_;
    std::shared_future<void> released_ = release_.get_future().share();
};

TEST(BoundedCall, TellsWhetherTheWorkSucceeded) {
    BoundedCall call;
    EXPECT_EQ(call.run([] { return true; }, patience), CallEnd::succeeded);
    EXPECT_EQ(call.run([] { return false; }, patience), CallEnd::failed);
}

TEST(BoundedCall, RunsWorkOnAThreadOfItsOwn) {
    BoundedCall call;
    const auto own = std::this_thread::get_id();
    EXPECT_EQ(call.run([own] { return std::this_thread::get_id() != own; }, patience), CallEnd::succeeded);
}

TEST(BoundedCall, DoesNotWaitForWorkThatTakesTooLong) {
    StuckWork stuck;
    BoundedCall call;
    EXPECT_EQ(call.run(stuck.work(), moment), CallEnd::late);
    stuck.release();
}

TEST(BoundedCall, StartsNoOtherWorkWhileSomeRuns) {
    StuckWork stuck;
    BoundedCall call;
    call.start(stuck.work());
    const auto hasRun = std::make_shared<std::promise<void>>();
    auto other = hasRun->get_future();
    EXPECT_EQ(call.run([hasRun] { return hasRun->set_value(), true; }, moment), CallEnd::notStarted);
    EXPECT_EQ(other.wait_for(moment), std::future_status::timeout);
    stuck.release();
}

TEST(BoundedCall, WaitsForEarlierWorkFirst) {
    StuckWork stuck;
    BoundedCall call;
    call.start(stuck.work());
    stuck.release();
    EXPECT_EQ(call.run([] { return false; }, patience), CallEnd::failed) << "not that of the earlier work";
}

TEST(BoundedCall, WorksAgainWhenWhatWasStuckHasReturned) {
    StuckWork stuck;
    BoundedCall call;
    EXPECT_EQ(call.run(stuck.work(), moment), CallEnd::late);
    stuck.release();
    EXPECT_EQ(call.run([] { return true; }, patience), CallEnd::succeeded);
}

TEST(BoundedCall, WorkThatThrowsHasFailed) {
    BoundedCall call;
    EXPECT_EQ(call.run([]() -> bool { throw std::bad_alloc(); }, patience), CallEnd::failed);
    EXPECT_EQ(call.run([] { return true; }, patience), CallEnd::succeeded);
}

TEST(BoundedCall, WorkMayOutliveTheObject) {
    StuckWork stuck;
    auto owned = std::make_shared<int>(0);
    const std::weak_ptr<int> seen = owned;
    {
        BoundedCall call;
        call.start([work = stuck.work(), owned = std::move(owned)] { return work() && *owned == 0; });
    }
    EXPECT_FALSE(seen.expired());
    stuck.release();
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!seen.expired() && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
    EXPECT_TRUE(seen.expired()) << "the work has ended";
}

} // namespace
} // namespace kelvinbar::bounded_call_test
