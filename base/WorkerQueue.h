#pragma once

#include "base/Queues.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace kelvinbar {

/// A BackgroundQueue with a limited number of threads. A thread starts when work finds all others busy, and
/// is reused: a program that refreshes every second for months starts no further threads. Threads without
/// work sleep. Work starts in the order in which it was submitted; with more than one thread it can finish in
/// any order.
class WorkerQueue final : public BackgroundQueue {
  public:
    /// `mostThreads` is at least 1: without a thread no work ever starts.
    explicit WorkerQueue(std::size_t mostThreads) : mostThreads_(mostThreads) {
        threads_.reserve(mostThreads);
    }

    WorkerQueue(const WorkerQueue&) = delete;
    WorkerQueue& operator=(const WorkerQueue&) = delete;

    /// Drops work that has not started and waits for running work. It does not cancel running work, so it can
    /// block for as long as the hardware does. Must not run on one of the queue's own threads.
    ~WorkerQueue() override;

    /// Throws std::bad_alloc if there is not enough memory, also if that is why the first thread does not
    /// start.
    Cancellation start(Work work) override;

    /// Waits until all work has ended, including work that has not started, but not longer than `limit`.
    /// Returns whether it has ended. If not, a thread is stuck: the destructor would wait for it, and what
    /// the work uses must not be destroyed. Main thread.
    [[nodiscard]] bool finish(std::chrono::milliseconds limit);

  private:
    struct Job {
        Work work;
        Cancellation cancellation;
    };

    void startThread();
    void runJobs();

    const std::size_t mostThreads_;
    std::mutex mutex_; ///< guards the members below; not held while work runs
    std::condition_variable wake_;
    std::condition_variable ended_; ///< a thread has no more work
    std::deque<Job> waiting_;
    std::size_t idleThreads_ = 0;
    bool stopping_ = false;
    std::vector<std::thread> threads_;
};

} // namespace kelvinbar
