import QtQuick
import Kelvinbar.Panel

/// Sampling speed and size of the panel.
Row {
    id: settings

    required property QtObject controls

    spacing: 8

    CompactCheckButton {
        id: fast
        title: "Fast"
        subtitle: "1s"
        symbol: "speedometer"
        tint: "#64d2ff"
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
        tint: "#bf5af2"
        isOn: settings.controls.isDynamic
        toolTip: settings.controls.dynamicToolTip
        width: Math.max(implicitWidth, Math.round(settings.width * 0.29))
        onClicked: settings.controls.toggleDynamic()
    }
    HeightStepper {
        controls: settings.controls
        width: settings.width - fast.width - dynamic.width - 2 * settings.spacing
    }
}
