import QtQuick
import Kelvinbar.Panel

/// Shown during the first refresh.
Column {
    id: view

    required property string text
    property bool reducedMotion: false

    spacing: 12
    Accessible.role: Accessible.Notification
    Accessible.name: label.text

    ProgressRing {
        anchors.horizontalCenter: parent.horizontalCenter
        isRunning: view.visible && !view.reducedMotion
    }
    Text {
        id: label
        anchors.horizontalCenter: parent.horizontalCenter
        text: view.text
        font: PanelStyle.roundedFont(12, Font.Bold)
        color: PanelStyle.scanningInk
        Accessible.ignored: true
    }
}
