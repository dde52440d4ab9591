import QtQuick
import Kelvinbar.Panel

/// One section: a header above one row per reading.
Item {
    id: card

    required property string title
    required property string subtitle
    required property string icon
    required property color accent
    required property int count
    required property real cardTop
    required property real cardHeight
    required property SensorRowsModel rows
    required property PanelContent content
    required property string focusedKey

    y: cardTop
    height: cardHeight
    Accessible.role: Accessible.List
    Accessible.name: title
    Accessible.description: subtitle + ", " + count

    Plate {
        anchors.fill: parent
        radius: 14
        colors: [PanelStyle.white(0.075), PanelStyle.white(0.03), PanelStyle.black(0.1)]
        stroke: PanelStyle.white(0.09)
    }
    Plate {
        id: tile
        x: 10
        y: (card.content.sensors.headerHeight - height) / 2
        width: PanelStyle.scaled(30)
        height: width
        radius: 8
        colors: [PanelStyle.tinted(card.accent, 0.28), PanelStyle.tinted(card.accent, 0.1)]
        stroke: PanelStyle.tinted(card.accent, 0.3)

        Symbol {
            anchors.centerIn: parent
            name: card.icon
            size: PanelStyle.scaled(16)
            color: card.accent
        }
    }
    Column {
        anchors.left: tile.right
        anchors.leftMargin: 10
        anchors.right: badge.left
        anchors.rightMargin: 8
        anchors.verticalCenter: tile.verticalCenter
        spacing: 1

        Text {
            width: parent.width
            elide: Text.ElideRight
            text: card.title
            font: PanelStyle.roundedFont(12, Font.Black)
            color: PanelStyle.white(0.92)
            Accessible.ignored: true
        }
        Text {
            width: parent.width
            elide: Text.ElideRight
            fontSizeMode: Text.HorizontalFit
            minimumPointSize: 6
            text: card.subtitle
            font: PanelStyle.font(9.2, Font.DemiBold)
            color: PanelStyle.white(0.42)
            Accessible.ignored: true
        }
    }
    Plate {
        id: badge
        anchors.right: parent.right
        anchors.rightMargin: 11
        anchors.verticalCenter: tile.verticalCenter
        width: Math.max(height, countText.implicitWidth + 14)
        height: PanelStyle.scaled(20)
        radius: height / 2
        colors: [PanelStyle.tinted(card.accent, 0.16)]
        stroke: PanelStyle.tinted(card.accent, 0.26)

        DigitsText {
            id: countText
            anchors.centerIn: parent
            text: card.count
            font: PanelStyle.roundedFont(10, Font.Black)
            color: card.accent
        }
    }
    Repeater {
        model: card.rows

        // Before Qt 6.5, a delegate cannot declare that it uses ids around it (ComponentBehavior).
        // qmllint disable unqualified
        SensorRow {
            x: 8
            width: card.width - 16
            height: card.content.sensors.rowHeight
            accent: card.accent
            content: card.content
            focus: key === card.focusedKey
        }
        // qmllint enable unqualified
    }
}
