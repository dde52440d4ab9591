import QtQuick
import Kelvinbar.Panel

/// A small button with a symbol and no label.
PanelButton {
    id: control

    property string symbol: ""
    property real symbolSize: 11
    /// Whether a press would change nothing.
    property bool isDim: false

    implicitWidth: PanelStyle.scaled(25)
    implicitHeight: PanelStyle.scaled(25)
    onVisualFocusChanged: HoverTarget.hover(control, visualFocus)
    Accessible.name: toolTip
    Accessible.description: ""

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: control.symbol
            size: PanelStyle.scaled(control.symbolSize)
            color: control.isDim ? PanelStyle.dimInk : control.hovered ? PanelStyle.titleInk : PanelStyle.secondaryInk
        }
    }
}
