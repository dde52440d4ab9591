#pragma once

#include "sensors/ReadWatch.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace kelvinbar {

/// A lock that is waited for no longer than a given time, and not at all while a pass that has been abandoned
/// holds it; for std::unique_lock. It is made of what the thread
/// sanitizer knows, unlike std::timed_mutex. Any thread.
class CallLock {
  public:
    /// Returns whether the lock was free in time.
    bool try_lock_for(std::chrono::milliseconds limit) {
        std::unique_lock lock(mutex_);
        free_.wait_for(lock, limit, [this] { return !isTaken_ || isAbandoned(); });
        if (isTaken_) return false;
        isTaken_ = true;
        holder_ = WatchedPass::current();
        return true;
    }

    void unlock() {
        {
            const std::lock_guard lock(mutex_);
            isTaken_ = false;
            holder_ = nullptr;
        }
        free_.notify_one();
    }

  private:
    [[nodiscard]] bool isAbandoned() const { return holder_ != nullptr && holder_->isAbandoned(); }

    std::mutex mutex_; ///< guards the members below
    std::condition_variable free_;
    bool isTaken_ = false;
    const WatchedPass* holder_ = nullptr; ///< null outside a pass
};

} // namespace kelvinbar
