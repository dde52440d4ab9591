import QtQuick
import QtQuick.Templates as T
import Kelvinbar.Panel

/// The only tooltip of the panel, for the control under the pointer.
T.ToolTip {
    id: control

    readonly property Item target: HoverTarget.item
    readonly property real gap: 6
    readonly property bool isBelow: target !== null
        && target.mapToItem(null, 0, target.height).y + gap + implicitHeight + margins < (target.Window.height ?? 0)

    parent: target
    text: target?.toolTip ?? ""
    visible: target !== null && text.length > 0
    delay: 700
    closePolicy: T.Popup.NoAutoClose
    margins: 8
    padding: 7
    leftPadding: 10
    rightPadding: 10
    x: target === null ? 0 : Math.round((target.width - width) / 2)
    y: target === null ? 0 : isBelow ? target.height + gap : -height - gap
    implicitWidth: Math.min(PanelStyle.scaled(300), implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    contentItem: Text {
        text: control.text
        font: PanelStyle.font(10.5, Font.Normal)
        color: PanelStyle.labelInk
        wrapMode: Text.Wrap
    }
    background: Plate {
        colors: PanelStyle.popupColors
        isVertical: true
        radius: 7
        stroke: PanelStyle.white(0.16)
    }
}
