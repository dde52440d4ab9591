import QtQuick
import Kelvinbar.Panel

/// The content of the panel's window: the panel, and around it the room for its shadow.
FocusScope {
    id: frame

    required property PanelContent content
    property bool isRounded: false
    /// Room for the shadow at each side, in points.
    property int leftRoom: 0
    property int topRoom: 0
    property int rightRoom: 0
    property int bottomRoom: 0

    focus: true

    PanelShadow {
        anchors.fill: parent
        leftRoom: frame.leftRoom
        topRoom: frame.topRoom
        rightRoom: frame.rightRoom
        bottomRoom: frame.bottomRoom
        radius: panel.cornerRadius
        visible: frame.leftRoom + frame.topRoom + frame.rightRoom + frame.bottomRoom > 0
    }
    MenuBarContentView {
        id: panel
        anchors.fill: parent
        anchors.leftMargin: frame.leftRoom
        anchors.topMargin: frame.topRoom
        anchors.rightMargin: frame.rightRoom
        anchors.bottomMargin: frame.bottomRoom
        content: frame.content
        cornerRadius: frame.isRounded ? 12 : 0
        clip: true
    }
}
