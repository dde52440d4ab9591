import QtQuick
import Kelvinbar.Panel

/// A thin line between the areas of the panel: a dark groove with a light edge.
Item {
    implicitHeight: PanelStyle.dividerHeight

    Plate {
        width: parent.width
        height: 1
        colors: [PanelStyle.black(0.1), PanelStyle.black(0.55), PanelStyle.black(0.1)]
    }
    Plate {
        y: 1
        width: parent.width
        height: 1
        colors: [PanelStyle.white(0.02), PanelStyle.white(0.13), PanelStyle.white(0.02)]
    }
}
