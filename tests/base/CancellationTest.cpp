#include "base/Queues.h"

#include <future>

#include <gtest/gtest.h>

namespace kelvinbar::cancellation_test {
namespace {

TEST(Cancellation, IsNotCancelledAtFirst) { EXPECT_FALSE(Cancellation().isCancelled()); }

TEST(Cancellation, IsSharedByItsCopies) {
    Cancellation asked;
    const Cancellation work =
        asked; // NOLINT(performance-unnecessary-copy-initialization): the copy is tested
    asked.cancel();
    EXPECT_TRUE(asked.isCancelled());
    EXPECT_TRUE(work.isCancelled());
}

TEST(Cancellation, StaysCancelledWhenCancelledTwice) {
    Cancellation cancellation;
    cancellation.cancel();
    cancellation.cancel();
    EXPECT_TRUE(cancellation.isCancelled());
}

TEST(Cancellation, LeavesOthersAlone) {
    Cancellation cancelled;
    const Cancellation other;
    cancelled.cancel();
    EXPECT_FALSE(other.isCancelled());
}

TEST(Cancellation, IsSeenByAnotherThread) {
    Cancellation asked;
    std::promise<void> cancelled;
    auto seen = std::async(std::launch::async, [work = asked, ready = cancelled.get_future()] {
        ready.wait();
        return work.isCancelled();
    });
    asked.cancel();
    cancelled.set_value();
    EXPECT_TRUE(seen.get());
}

} // namespace
} // namespace kelvinbar::cancellation_test
