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
        case Qt.Key_Space: if (content.search.type(event.text)) break; // falls through
        case Qt.Key_Return:
        case Qt.Key_Enter: if (!event.isAutoRepeat) toggleCurrent(); break;
        case Qt.Key_Backspace: if (content.search.eraseLast()) break; // falls through
        case Qt.Key_Delete: if (!event.isAutoRepeat) hideCurrent(); break;
        case Qt.Key_F10: if (event.modifiers !== Qt.ShiftModifier) return; // falls through
        case Qt.Key_Menu: openMenuOfCurrent(); break;
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

    /// At a place in the viewport.
    function openMenu(key: string, x: real, y: real) {
        if (!content.rowMenu.open(key))
            return;
        menuLoader.active = true;
        (menuLoader.item as T.Menu).popup(list, x, y);
    }

    function openMenuOfCurrent() {
        sensors.ensureCurrent();
        openMenu(sensors.currentKey, 2 * sensors.margin, sensors.bottomOf(sensors.currentKey) - flickable.contentY);
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
        onMovingChanged: list.content.setListMoving(moving)
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
    // Above the list, since an item that accepts a press hides it from what is below.
    Item {
        anchors.fill: parent

        RightClick {
            onRightClicked: (x, y) => list.openMenu(list.sensors.keyAt(y + flickable.contentY), x, y)
        }
        // A mouse scrolls with its wheel. It does not drag the list as a finger does, neither on purpose nor with a
        // small movement during a double-click.
        PointHandler {
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onActiveChanged: flickable.interactive = !active
        }
    }
    // What few openings need is built when it is first needed.
    Loader {
        id: menuLoader
        active: false
        // Before Qt 6.5, a component cannot declare that it uses ids around it (ComponentBehavior).
        // qmllint disable unqualified
        sourceComponent: RowMenu {
            content: list.content
        }
        // qmllint enable unqualified
    }
    Loader {
        active: list.content.hidden.lastName.length > 0 || list.content.search.text.length > 0
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: list.sensors.margin
        // The buttons that hide rows stay free: quick presses at one place hide one row after the other.
        anchors.rightMargin: list.sensors.margin + PanelStyle.scaled(29) + 19
        // qmllint disable unqualified
        sourceComponent: ListNotice {
            content: list.content
        }
        // qmllint enable unqualified
    }
    T.ScrollBar {
        id: scrollBar

        /// The least that is hit with ease.
        readonly property real target: 24

        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.topMargin: 6
        anchors.bottomMargin: 6
        padding: 1
        // As wide as the space beside the rows, of which the thumb covers little.
        leftPadding: 15
        rightPadding: 3
        implicitWidth: target
        visible: size < 1
        minimumSize: Math.max(0.08, target / availableHeight)
        Accessible.ignored: true
        contentItem: Plate {
            implicitWidth: 6
            radius: width / 2
            colors: [scrollBar.pressed ? PanelStyle.labelInk : scrollBar.hovered ? PanelStyle.secondaryInk : PanelStyle.markInk]
        }
    }
    Connections {
        target: list.sensors

        function onViewportTopRequested(top: real) {
            flickable.contentY = top;
        }
    }
}
