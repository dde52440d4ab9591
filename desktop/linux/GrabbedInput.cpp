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

void GrabbedInput::acquire(QWindow& window, std::function<void()> onDismissed) {
    onDismissed_ = std::move(onDismissed);
    window.installEventFilter(this);
    window.requestActivate();
    window.setKeyboardGrabEnabled(true);
    window.setMouseGrabEnabled(true);
}

void GrabbedInput::release(QWindow& window) {
    window.removeEventFilter(this);
    isPressedOutside_ = false;
    window.setMouseGrabEnabled(false);
    window.setKeyboardGrabEnabled(false);
}

bool GrabbedInput::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress) {
        isPressedOutside_ = isOutside(*static_cast<QWindow*>(watched), *static_cast<QMouseEvent*>(event));
        return isPressedOutside_;
    }
    if (event->type() != QEvent::MouseButtonRelease || !std::exchange(isPressedOutside_, false)) return false;
    const auto dismissed = onDismissed_; // a copy: the call may replace onDismissed_
    dismissed();
    return true;
}

} // namespace kelvinbar
