#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace kelvinbar {

/// A lock that is waited for no longer than a given time; for std::unique_lock. It is made of what the thread
/// sanitizer knows, unlike std::timed_mutex. Any thread.
class CallLock {
  public:
    /// Returns whether the lock was free in time.
    bool try_lock_for(std::chrono::milliseconds limit) {
        std::unique_lock lock(mutex_);
        if (!free_.wait_for(lock, limit, [this] { return !isTaken_; })) return false;
        isTaken_ = true;
        return true;
    }

    void unlock() {
        {
            const std::lock_guard lock(mutex_);
            isTaken_ = false;
        }
        free_.notify_one();
    }

  private:
    std::mutex mutex_; ///< guards `isTaken_`
    std::condition_variable free_;
    bool isTaken_ = false;
};

} // namespace kelvinbar
