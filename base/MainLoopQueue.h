#pragma once

#include "base/Queues.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace kelvinbar {

/// A MainQueue for programs without an event loop, such as console programs: the main thread runs the posted
/// work itself. Work still waiting when the queue is destroyed is dropped.
class MainLoopQueue final : public MainQueue {
  public:
    /// If there is no memory to remember the work, `runUntil` throws in its place: it may be waiting for that
    /// work.
    void post(std::function<void()> work) override;

    std::unique_ptr<Alarm> makeAlarm(std::function<void()> ring) override;

    /// Runs posted work and rings alarms until `done` returns true, and waits when there is nothing to do.
    /// `done` is called after each of them, never while waiting: only posted work and alarms can end the
    /// wait. Throws std::bad_alloc if work could not be posted for want of memory. Main thread.
    void runUntil(const std::function<bool()>& done);

  private:
    class LoopAlarm;
    using Clock = std::chrono::steady_clock;

    std::function<void()> takeWork();
    void waitForWork(std::unique_lock<std::mutex>& lock);
    [[nodiscard]] LoopAlarm* nextAlarm() const;
    void ringDueAlarm();

    std::vector<LoopAlarm*> alarms_; ///< those that exist; main thread
    std::mutex mutex_;               ///< guards what follows; not held while work runs
    std::condition_variable wake_;
    std::deque<std::function<void()>> waiting_;
    bool hasLostWork_ = false; ///< for want of memory
};

} // namespace kelvinbar
