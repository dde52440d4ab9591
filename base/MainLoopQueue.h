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
    void post(std::function<void()> work) override;

    std::unique_ptr<Alarm> makeAlarm(std::function<void()> ring) override;

    /// Runs posted work and rings alarms until `done` returns true, and waits when there is nothing to do.
    /// `done` is called after each of them, never while waiting: only posted work and alarms can end the
    /// wait. Main thread.
    void runUntil(const std::function<bool()>& done);

  private:
    class LoopAlarm;
    using Clock = std::chrono::steady_clock;

    void waitForWork(std::unique_lock<std::mutex>& lock);
    [[nodiscard]] LoopAlarm* nextAlarm() const;
    void ringDueAlarm();

    std::vector<LoopAlarm*> alarms_; ///< those that exist; main thread
    std::mutex mutex_;               ///< guards `waiting_`; not held while work runs
    std::condition_variable wake_;
    std::deque<std::function<void()>> waiting_;
};

} // namespace kelvinbar
