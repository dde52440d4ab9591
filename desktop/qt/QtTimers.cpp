#include "desktop/qt/QtTimers.h"

#include <QTimer>

namespace kelvinbar {

namespace {

class QtTimer final : public RepeatingTimer {
  public:
    QtTimer(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance,
            std::function<void()> block) {
        // A coarse timer may be late by up to a twentieth of its interval.
        const bool mayBeCoarse = interval / 20 <= tolerance;
        timer_.setTimerType(mayBeCoarse ? Qt::CoarseTimer : Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, std::move(block));
        timer_.start(interval);
    }

    void invalidate() override { timer_.stop(); }

  private:
    QTimer timer_;
};

} // namespace

std::unique_ptr<RepeatingTimer> QtTimers::start(std::chrono::milliseconds interval,
                                                std::chrono::milliseconds tolerance,
                                                std::function<void()> block) {
    return std::make_unique<QtTimer>(interval, tolerance, std::move(block));
}

} // namespace kelvinbar
