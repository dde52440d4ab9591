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
    Keys.onEscapePressed: content.close()
    Keys.onDownPressed: enterReadings()
    Keys.onUpPressed: enterReadings()
    Accessible.role: Accessible.Pane
    Accessible.name: "Kelvinbar"

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

            ReadingsList {
                id: readings
                anchors.fill: parent
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
            anchors.bottom: parent.bottom
            width: parent.width
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
