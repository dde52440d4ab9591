import QtQuick
import Kelvinbar.Panel

/// The panel's backdrop: dark metal, lit from the top left.
Item {
    id: background

    property real radius: 0

    Plate {
        anchors.fill: parent
        radius: background.radius
        colors: PanelStyle.backdropColors
    }
    Plate {
        width: parent.width
        height: 120
        radius: background.radius
        isVertical: true
        colors: PanelStyle.sheenColors
    }
    Plate {
        anchors.fill: parent
        radius: background.radius
        stroke: PanelStyle.white(0.16)
    }
}
