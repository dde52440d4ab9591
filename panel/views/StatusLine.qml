import QtQuick
import Kelvinbar.Panel

/// A line above the first card.
Item {
    id: line

    property string text: ""
    /// At either side.
    property real margin: 0

    implicitHeight: PanelStyle.scaled(28)
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Text {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: line.margin
        anchors.rightMargin: line.margin
        anchors.bottom: parent.bottom
        elide: Text.ElideRight
        textFormat: Text.PlainText
        text: line.text
        font: PanelStyle.font(11, Font.DemiBold)
        color: PanelStyle.secondaryInk
        Accessible.ignored: true
    }
}
