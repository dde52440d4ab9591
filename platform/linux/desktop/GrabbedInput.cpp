#include "platform/linux/desktop/GrabbedInput.h"

#include <QMouseEvent>

namespace kelvinbar {

Qt::WindowFlags GrabbedInput::windowFlags() const {
    return Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::X11BypassWindowManagerHint;
}

void GrabbedInput::take(QWindow& window) {
    window.requestActivate();
    window.setKeyboardGrabEnabled(true);
    window.setMouseGrabEnabled(true);
}

void GrabbedInput::giveBack(QWindow& window) {
    window.setMouseGrabEnabled(false);
    window.setKeyboardGrabEnabled(false);
}

bool GrabbedInput::turnsElsewhere(const QWindow& window, const QEvent& event) const {
    if (event.type() != QEvent::MouseButtonPress) return false;
    const QPoint position = static_cast<const QMouseEvent&>(event).position().toPoint();
    return !QRect({}, window.size()).contains(position);
}

} // namespace kelvinbar
