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
    required property string valueShape
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
        colors: PanelStyle.cardColors
        stroke: PanelStyle.white(0.09)
    }
    Plate {
        id: tile
        x: 12
        y: (card.content.sensors.headerHeight - height) / 2
        width: PanelStyle.scaled(30)
        height: width
        radius: 8
        colors: [PanelStyle.tinted(card.accent, PanelStyle.tileTint), PanelStyle.tinted(card.accent, 0.1)]
        stroke: PanelStyle.tinted(card.accent, 0.3)

        Symbol {
            anchors.centerIn: parent
            name: card.icon
            size: PanelStyle.scaled(16)
            color: PanelStyle.accentSymbol(card.accent)
        }
    }
    Column {
        id: heading

        readonly property string toolTip: titleText.truncated || subtitleText.truncated ? card.title + ", " + card.subtitle : ""
        // No value of a row begins further left.
        readonly property real toolTipEnd: card.width / 2 - x

        anchors.left: tile.right
        anchors.leftMargin: PanelStyle.scaled(10)
        anchors.right: badge.left
        anchors.rightMargin: PanelStyle.scaled(8)
        anchors.verticalCenter: tile.verticalCenter
        spacing: PanelStyle.scaled(1)

        HoverHandler {
            onHoveredChanged: HoverTarget.hover(heading, hovered)
        }
        Text {
            id: titleText
            width: parent.width
            elide: Text.ElideRight
            text: card.title
            font: PanelStyle.roundedFont(12, Font.Black)
            color: PanelStyle.titleInk
            Accessible.ignored: true
        }
        Text {
            id: subtitleText
            width: parent.width
            elide: Text.ElideRight
            fontSizeMode: Text.HorizontalFit
            minimumPointSize: 6
            text: card.subtitle
            font: PanelStyle.font(9.2, Font.DemiBold)
            color: PanelStyle.secondaryInk
            Accessible.ignored: true
        }
    }
    Plate {
        id: badge
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: tile.verticalCenter
        width: Math.max(height, countText.implicitWidth + PanelStyle.scaled(14))
        height: PanelStyle.scaled(20)
        radius: height / 2
        colors: [PanelStyle.tinted(card.accent, PanelStyle.badgeTint)]
        stroke: PanelStyle.tinted(card.accent, 0.26)

        DigitsText {
            id: countText
            anchors.centerIn: parent
            text: card.count
            font: PanelStyle.roundedFont(10, Font.Black)
            color: PanelStyle.accentText(card.accent)
        }
    }
    DigitsText {
        id: longestValue
        visible: false
        text: card.valueShape
        font: PanelStyle.valueFont
    }
    Repeater {
        model: card.rows

        // Before Qt 6.5, a delegate cannot declare that it uses ids around it (ComponentBehavior).
        // qmllint disable unqualified
        SensorRow {
            x: 12
            width: card.width - 2 * x
            height: card.content.sensors.rowHeight
            accent: card.accent
            columnWidth: longestValue.implicitWidth
            content: card.content
            focus: key === card.focusedKey
        }
        // qmllint enable unqualified
    }
}
