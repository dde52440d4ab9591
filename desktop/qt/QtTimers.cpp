#include "desktop/qt/QtTimers.h"

#include "shell/TickSchedule.h"

#include <QTimer>
#include <algorithm>
#include <utility>

namespace kelvinbar {

namespace {

class QtTimer final : public RepeatingTimer {
  public:
    QtTimer(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance,
            std::function<void()> block)
        : schedule_(interval, tolerance, Clock::now())
        , block_(std::make_shared<const std::function<void()>>(std::move(block))) {
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, [this] { fire(); });
        waitForTick();
    }

    void invalidate() override { timer_.stop(); }

  private:
    using Clock = std::chrono::steady_clock;

    void waitForTick() {
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(schedule_.due() - Clock::now());
        timer_.start(std::max(wait, std::chrono::milliseconds(0)));
    }

    void fire() {
        schedule_.fired(Clock::now());
        waitForTick();
        const auto block = block_; // it may destroy the timer
        (*block)();
    }

    TickSchedule schedule_;
    std::shared_ptr<const std::function<void()>> block_;
    QTimer timer_;
};

} // namespace

std::unique_ptr<RepeatingTimer> QtTimers::start(std::chrono::milliseconds interval,
                                                std::chrono::milliseconds tolerance,
                                                std::function<void()> block) {
    return std::make_unique<QtTimer>(interval, tolerance, std::move(block));
}

} // namespace kelvinbar
