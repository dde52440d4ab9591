import QtQuick
import Kelvinbar.Panel

/// A button of the action row, with a symbol and a label.
PanelButton {
    id: control

    property string symbol: ""
    property color symbolColor: PanelStyle.secondaryInk
    property bool showsSymbol: true
    /// Follows the label; usually empty.
    property string detail: ""
    /// The width that the button needs with its symbol.
    readonly property real fullWidth: leftPadding + mark.width + pair.spacing + label.implicitWidth + rightPadding

    implicitWidth: showsSymbol ? fullWidth : fullWidth - mark.width - pair.spacing
    implicitHeight: PanelStyle.actionHeight
    leftPadding: 4
    rightPadding: 4

    contentItem: content

    Item {
        id: content

        Row {
            id: pair
            anchors.centerIn: parent
            spacing: 5

            Symbol {
                id: mark
                visible: control.showsSymbol
                anchors.verticalCenter: parent.verticalCenter
                name: control.symbol
                size: PanelStyle.scaled(13)
                color: control.symbolColor
            }
            Text {
                id: label
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, control.width - control.fullWidth + implicitWidth
                                               + (control.showsSymbol ? 0 : mark.width + pair.spacing))
                elide: Text.ElideRight
                textFormat: Text.PlainText
                text: control.detail.length > 0 ? control.text + " " + control.detail : control.text
                font: PanelStyle.font(11, Font.Bold)
                color: control.hovered ? PanelStyle.titleInk : PanelStyle.labelInk
            }
        }
    }
}
