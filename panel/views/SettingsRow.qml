import QtQuick
import Kelvinbar.Panel

/// Sampling speed and size of the panel. The stepper moves to a second line when the text is so large that
/// not everything fits.
Flow {
    id: settings

    required property PanelControls controls
    readonly property real rest: width - fast.width - dynamic.width - 2 * spacing

    spacing: 8

    CompactCheckButton {
        id: fast
        title: "Fast"
        subtitle: "1s"
        symbol: "speedometer"
        tint: PanelStyle.cyan
        isOn: settings.controls.isFast
        toolTip: settings.controls.fastToolTip
        width: Math.max(implicitWidth, Math.round(settings.width * 0.24))
        onClicked: settings.controls.toggleFast()
    }
    CompactCheckButton {
        id: dynamic
        title: "Dynamic"
        subtitle: "vertical"
        symbol: "rectangle.expand.vertical"
        tint: PanelStyle.purple
        isOn: settings.controls.isDynamic
        toolTip: settings.controls.dynamicToolTip
        width: Math.max(implicitWidth, Math.round(settings.width * 0.29))
        onClicked: settings.controls.toggleDynamic()
    }
    HeightStepper {
        id: stepper
        controls: settings.controls
        isAlone: settings.rest < implicitWidth
        width: isAlone ? settings.width : settings.rest
    }
}
