#pragma once

#include "base/Queues.h"

#include <QObject>
#include <QTimer>

namespace kelvinbar {

/// Runs posted work in the event loop of the thread that created the queue. Work still waiting when the queue
/// is destroyed is dropped. `post` may be called on any thread.
class QtMainQueue final : public MainQueue {
  public:
    void post(std::function<void()> work) override {
        QMetaObject::invokeMethod(&context_, std::move(work), Qt::QueuedConnection);
    }

    std::unique_ptr<Alarm> makeAlarm(std::function<void()> ring) override {
        return std::make_unique<TimerAlarm>(std::move(ring));
    }

  private:
    class TimerAlarm final : public Alarm {
      public:
        explicit TimerAlarm(std::function<void()> ring) {
            timer_.setSingleShot(true);
            QObject::connect(&timer_, &QTimer::timeout, std::move(ring));
        }

        void set(std::chrono::milliseconds delay) override { timer_.start(delay); }

        void clear() override { timer_.stop(); }

      private:
        QTimer timer_;
    };

    QObject context_;
};

} // namespace kelvinbar
