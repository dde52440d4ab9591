#include "base/MainLoopQueue.h"

#include <utility>

namespace kelvinbar {

void MainLoopQueue::post(std::function<void()> work) {
    {
        const std::lock_guard lock(mutex_);
        waiting_.push_back(std::move(work));
    }
    wake_.notify_one();
}

void MainLoopQueue::runUntil(const std::function<bool()>& done) {
    while (!done()) {
        std::unique_lock lock(mutex_);
        wake_.wait(lock, [this] { return !waiting_.empty(); });
        const auto work = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        work();
    }
}

} // namespace kelvinbar
