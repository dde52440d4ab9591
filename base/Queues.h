#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

/// How work moves between threads. The user interface and the store live on the main thread. Reading hardware
/// can block for seconds, so it runs on a background queue and posts its result to the main queue.
///
/// Limits: work has no priority, delay or return value. Pitfalls: work can run later than its creator lives,
/// so it captures values, or a weak_ptr to what may be gone. Work in the background must not throw.
namespace kelvinbar {

/// A call on the main thread at a later time. Destroying the alarm clears it. Main thread.
class Alarm {
  public:
    virtual ~Alarm() = default;
    /// Rings once after `delay`, and not at the time it was set for before.
    virtual void set(std::chrono::milliseconds delay) = 0;
    /// Costs nothing if the alarm is not set.
    virtual void clear() = 0;
};

/// Port: the queue of the main thread.
class MainQueue {
  public:
    virtual ~MainQueue() = default;
    /// Runs `work` on the main thread, in posting order and never within this call, even if the caller is on
    /// the main thread. Returns at once. Throws std::bad_alloc if there is no memory to remember it. Any
    /// thread.
    virtual void post(std::function<void()> work) = 0;

    /// An alarm that calls `ring`, and is not set. The queue must outlive it. Main thread.
    virtual std::unique_ptr<Alarm> makeAlarm(std::function<void()> ring) = 0;
};

/// A flag that asks background work to stop. Copies share one flag, which can be set but not reset. The work
/// checks it between steps; setting it interrupts nothing and does not wait. Any thread.
class Cancellation {
  public:
    void cancel() { *cancelled_ = true; }

    [[nodiscard]] bool isCancelled() const { return *cancelled_; }

  private:
    std::shared_ptr<std::atomic<bool>> cancelled_ = std::make_shared<std::atomic<bool>>(false);
};

/// Port: runs work off the main thread, at a priority suited to something that a user waits for.
class BackgroundQueue {
  public:
    using Work = std::function<void(const Cancellation&)>;

    virtual ~BackgroundQueue() = default;
    /// Starts `work` as soon as a thread is free and returns its cancellation flag. Cancelled work that has
    /// not started is still called, with the flag set. Two pieces of work may run at the same time. Throws
    /// std::bad_alloc if there is not enough memory; the work is then never called.
    virtual Cancellation start(Work work) = 0;
};

} // namespace kelvinbar
