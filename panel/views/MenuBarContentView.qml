import QtQuick
import Kelvinbar.Panel

/// The panel: header, readings, footer. The layout has a minimum height, so that a window that grows from a
/// strip uncovers it from the top.
FocusScope {
    id: view

    required property PanelContent content
    /// In points; 0 for a window whose corners cannot be transparent.
    property real cornerRadius: 0

    focus: true
    Keys.onEscapePressed: if (!content.search.end()) content.close()
    Keys.onDownPressed: enterReadings()
    Keys.onUpPressed: enterReadings()
    Keys.onPressed: event => {
        event.accepted = event.modifiers & Qt.ControlModifier ? command(event) : step(event.key) || search(event);
    }
    Accessible.role: Accessible.Pane
    Accessible.name: "Kelvinbar"

    /// Returns whether there is such a command.
    function command(event: KeyEvent): bool {
        const isShifted = (event.modifiers & Qt.ShiftModifier) !== 0;
        switch (event.key) {
        case Qt.Key_C: if (isShifted) content.controls.copy(); else content.copyCurrentRow(); return true;
        case Qt.Key_Z: content.hidden.undo(); return true;
        case Qt.Key_Q: content.controls.quit(); return true;
        }
        return false;
    }

    function step(key: int): bool {
        switch (key) {
        case Qt.Key_Plus: content.controls.increaseHeight(); return true;
        case Qt.Key_Minus: content.controls.decreaseHeight(); return true;
        case Qt.Key_F5: content.controls.refresh(); return true;
        }
        return false;
    }

    function search(event: KeyEvent): bool {
        if (!readings.visible || event.modifiers & (Qt.AltModifier | Qt.MetaModifier))
            return false;
        if (!content.search.type(event.text))
            return false;
        readings.forceActiveFocus();
        return true;
    }

    function enterReadings() {
        if (readings.visible)
            readings.forceActiveFocus();
    }

    Item {
        id: panel
        width: view.width
        height: Math.max(view.height, view.content.minimumHeight)

        MenuMetalBackground {
            anchors.fill: parent
            radius: view.cornerRadius
        }
        PanelHeader {
            id: header
            width: parent.width
            content: view.content
        }
        MetalDivider {
            id: upperDivider
            anchors.top: header.bottom
            width: parent.width
        }
        Item {
            anchors.top: upperDivider.bottom
            anchors.bottom: lowerDivider.top
            width: parent.width

            StatusLine {
                id: notice
                width: parent.width
                height: visible ? implicitHeight : 0
                margin: view.content.sensors.margin
                visible: readings.visible && text.length > 0
                text: view.content.notice
            }
            ReadingsList {
                id: readings
                anchors.top: notice.bottom
                anchors.bottom: parent.bottom
                width: parent.width
                content: view.content
                visible: view.content.state === PanelContent.Sections
            }
            LoadingView {
                anchors.centerIn: parent
                visible: view.content.state === PanelContent.Scanning
                text: view.content.scanningText
                reducedMotion: view.content.reducedMotion
            }
            EmptyReadingsView {
                anchors.centerIn: parent
                visible: view.content.state === PanelContent.NothingFound
                controls: view.content.controls
                hiddenCount: view.content.hidden.count
            }
            UnavailableView {
                anchors.centerIn: parent
                visible: view.content.state === PanelContent.Unavailable
                statusMessage: view.content.statusMessage
            }
        }
        MetalDivider {
            id: lowerDivider
            anchors.bottom: footer.top
            width: parent.width
        }
        PanelFooter {
            id: footer

            /// What neither the list nor the controls need.
            readonly property real rest: parent.height - header.height - upperDivider.height - lowerDivider.height
                                         - implicitHeight - notice.height - view.content.sensors.contentHeight

            anchors.bottom: parent.bottom
            width: parent.width
            height: implicitHeight + Math.max(0, Math.min(rest, view.content.spareHeight))
            content: view.content
        }
    }
    PanelToolTip {}
    Connections {
        target: view.content

        function onOpened() {
            header.greet();
        }
    }
}
