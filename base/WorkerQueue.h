#pragma once

#include "base/Queues.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace kelvinbar {

/// A BackgroundQueue with a fixed number of threads. They start with the queue and are reused: a program that
/// refreshes every second for months starts no further threads. Work starts in the order in which it was
/// submitted; with more than one thread it can finish in any order.
class WorkerQueue final : public BackgroundQueue {
  public:
    /// `threadCount` is at least 1: without a thread no work ever starts.
    explicit WorkerQueue(unsigned threadCount);
    WorkerQueue(const WorkerQueue&) = delete;
    WorkerQueue& operator=(const WorkerQueue&) = delete;

    /// Drops work that has not started and waits for running work. It does not cancel running work, so it can
    /// block for as long as the hardware does. Must not run on one of the queue's own threads.
    ~WorkerQueue() override;

    Cancellation start(Work work) override;

  private:
    struct Job {
        Work work;
        Cancellation cancellation;
    };

    void runJobs();

    std::mutex mutex_; ///< guards `waiting_` and `stopping_`; not held while work runs
    std::condition_variable wake_;
    std::deque<Job> waiting_;
    bool stopping_ = false;
    std::vector<std::thread> threads_;
};

} // namespace kelvinbar
