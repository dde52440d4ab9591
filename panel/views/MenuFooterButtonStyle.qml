import QtQuick
import Kelvinbar.Panel

/// A button of the action row: a symbol and a label.
PanelButton {
    id: control

    property string symbol: ""
    property color symbolColor: PanelStyle.white(0.78)

    implicitHeight: PanelStyle.scaled(30)
    leftPadding: 4
    rightPadding: 4

    contentItem: Item {
        implicitWidth: pair.implicitWidth

        Row {
            id: pair
            anchors.centerIn: parent
            spacing: 5

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                name: control.symbol
                size: PanelStyle.scaled(13)
                color: control.symbolColor
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: control.text
                font: PanelStyle.font(11, Font.Bold)
                color: PanelStyle.white(control.hovered ? 0.95 : 0.82)
            }
        }
    }
}
