#pragma once

#include "base/Queues.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace kelvinbar::fakes {

/// A main queue that a test runs by hand. One thread.
class ManualMainQueue final : public MainQueue {
  public:
    void post(std::function<void()> work) override { waiting_.push_back(std::move(work)); }

    std::unique_ptr<Alarm> makeAlarm(std::function<void()> ring) override {
        return std::make_unique<ManualAlarm>(*this, std::move(ring));
    }

    /// The delay of the alarm that is set; no value if none is.
    [[nodiscard]] std::optional<std::chrono::milliseconds> alarmDelay() const { return alarmDelay_; }

    /// Rings the alarm, which must be set.
    void ringAlarm() {
        alarmDelay_.reset();
        ring_();
    }

    [[nodiscard]] std::size_t waitingCount() const { return waiting_.size(); }

    /// Runs waiting work, including work posted meanwhile.
    void drain() {
        while (!waiting_.empty()) {
            const auto work = std::move(waiting_.front());
            waiting_.pop_front();
            work();
        }
    }

  private:
    /// A queue has one at a time.
    class ManualAlarm final : public Alarm {
      public:
        ManualAlarm(ManualMainQueue& queue, std::function<void()> ring) : queue_(queue) {
            queue_.ring_ = std::move(ring);
        }

        ManualAlarm(const ManualAlarm&) = delete;
        ManualAlarm& operator=(const ManualAlarm&) = delete;

        ~ManualAlarm() override { queue_.alarmDelay_.reset(); }

        void set(std::chrono::milliseconds delay) override { queue_.alarmDelay_ = delay; }

        void clear() override { queue_.alarmDelay_.reset(); }

      private:
        ManualMainQueue& queue_;
    };

    std::deque<std::function<void()>> waiting_;
    std::function<void()> ring_;
    std::optional<std::chrono::milliseconds> alarmDelay_;
};

/// A background queue that a test runs by hand, on the test's thread.
class ManualBackgroundQueue final : public BackgroundQueue {
  public:
    Cancellation start(Work work) override {
        Cancellation cancellation;
        ++startedCount;
        waiting_.emplace_back(std::move(work), cancellation);
        return cancellation;
    }

    [[nodiscard]] std::size_t waitingCount() const { return waiting_.size(); }

    void runNext() {
        const auto [work, cancellation] = std::move(waiting_.front());
        waiting_.pop_front();
        work(cancellation);
    }

    void runAll() {
        while (!waiting_.empty()) runNext();
    }

    std::size_t startedCount = 0;

  private:
    std::deque<std::pair<Work, Cancellation>> waiting_;
};

} // namespace kelvinbar::fakes
