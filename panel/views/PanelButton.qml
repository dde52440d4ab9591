import QtQuick
import QtQuick.Templates as T
import Kelvinbar.Panel

/// What every button of the panel has: keys, focus ring, tooltip, and its name for assistive tools.
T.AbstractButton {
    id: control

    property string toolTip: ""
    property real radius: 8
    property alias plate: plate

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    activeFocusOnTab: true
    onHoveredChanged: HoverTarget.hover(control, hovered)
    Keys.onReturnPressed: click()
    Keys.onEnterPressed: click()
    Accessible.name: text
    Accessible.description: toolTip

    background: Plate {
        id: plate
        radius: control.radius
        isVertical: true
        colors: control.down ? [PanelStyle.white(0.05), PanelStyle.white(0.09)]
              : control.hovered ? [PanelStyle.white(0.16), PanelStyle.white(0.09)]
              : [PanelStyle.white(0.1), PanelStyle.white(0.05)]
        stroke: control.activeFocus ? PanelStyle.focusRing : PanelStyle.white(0.1)
    }
}
