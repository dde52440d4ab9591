import QtQuick
import Kelvinbar.Panel

/// The footer: the settings row above the action row.
Item {
    id: footer

    required property PanelContent content

    implicitHeight: column.implicitHeight + 2 * PanelStyle.footerPadding

    Column {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: PanelStyle.footerSpacing

        SettingsRow {
            width: parent.width
            controls: footer.content.controls
        }
        ActionRow {
            width: parent.width
            controls: footer.content.controls
            hidden: footer.content.hidden
        }
    }
}
