import QtQuick
import QtQuick.Templates as T
import Kelvinbar.Panel

/// The only tooltip of the panel, for the control that the pointer or the keyboard has come to.
T.ToolTip {
    id: control

    readonly property Item target: HoverTarget.item
    readonly property real gap: 6
    /// Where the tooltip of this control has to end, measured from the left of the control.
    readonly property real end: target?.toolTipEnd ?? Infinity
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
    x: target === null ? 0 : Math.round(Math.min((target.width - width) / 2, end - width))
    y: target === null ? 0 : isBelow ? target.height + gap : -height - gap
    implicitWidth: Math.min(PanelStyle.scaled(300), implicitContentWidth + leftPadding + rightPadding,
                            target === null ? 0 : target.mapToItem(null, 0, 0).x + end - margins)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    contentItem: Text {
        text: control.text
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignLeft
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
