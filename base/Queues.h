#pragma once

#include <atomic>
#include <functional>
#include <memory>

namespace kelvinbar {

/// Port: the queue of the main thread.
class MainQueue {
  public:
    virtual ~MainQueue() = default;
    /// Runs `work` on the main thread, later, in posting order. Callable from any thread.
    virtual void post(std::function<void()> work) = 0;
};

/// Whether a piece of background work is still wanted. Shared by the one who asked for it and the work.
/// Callable from any thread.
class Cancellation {
  public:
    void cancel() { *cancelled_ = true; }

    [[nodiscard]] bool isCancelled() const { return *cancelled_; }

  private:
    std::shared_ptr<std::atomic<bool>> cancelled_ = std::make_shared<std::atomic<bool>>(false);
};

/// Port: runs work off the main thread at the priority of something a user waits for.
class BackgroundQueue {
  public:
    using Work = std::function<void(const Cancellation&)>;

    virtual ~BackgroundQueue() = default;
    /// Starts `work` and returns the handle by which it can be told to stop early; the work itself decides
    /// where it looks. Two pieces of work may run at once.
    virtual Cancellation start(Work work) = 0;
};

} // namespace kelvinbar
