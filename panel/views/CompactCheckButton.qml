import QtQuick
import Kelvinbar.Panel

/// A check button for a setting: a check mark, a symbol and two labels. The owner changes `isOn`.
PanelButton {
    id: control

    property string title: ""
    property string subtitle: ""
    property string symbol: ""
    property color tint: "white"

    text: title
    checkable: true
    implicitHeight: PanelStyle.settingsHeight
    leftPadding: PanelStyle.scaled(8)
    rightPadding: PanelStyle.scaled(8)
    plate.colors: control.isOn ? [PanelStyle.tinted(tint, control.hovered ? PanelStyle.checkTint : 0.17), PanelStyle.tinted(tint, 0.07)]
                : control.hovered ? [PanelStyle.white(0.14), PanelStyle.white(0.08)]
                : [PanelStyle.white(0.08), PanelStyle.white(0.04)]
    plate.stroke: control.activeFocus ? PanelStyle.focusRing
                : control.isOn ? PanelStyle.tinted(tint, 0.34) : PanelStyle.white(0.1)
    Accessible.name: title + ", " + subtitle

    contentItem: Row {
        spacing: PanelStyle.scaled(5)

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: control.isOn ? "checkmark.circle.fill" : "circle"
            size: PanelStyle.scaled(14)
            color: control.isOn ? control.tint : PanelStyle.markInk
        }
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: control.symbol
            size: PanelStyle.scaled(14)
            color: control.isOn ? control.tint : PanelStyle.secondaryInk
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter

            Text {
                text: control.title
                font: PanelStyle.font(11, Font.Bold)
                color: PanelStyle.labelInk
            }
            Text {
                text: control.subtitle
                font: PanelStyle.font(8.7, Font.DemiBold)
                color: PanelStyle.secondaryInk
            }
        }
    }
}
