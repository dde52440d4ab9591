import QtQuick
import Kelvinbar.Panel

/// A small ring of dots that turns while something is in progress.
Item {
    id: ring

    property bool isRunning: false
    property int step: 0
    readonly property int dots: 8

    implicitWidth: 20
    implicitHeight: 20

    Timer {
        running: ring.isRunning
        repeat: true
        interval: 100
        onTriggered: ring.step = (ring.step + 1) % ring.dots
    }
    Repeater {
        model: ring.dots

        // Before Qt 6.5, a delegate cannot declare that it uses ids around it (ComponentBehavior).
        // qmllint disable unqualified
        Plate {
            required property int index
            /// 0 for the last of the turning dots, nearly 1 for the first.
            readonly property real lead: ((index - ring.step + ring.dots) % ring.dots) / ring.dots
            readonly property real angle: 2 * Math.PI * index / ring.dots

            x: 8 + 8 * Math.sin(angle)
            y: 8 - 8 * Math.cos(angle)
            width: 4
            height: 4
            radius: 2
            colors: [PanelStyle.white(PanelStyle.markInk.a + lead * (PanelStyle.titleInk.a - PanelStyle.markInk.a))]
        }
        // qmllint enable unqualified
    }
}
