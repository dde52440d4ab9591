import QtQuick
import Kelvinbar.Panel

/// Shown when the machine cannot be read.
Column {
    id: view

    property string statusMessage: ""

    spacing: 12
    Accessible.role: Accessible.Notification
    Accessible.name: statusMessage

    Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        name: "exclamationmark.triangle.fill"
        size: PanelStyle.scaled(30)
        color: PanelStyle.warning
    }
    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, PanelStyle.scaled(320))
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        text: view.statusMessage
        font: PanelStyle.font(12, Font.DemiBold)
        color: PanelStyle.secondaryInk
        Accessible.ignored: true
    }
}
