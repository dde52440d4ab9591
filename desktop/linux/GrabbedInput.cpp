#include "desktop/linux/GrabbedInput.h"

#include <QMouseEvent>
#include <utility>

namespace kelvinbar {

namespace {

bool isOutside(const QWindow& window, const QMouseEvent& event) {
    return !QRect({}, window.size()).contains(event.position().toPoint());
}

} // namespace

void GrabbedInput::prepare(QWindow& window) {
    window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                    Qt::X11BypassWindowManagerHint);
}

void GrabbedInput::take(QWindow& window, std::function<void()> onElsewhere) {
    onElsewhere_ = std::move(onElsewhere);
    window.installEventFilter(this);
    window.requestActivate();
    window.setKeyboardGrabEnabled(true);
    window.setMouseGrabEnabled(true);
}

void GrabbedInput::giveBack(QWindow& window) {
    window.removeEventFilter(this);
    isPressedElsewhere_ = false;
    window.setMouseGrabEnabled(false);
    window.setKeyboardGrabEnabled(false);
}

bool GrabbedInput::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress) {
        isPressedElsewhere_ = isOutside(*static_cast<QWindow*>(watched), *static_cast<QMouseEvent*>(event));
        return isPressedElsewhere_;
    }
    if (event->type() != QEvent::MouseButtonRelease || !std::exchange(isPressedElsewhere_, false))
        return false;
    const auto elsewhere = onElsewhere_; // a copy: the call may replace onElsewhere_
    elsewhere();
    return true;
}

} // namespace kelvinbar
