#include "base/WorkerQueue.h"

#include <utility>

namespace kelvinbar {

WorkerQueue::WorkerQueue(unsigned threadCount) {
    threads_.reserve(threadCount);
    for (unsigned count = 0; count < threadCount; ++count) {
        threads_.emplace_back([this] { runJobs(); });
    }
}

WorkerQueue::~WorkerQueue() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        waiting_.clear();
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) thread.join();
}

Cancellation WorkerQueue::start(Work work) {
    Cancellation cancellation;
    {
        const std::lock_guard lock(mutex_);
        waiting_.push_back({std::move(work), cancellation});
    }
    wake_.notify_one();
    return cancellation;
}

void WorkerQueue::runJobs() {
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
        if (waiting_.empty()) return;
        Job job = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        job.work(job.cancellation);
        job = {};
        lock.lock();
    }
}

} // namespace kelvinbar
