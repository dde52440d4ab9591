import QtQuick
import Kelvinbar.Panel

/// The program's picture with a glow, which brightens once when the panel opens.
Item {
    id: icon

    property real size: 34
    property bool isAnimated: false

    implicitWidth: size
    implicitHeight: size

    /// The panel is on the screen: the glow comes up, unless the desktop asks for less motion.
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
        colors: [PanelStyle.tinted("#64d2ff", 0.26), PanelStyle.tinted("#64d2ff", 0.05), PanelStyle.tinted("#ff9f0a", 0.22)]
    }
    Image {
        anchors.fill: parent
        source: "qrc:/artwork/AboutIcon.png"
        sourceSize: Qt.size(icon.size * Screen.devicePixelRatio, icon.size * Screen.devicePixelRatio)
        smooth: true
        Accessible.ignored: true
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
