#pragma once

#include "base/Queues.h"

#include <QObject>

namespace kelvinbar {

/// The main thread's event loop as a queue. What is posted after the object is gone is dropped.
class QtMainQueue final : public MainQueue {
  public:
    void post(std::function<void()> work) override {
        QMetaObject::invokeMethod(&context_, std::move(work), Qt::QueuedConnection);
    }

  private:
    QObject context_;
};

} // namespace kelvinbar
