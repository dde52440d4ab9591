import QtQuick
import Kelvinbar.Panel

/// The panel's backdrop: dark metal, lit from the top left.
Item {
    id: background

    property real radius: 0

    Plate {
        anchors.fill: parent
        radius: background.radius
        colors: ["#34383f", "#212429", "#191b1f", "#15171a"]
    }
    Plate {
        width: parent.width
        height: 120
        radius: background.radius
        isVertical: true
        colors: [PanelStyle.white(0.06), PanelStyle.white(0)]
    }
    Plate {
        anchors.fill: parent
        radius: background.radius
        stroke: PanelStyle.white(0.16)
    }
}
