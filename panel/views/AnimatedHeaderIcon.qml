import QtQuick
import Kelvinbar.Panel

/// The program's icon with a glow that brightens once when the panel opens.
Item {
    id: icon

    property real size: 34
    property bool isAnimated: false

    implicitWidth: size
    implicitHeight: size

    /// Call when the panel opens: starts the glow, unless the desktop asks for less motion.
    function greet() {
        if (isAnimated)
            glowing.restart();
    }

    Plate {
        id: glow
        readonly property real rim: Math.round(icon.size / 9)
        anchors.fill: parent
        anchors.margins: -rim
        radius: icon.size / 3
        colors: [PanelStyle.tinted(PanelStyle.cyan, 0.26), PanelStyle.tinted(PanelStyle.cyan, 0.05), PanelStyle.tinted(PanelStyle.orange, 0.22)]
    }
    Artwork {
        anchors.fill: parent
        name: "AboutIcon"
    }
    NumberAnimation {
        id: glowing
        target: glow
        property: "opacity"
        from: 0
        to: 1
        duration: 600
        easing.type: Easing.OutCubic
    }
}
