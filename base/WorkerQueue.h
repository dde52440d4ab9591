#pragma once

#include "base/Queues.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace kelvinbar {

/// A BackgroundQueue on a fixed number of threads, made once: a refresh a second for months starts none.
/// The destructor lets running work end and drops what has not begun.
class WorkerQueue final : public BackgroundQueue {
  public:
    explicit WorkerQueue(unsigned threadCount);
    WorkerQueue(const WorkerQueue&) = delete;
    WorkerQueue& operator=(const WorkerQueue&) = delete;
    ~WorkerQueue() override;

    Cancellation start(Work work) override;

  private:
    struct Job {
        Work work;
        Cancellation cancellation;
    };

    void runJobs();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Job> waiting_;
    bool stopping_ = false;
    std::vector<std::thread> threads_;
};

} // namespace kelvinbar
