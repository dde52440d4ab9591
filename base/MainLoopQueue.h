#pragma once

#include "base/Queues.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace kelvinbar {

/// A MainQueue for programs without an event loop, such as console programs: the main thread runs the posted
/// work itself. Work still waiting when the queue is destroyed is dropped.
class MainLoopQueue final : public MainQueue {
  public:
    void post(std::function<void()> work) override;

    /// Runs posted work until `done` returns true, and waits when there is none. `done` is called before each
    /// piece of work, never while waiting: only posted work can end the wait. Main thread.
    void runUntil(const std::function<bool()>& done);

  private:
    std::mutex mutex_; ///< guards `waiting_`; not held while work runs
    std::condition_variable wake_;
    std::deque<std::function<void()>> waiting_;
};

} // namespace kelvinbar
