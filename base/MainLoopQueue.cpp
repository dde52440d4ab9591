#include "base/MainLoopQueue.h"

#include "base/OutOfMemory.h"

#include <new>
#include <optional>
#include <utility>

namespace kelvinbar {

class MainLoopQueue::LoopAlarm final : public Alarm {
  public:
    LoopAlarm(MainLoopQueue& queue, std::function<void()> ring) : queue_(queue), ring_(std::move(ring)) {
        queue_.alarms_.push_back(this);
    }

    LoopAlarm(const LoopAlarm&) = delete;
    LoopAlarm& operator=(const LoopAlarm&) = delete;

    ~LoopAlarm() override { std::erase(queue_.alarms_, this); }

    void set(std::chrono::milliseconds delay) override { time_ = Clock::now() + delay; }

    void clear() override { time_.reset(); }

    [[nodiscard]] std::optional<Clock::time_point> time() const { return time_; }

    /// May destroy the alarm.
    void ring() {
        clear();
        const auto ring = ring_;
        ring();
    }

  private:
    MainLoopQueue& queue_;
    std::function<void()> ring_;
    std::optional<Clock::time_point> time_; ///< empty unless set
};

void MainLoopQueue::post(std::function<void()> work) {
    {
        const std::lock_guard lock(mutex_);
        hasLostWork_ = !hasMemoryFor([&] { waiting_.push_back(std::move(work)); }) || hasLostWork_;
    }
    wake_.notify_one();
}

std::unique_ptr<Alarm> MainLoopQueue::makeAlarm(std::function<void()> ring) {
    return std::make_unique<LoopAlarm>(*this, std::move(ring));
}

void MainLoopQueue::runUntil(const std::function<bool()>& done) {
    while (!done()) {
        if (const auto work = takeWork()) {
            work();
        } else {
            ringDueAlarm();
        }
    }
}

/// Waits for the next work and returns it; null when the next alarm is due.
std::function<void()> MainLoopQueue::takeWork() {
    std::unique_lock lock(mutex_);
    waitForWork(lock);
    if (std::exchange(hasLostWork_, false)) throw std::bad_alloc();
    std::function<void()> work;
    if (waiting_.empty()) return work;
    work = std::move(waiting_.front());
    waiting_.pop_front();
    return work;
}

/// Returns when there is work, or when the next alarm is due.
void MainLoopQueue::waitForWork(std::unique_lock<std::mutex>& lock) {
    const auto hasWork = [this] { return hasLostWork_ || !waiting_.empty(); };
    const auto* const next = nextAlarm();
    if (next == nullptr) {
        wake_.wait(lock, hasWork);
    } else {
        wake_.wait_until(lock, *next->time(), hasWork);
    }
}

/// The alarm that is set for the earliest time; null if none is set.
MainLoopQueue::LoopAlarm* MainLoopQueue::nextAlarm() const {
    LoopAlarm* next = nullptr;
    for (LoopAlarm* const alarm : alarms_) {
        if (alarm->time() && (next == nullptr || *alarm->time() < *next->time())) next = alarm;
    }
    return next;
}

void MainLoopQueue::ringDueAlarm() {
    LoopAlarm* const next = nextAlarm();
    if (next != nullptr && *next->time() <= Clock::now()) next->ring();
}

} // namespace kelvinbar
