#pragma once

#include "base/Queues.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace kelvinbar {

/// A MainQueue for a program without an event loop of its own: the main thread runs the posted work itself.
class MainLoopQueue final : public MainQueue {
  public:
    void post(std::function<void()> work) override;

    /// Runs posted work, waiting for more, until `done` holds. `done` is asked before each piece of work.
    /// Main thread.
    void runUntil(const std::function<bool()>& done);

  private:
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> waiting_;
};

} // namespace kelvinbar
