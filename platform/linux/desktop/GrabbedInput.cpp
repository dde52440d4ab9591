#include "platform/linux/desktop/GrabbedInput.h"

#include <QMouseEvent>
#include <utility>

namespace kelvinbar {

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
    window.setMouseGrabEnabled(false);
    window.setKeyboardGrabEnabled(false);
}

bool GrabbedInput::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::MouseButtonPress) return false;
    const QPoint position = static_cast<QMouseEvent*>(event)->position().toPoint();
    if (QRect({}, static_cast<QWindow*>(watched)->size()).contains(position)) return false;
    const auto elsewhere = onElsewhere_; // which may end in another one's taking the input
    elsewhere();
    return true;
}

} // namespace kelvinbar
