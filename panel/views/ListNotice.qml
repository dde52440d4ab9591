import QtQuick
import Kelvinbar.Panel

/// A line over the lower edge of the list, for some seconds: what was hidden, or what is searched for.
Plate {
    id: notice

    required property PanelContent content
    readonly property bool isSearch: content.search.text.length > 0

    height: PanelStyle.scaled(32)
    radius: 9
    isVertical: true
    colors: PanelStyle.popupColors
    stroke: PanelStyle.white(0.16)
    Accessible.role: Accessible.Notification
    Accessible.name: label.text.replace(/[\u2068\u2069]/g, "")

    // Nothing reaches the rows below.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
    }
    Text {
        id: label
        anchors.left: parent.left
        anchors.leftMargin: PanelStyle.scaled(12)
        anchors.right: undo.visible ? undo.left : parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
        textFormat: Text.PlainText
        text: !notice.isSearch ? "Hidden: \u2068" + notice.content.hidden.lastName + "\u2069"
            : notice.content.search.isFound ? notice.content.search.text
            : "\u2068" + notice.content.search.text + "\u2069 – no such name"
        font: PanelStyle.font(11, Font.DemiBold)
        color: PanelStyle.labelInk
        Accessible.ignored: true
    }
    PanelButton {
        id: undo
        visible: !notice.isSearch
        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        text: "Undo"
        toolTip: "Ctrl+Z"
        focusPolicy: Qt.NoFocus
        activeFocusOnTab: false
        implicitHeight: PanelStyle.scaled(24)
        leftPadding: PanelStyle.scaled(10)
        rightPadding: PanelStyle.scaled(10)
        contentItem: Text {
            verticalAlignment: Text.AlignVCenter
            text: undo.text
            font: PanelStyle.font(11, Font.Bold)
            color: PanelStyle.titleInk
        }
        onClicked: notice.content.hidden.undo()
    }
}
