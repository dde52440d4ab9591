#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <chrono>

namespace kelvinbar {

/// Runs the event loop until `condition` holds. Returns false if it does not within `limit`.
template <typename Condition>
bool waitFor(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    const QDeadlineTimer deadline(limit);
    QEventLoop loop;
    QTimer waker;
    waker.start(std::chrono::milliseconds(5));
    while (!condition()) {
        if (deadline.hasExpired()) return false;
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// Runs the event loop for `duration`, to check that something does not happen.
inline void runEventLoop(std::chrono::milliseconds duration) {
    QEventLoop loop;
    QTimer::singleShot(duration, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace kelvinbar
