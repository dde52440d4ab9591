#include "platform/macos/desktop/ActiveInput.h"

namespace kelvinbar {

Qt::WindowFlags ActiveInput::windowFlags() const {
    return Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
}

void ActiveInput::take(QWindow& window) {
    if (window.isActive()) return; // told at every change of the window
    activate_();
    window.requestActivate();
}

bool ActiveInput::turnsElsewhere(const QWindow& /*window*/, const QEvent& event) const {
    return event.type() == QEvent::FocusOut;
}

} // namespace kelvinbar
