import QtQuick
import QtQuick.Templates as T
import Kelvinbar.Panel

/// The base of every button in the panel: keys, focus ring, tooltip, and the accessible name.
T.AbstractButton {
    id: control

    property string toolTip: ""
    /// The state of a checkable button. Its owner sets it; a click does not.
    property bool isOn: false
    property real radius: 8
    readonly property Plate plate: Plate {
        radius: control.radius
        isVertical: true
        colors: control.down ? [PanelStyle.white(0.05), PanelStyle.white(0.09)]
              : control.hovered ? PanelStyle.hoveredButtonColors
              : PanelStyle.buttonColors
        stroke: control.activeFocus ? PanelStyle.focusRing : PanelStyle.white(0.1)
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    checked: isOn
    onToggled: checked = Qt.binding(() => control.isOn)
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    activeFocusOnTab: true
    onHoveredChanged: HoverTarget.hover(control, hovered)
    onPressed: HoverTarget.hover(control, false)
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) control.clicked(); }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) control.clicked(); }
    Accessible.name: text
    Accessible.description: toolTip
    Accessible.onPressAction: control.clicked()
    Accessible.onToggleAction: control.clicked()

    background: plate
}
