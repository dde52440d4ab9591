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
    /// The width that the button needs without its symbol, and with it.
    readonly property real labelWidth: leftPadding + label.implicitWidth + rightPadding
    readonly property real fullWidth: labelWidth + mark.width + pair.spacing

    implicitWidth: showsSymbol ? fullWidth : labelWidth
    implicitHeight: PanelStyle.actionHeight
    leftPadding: PanelStyle.scaled(4)
    rightPadding: PanelStyle.scaled(4)

    contentItem: content

    Item {
        id: content

        Row {
            id: pair
            anchors.centerIn: parent
            spacing: PanelStyle.scaled(5)

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
