#include "base/WorkerQueue.h"

#include <new>
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
        if (threads_.empty() && !stopping_) {
            waiting_.pop_back();
            throw std::bad_alloc();
        }
    }
    wake_.notify_one();
    return cancellation;
}

/// Without memory for a further thread, those that there are do the work. The system reports a stack that it
/// has no memory for as an error of its own.
void WorkerQueue::startThread() {
    if (stopping_ || threads_.size() == mostThreads_) return;
    try {
        threads_.emplace_back([this] { runJobs(); });
    } catch (const std::system_error&) {
        return;
    } catch (const std::bad_alloc&) {
        return;
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
        {
            const Job job = std::move(waiting_.front());
            waiting_.pop_front();
            lock.unlock();
            job.work(job.cancellation);
        }
        lock.lock();
    }
}

} // namespace kelvinbar
