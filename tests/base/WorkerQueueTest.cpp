#include "base/WorkerQueue.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

namespace kelvinbar::worker_queue_test {
namespace {

/// Long enough for any machine; only a failing test waits so long.
constexpr std::chrono::seconds patience{20};

/// Opened once, waited for by any number of threads.
class Gate {
  public:
    void open() { opened_.set_value(); }

    [[nodiscard]] bool wait() const { return seen_.wait_for(patience) == std::future_status::ready; }

  private:
    std::promise<void> opened_;
    std::shared_future<void> seen_ = opened_.get_future().share();
};

/// Runs an action when the last copy goes.
std::shared_ptr<void> whenDropped(std::function<void()> action) {
    return {nullptr, [action = std::move(action)](void*) { action(); }};
}

TEST(WorkerQueue, RunsWorkOffTheThreadThatStartsIt) {
    std::promise<std::thread::id> ran;
    auto thread = ran.get_future();
    WorkerQueue queue(1);
    queue.start([&](const Cancellation&) { ran.set_value(std::this_thread::get_id()); });
    ASSERT_EQ(thread.wait_for(patience), std::future_status::ready);
    EXPECT_NE(thread.get(), std::this_thread::get_id());
}

TEST(WorkerQueue, ReturnsFromStartBeforeTheWorkEnds) {
    Gate returned;
    std::atomic<bool> sawReturn = false;
    {
        Gate ended;
        WorkerQueue queue(1);
        queue.start([&](const Cancellation&) {
            sawReturn = returned.wait();
            ended.open();
        });
        returned.open();
        ASSERT_TRUE(ended.wait());
    }
    EXPECT_TRUE(sawReturn);
}

TEST(WorkerQueue, RunsTwoPiecesOfWorkAtOnceOnTwoThreads) {
    std::array<Gate, 2> arrived;
    std::array<std::promise<bool>, 2> met;
    WorkerQueue queue(2);
    for (std::size_t self = 0; self < 2; ++self) {
        queue.start([&, self](const Cancellation&) {
            arrived.at(self).open();
            met.at(self).set_value(arrived.at(1 - self).wait());
        });
    }
    EXPECT_TRUE(met.at(0).get_future().get());
    EXPECT_TRUE(met.at(1).get_future().get());
}

TEST(WorkerQueue, UsesNoMoreThreadsThanItWasMadeWith) {
    constexpr std::size_t pieces = 1000;
    for (const unsigned threadCount : {1U, 3U}) {
        std::mutex mutex;
        std::set<std::thread::id> threads;
        std::size_t ended = 0;
        Gate allEnded;
        WorkerQueue queue(threadCount);
        for (std::size_t piece = 0; piece < pieces; ++piece) {
            queue.start([&](const Cancellation&) {
                std::this_thread::yield(); // leaves work to every other thread that there is
                const std::lock_guard lock(mutex);
                threads.insert(std::this_thread::get_id());
                if (++ended == pieces) allEnded.open();
            });
        }
        ASSERT_TRUE(allEnded.wait());
        const std::lock_guard lock(mutex);
        EXPECT_GE(threads.size(), 1U);
        EXPECT_LE(threads.size(), threadCount);
        EXPECT_FALSE(threads.contains(std::this_thread::get_id()));
    }
}

TEST(WorkerQueue, LetsWorkStartFurtherWork) {
    Gate inner;
    WorkerQueue queue(1);
    queue.start([&](const Cancellation&) { queue.start([&](const Cancellation&) { inner.open(); }); });
    EXPECT_TRUE(inner.wait());
}

TEST(WorkerQueue, TellsRunningWorkThatItWasCancelled) {
    Gate cancelled;
    std::promise<std::pair<bool, bool>> seen;
    Gate begun;
    WorkerQueue queue(1);
    Cancellation handle = queue.start([&](const Cancellation& cancellation) {
        const bool before = cancellation.isCancelled();
        begun.open();
        static_cast<void>(cancelled.wait());
        seen.set_value({before, cancellation.isCancelled()});
    });
    ASSERT_TRUE(begun.wait());
    handle.cancel();
    cancelled.open();
    EXPECT_EQ(seen.get_future().get(), std::make_pair(false, true));
}

TEST(WorkerQueue, RunsWorkThatWasCancelledBeforeItBegan) {
    // The work decides itself what a cancellation means.
    Gate go;
    std::promise<bool> seen;
    WorkerQueue queue(1);
    queue.start([&](const Cancellation&) { static_cast<void>(go.wait()); });
    Cancellation handle =
        queue.start([&](const Cancellation& cancellation) { seen.set_value(cancellation.isCancelled()); });
    handle.cancel();
    go.open();
    EXPECT_TRUE(seen.get_future().get());
}

TEST(WorkerQueue, CancelsOnlyThePieceOfWorkThatWasMeant) {
    Gate go;
    std::promise<bool> seen;
    WorkerQueue queue(1);
    Cancellation first = queue.start([&](const Cancellation&) { static_cast<void>(go.wait()); });
    const Cancellation second =
        queue.start([&](const Cancellation& cancellation) { seen.set_value(cancellation.isCancelled()); });
    first.cancel();
    go.open();
    EXPECT_FALSE(seen.get_future().get());
    EXPECT_FALSE(second.isCancelled());
}

TEST(WorkerQueue, LetsRunningWorkEndWhenItIsDestroyed) {
    Gate destroying;
    Gate begun;
    std::atomic<bool> ended = false;
    {
        WorkerQueue queue(1);
        queue.start([&](const Cancellation&) {
            begun.open();
            ended = destroying.wait();
        });
        ASSERT_TRUE(begun.wait());
        // The only thread is taken: this piece is dropped by the destructor, while the first still runs.
        queue.start([dropped = whenDropped([&] { destroying.open(); })](const Cancellation&) {});
    }
    EXPECT_TRUE(ended);
}

TEST(WorkerQueue, DropsWorkThatHasNotBegunWhenItIsDestroyed) {
    Gate destroying;
    Gate begun;
    std::atomic<bool> ran = false;
    {
        WorkerQueue queue(1);
        queue.start([&](const Cancellation&) {
            begun.open();
            static_cast<void>(destroying.wait());
        });
        ASSERT_TRUE(begun.wait());
        queue.start(
            [&ran, dropped = whenDropped([&] { destroying.open(); })](const Cancellation&) { ran = true; });
    }
    EXPECT_FALSE(ran);
}

TEST(WorkerQueue, FinishesOnceAllWorkHasEnded) {
    std::atomic<int> ended = 0;
    WorkerQueue queue(1);
    for (int piece = 0; piece < 3; ++piece) queue.start([&](const Cancellation&) { ++ended; });
    EXPECT_TRUE(queue.finish(patience));
    EXPECT_EQ(ended, 3);
}

TEST(WorkerQueue, DoesNotFinishWhileAThreadIsStuck) {
    Gate release;
    Gate begun;
    WorkerQueue queue(1);
    queue.start([&](const Cancellation&) {
        begun.open();
        static_cast<void>(release.wait());
    });
    ASSERT_TRUE(begun.wait());
    EXPECT_FALSE(queue.finish(std::chrono::milliseconds(1)));
    release.open();
    EXPECT_TRUE(queue.finish(patience));
}

TEST(WorkerQueue, StartsAnotherThreadWhileOneIsStuck) {
    Gate release;
    Gate begun;
    Gate other;
    WorkerQueue queue(2);
    queue.start([&](const Cancellation&) {
        begun.open();
        static_cast<void>(release.wait());
    });
    ASSERT_TRUE(begun.wait());
    queue.start([&](const Cancellation&) { other.open(); });
    EXPECT_TRUE(other.wait());
    release.open();
}

TEST(WorkerQueue, FinishesWhenItWasNeverUsed) {
    EXPECT_TRUE(WorkerQueue(4).finish(std::chrono::milliseconds(0)));
}

TEST(WorkerQueue, UsesOneThreadForWorkThatDoesNotOverlap) {
    std::set<std::thread::id> threads;
    WorkerQueue queue(4);
    for (int piece = 0; piece < 50; ++piece) {
        queue.start([&](const Cancellation&) { threads.insert(std::this_thread::get_id()); });
        ASSERT_TRUE(queue.finish(patience));
    }
    EXPECT_EQ(threads.size(), 1U);
}

TEST(WorkerQueue, EndsWhenItWasNeverUsed) { EXPECT_NO_THROW(WorkerQueue(4)); }

} // namespace
} // namespace kelvinbar::worker_queue_test
