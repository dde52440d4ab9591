import QtQuick
import QtQuick.Templates as T
import Kelvinbar.Panel

/// The cards of all sections, of which only those on the screen exist.
FocusScope {
    id: list

    required property PanelContent content
    readonly property SensorList sensors: content.sensors

    enabled: visible
    activeFocusOnTab: true
    onActiveFocusChanged: if (activeFocus) sensors.ensureCurrent()
    Keys.onUpPressed: sensors.moveCurrent(-1)
    Keys.onDownPressed: sensors.moveCurrent(1)
    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Return:
        case Qt.Key_Enter:
        case Qt.Key_Space: if (!event.isAutoRepeat) toggleCurrent(); break;
        case Qt.Key_Delete:
        case Qt.Key_Backspace: if (!event.isAutoRepeat) hideCurrent(); break;
        case Qt.Key_PageUp: sensors.moveCurrentByPages(-1); break;
        case Qt.Key_PageDown: sensors.moveCurrentByPages(1); break;
        case Qt.Key_Home: sensors.moveCurrentToFirst(); break;
        case Qt.Key_End: sensors.moveCurrentToLast(); break;
        default: return;
        }
        event.accepted = true;
    }

    function toggleCurrent() {
        sensors.ensureCurrent();
        content.toggleRow(sensors.currentKey);
    }

    function hideCurrent() {
        sensors.ensureCurrent();
        content.hideRow(sensors.currentKey);
    }

    Flickable {
        id: flickable
        anchors.fill: parent
        clip: true
        contentHeight: list.sensors.contentHeight
        boundsBehavior: Flickable.StopAtBounds
        onContentYChanged: list.sensors.setViewport(contentY, height)
        onHeightChanged: list.sensors.setViewport(contentY, height)
        T.ScrollBar.vertical: scrollBar

        Repeater {
            model: list.sensors.cards

            // Before Qt 6.5, a delegate cannot declare that it uses ids around it (ComponentBehavior).
            // qmllint disable unqualified
            SensorSectionCard {
                x: list.sensors.margin
                width: flickable.width - 2 * x
                content: list.content
                focusedKey: list.sensors.currentKey
            }
            // qmllint enable unqualified
        }
    }
    T.ScrollBar {
        id: scrollBar
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.rightMargin: 2
        anchors.topMargin: 6
        anchors.bottomMargin: 6
        padding: 1
        implicitWidth: 8
        visible: size < 1
        minimumSize: 0.08
        Accessible.ignored: true
        contentItem: Plate {
            implicitWidth: 6
            radius: width / 2
            colors: [PanelStyle.white(scrollBar.pressed ? 0.42 : scrollBar.hovered ? 0.34 : 0.2)]
        }
    }
    Connections {
        target: list.sensors

        function onViewportTopRequested(top: real) {
            flickable.contentY = top;
        }
    }
}
