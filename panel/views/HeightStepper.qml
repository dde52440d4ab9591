import QtQuick
import Kelvinbar.Panel

/// Changes the panel's manual height in steps.
Item {
    id: stepper

    required property PanelControls controls
    /// Whether it has a line of its own, which is lower.
    property bool isAlone: false

    implicitHeight: isAlone ? PanelStyle.scaled(31) : PanelStyle.settingsHeight
    implicitWidth: decrease.width + Math.max(widest.implicitWidth, label.implicitWidth) + reset.width + increase.width + 18
    Accessible.role: Accessible.Grouping
    Accessible.name: "Height"

    Plate {
        anchors.fill: parent
        radius: 8
        isVertical: true
        colors: [PanelStyle.black(0.2), PanelStyle.black(0.12)]
        stroke: PanelStyle.white(0.08)
    }
    CompactIconButtonStyle {
        id: decrease
        anchors.left: parent.left
        anchors.leftMargin: 5
        anchors.verticalCenter: parent.verticalCenter
        symbol: "minus"
        toolTip: "Decrease height"
        autoRepeat: true
        isDim: stepper.controls.isLowest
        onClicked: stepper.controls.decreaseHeight()
    }
    Column {
        anchors.left: decrease.right
        anchors.right: reset.left
        anchors.verticalCenter: parent.verticalCenter

        DigitsText {
            id: number
            width: parent.width
            isCentered: true
            text: stepper.controls.manualHeight
            font: PanelStyle.roundedFont(12, Font.Black)
            color: PanelStyle.labelInk
            Accessible.role: Accessible.StaticText
            Accessible.name: "Height " + text
        }
        Text {
            id: label
            anchors.horizontalCenter: parent.horizontalCenter
            text: "height"
            font: PanelStyle.font(8.7, Font.DemiBold)
            color: PanelStyle.secondaryInk
            Accessible.ignored: true
        }
    }
    // Nothing moves while the number changes.
    DigitsText {
        id: widest
        visible: false
        text: "0000"
        font: number.font
    }
    CompactIconButtonStyle {
        id: reset
        anchors.right: increase.left
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        symbol: "arrow.counterclockwise"
        symbolSize: 12
        toolTip: "Reset height"
        onClicked: stepper.controls.resetHeight()
    }
    CompactIconButtonStyle {
        id: increase
        anchors.right: parent.right
        anchors.rightMargin: 5
        anchors.verticalCenter: parent.verticalCenter
        symbol: "plus"
        toolTip: "Increase height"
        autoRepeat: true
        isDim: stepper.controls.isGreatest
        onClicked: stepper.controls.increaseHeight()
    }
}
