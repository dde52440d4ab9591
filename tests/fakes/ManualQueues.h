#pragma once

#include "base/Queues.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <utility>

namespace kelvinbar::fakes {

/// A main queue that a test runs by hand. One thread.
class ManualMainQueue final : public MainQueue {
  public:
    void post(std::function<void()> work) override { waiting_.push_back(std::move(work)); }

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
    std::deque<std::function<void()>> waiting_;
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
