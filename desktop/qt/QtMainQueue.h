#pragma once

#include "base/Queues.h"

#include <QObject>

namespace kelvinbar {

/// Runs posted work in the event loop of the thread that created the queue. Work still waiting when the queue
/// is destroyed is dropped. `post` may be called on any thread.
class QtMainQueue final : public MainQueue {
  public:
    void post(std::function<void()> work) override {
        QMetaObject::invokeMethod(&context_, std::move(work), Qt::QueuedConnection);
    }

  private:
    QObject context_;
};

} // namespace kelvinbar
