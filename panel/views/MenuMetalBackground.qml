import QtQuick
import Kelvinbar.Panel

/// The panel's backdrop: dark metal, lit from the top left.
Item {
    Plate {
        anchors.fill: parent
        colors: ["#34383f", "#212429", "#191b1f", "#15171a"]
    }
    Plate {
        width: parent.width
        height: 120
        isVertical: true
        colors: [PanelStyle.white(0.06), PanelStyle.white(0)]
    }
    Plate {
        anchors.fill: parent
        stroke: PanelStyle.white(0.16)
    }
}
