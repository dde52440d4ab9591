import QtQuick
import Kelvinbar.Panel

/// The menu of a row: what its values have been, and what can be done with it.
PanelMenu {
    id: rowMenu

    required property PanelContent content
    readonly property SensorRowMenu row: content.rowMenu

    Item {
        implicitHeight: heading.implicitHeight + 12
        implicitWidth: Math.min(PanelStyle.scaled(280), heading.implicitWidth + 20)
        Accessible.role: Accessible.StaticText
        Accessible.name: title.text + ", " + range.text

        Column {
            id: heading
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.leftMargin: 10
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Text {
                id: title
                width: parent.width
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
                textFormat: Text.PlainText
                text: rowMenu.row.name
                font: PanelStyle.font(11, Font.Bold)
                color: PanelStyle.secondaryInk
                Accessible.ignored: true
            }
            Text {
                id: range
                visible: text.length > 0
                textFormat: Text.PlainText
                text: rowMenu.row.mean.length === 0 ? ""
                    : "Lowest " + rowMenu.row.lowest + "\nHighest " + rowMenu.row.highest + "\nMean " + rowMenu.row.mean
                font: PanelStyle.font(10, Font.DemiBold)
                color: PanelStyle.secondaryInk
                lineHeight: 1.1
                Accessible.ignored: true
            }
        }
    }
    PanelMenuItem {
        text: rowMenu.row.isPinned ? rowMenu.content.unpinText : rowMenu.content.pinText
        onTriggered: rowMenu.content.toggleRow(rowMenu.row.key)
    }
    PanelMenuItem {
        text: "Hide"
        onTriggered: rowMenu.content.hideRow(rowMenu.row.key)
    }
    PanelMenuItem {
        text: "Copy value"
        onTriggered: rowMenu.row.copyValue()
    }
    PanelMenuItem {
        text: "Copy name"
        onTriggered: rowMenu.row.copyName()
    }
    PanelMenuItem {
        text: "Copy key"
        onTriggered: rowMenu.row.copyKey()
    }
}
