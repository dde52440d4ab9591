import QtQuick

/// A click with the right button.
TapHandler {
    id: handler
    /// At a place in the parent.
    signal clicked(x: real, y: real)

    acceptedButtons: Qt.RightButton
    // On Wayland, the mouse may come as a touchpad, of which handlers take every button.
    onTapped: (point, button) => {
        if (button === Qt.RightButton) handler.clicked(point.position.x, point.position.y);
    }
}
