#include "base/WorkerQueue.h"

#include <system_error>
#include <utility>

namespace kelvinbar {

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
        if (waiting_.size() > idleThreads_) startThread();
    }
    wake_.notify_one();
    return cancellation;
}

void WorkerQueue::startThread() {
    if (stopping_ || threads_.size() == mostThreads_) return;
    try {
        threads_.emplace_back([this] { runJobs(); });
    } catch (const std::system_error&) {
        // The system is out of threads. Those that there are do the work.
        if (threads_.empty()) throw;
    }
}

bool WorkerQueue::finish(std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex_);
    return ended_.wait_for(lock, limit,
                           [this] { return waiting_.empty() && idleThreads_ == threads_.size(); });
}

void WorkerQueue::runJobs() {
    std::unique_lock lock(mutex_);
    for (;;) {
        ++idleThreads_;
        ended_.notify_all();
        wake_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
        --idleThreads_;
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
