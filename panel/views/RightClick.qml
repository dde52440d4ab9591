import QtQuick

/// Clicks with the right button; others reach what is below. Not a handler: on Wayland, the mouse may come as a touchpad,
/// of which handlers take every button.
MouseArea {
    id: area
    /// At a place in the area.
    signal rightClicked(x: real, y: real)

    anchors.fill: parent
    acceptedButtons: Qt.RightButton
    Accessible.ignored: true
    onClicked: mouse => area.rightClicked(mouse.x, mouse.y)
}
