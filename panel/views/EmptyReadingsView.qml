import QtQuick
import Kelvinbar.Panel

/// Shown when the machine can be read, but there is no reading to show.
Column {
    id: view

    required property PanelControls controls
    /// Of readings that are there, but hidden.
    required property int hiddenCount

    spacing: 11
    Accessible.role: Accessible.Notification
    Accessible.name: title.text
    Accessible.description: explanation.text

    Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        name: "line.3.horizontal.decrease.circle"
        size: PanelStyle.scaled(34)
        color: PanelStyle.noticeTextInk
    }
    Text {
        id: title
        anchors.horizontalCenter: parent.horizontalCenter
        text: "No sensor with a real value was found"
        font: PanelStyle.roundedFont(13, Font.Black)
        color: PanelStyle.noticeTitleInk
        Accessible.ignored: true
    }
    Text {
        id: explanation
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, PanelStyle.scaled(300))
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        text: "The app filters empty keys and shows only sensors that return a real value."
        font: PanelStyle.font(11, Font.DemiBold)
        color: PanelStyle.noticeTextInk
        Accessible.ignored: true
    }
    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: view.hiddenCount > 0
        text: view.hiddenCount === 1 ? "1 reading is hidden." : view.hiddenCount + " readings are hidden."
        font: PanelStyle.font(11, Font.DemiBold)
        color: PanelStyle.secondaryInk
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    MenuFooterButtonStyle {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: view.hiddenCount > 0
        width: implicitWidth + 24
        symbol: "eye"
        text: "ShowAll"
        onClicked: view.controls.showAll()
    }
}
