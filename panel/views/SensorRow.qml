import QtQuick
import Kelvinbar.Panel

/// One reading: its name, kind and value, and its actions.
Item {
    id: row

    required property string key
    required property string name
    required property string metadata
    // Not called value, whose changes the toolkit tells to assistive tools as those of a slider.
    required property string valueText
    required property bool isMenuBarSelected
    required property string toolTip
    required property list<color> backgroundColors
    /// From 1 through the whole list.
    required property int number
    required property real rowTop
    required property color accent
    required property PanelContent content
    /// The width of the longest value in the column; 0 where each value stands by itself.
    property real columnWidth: 0
    readonly property bool isCut: nameText.truncated || metadataText.truncated || chipText.width < chipText.implicitWidth
    readonly property bool isToldAtFocus: activeFocus && isCut
    /// Where tooltips end, so that the values of the rows around stay in view.
    readonly property real toolTipEnd: marks.x + chip.x - marks.spacing
    /// The value as screen readers tell it. They would read the row with the keyboard again at each change.
    property string toldValue
    readonly property bool isHovered: pointer.containsMouse || hide.hovered

    y: rowTop
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: toldValue + ", " + number + " of " + content.sensors.rowTotal + ". "
                            + (isMenuBarSelected ? pin.toolTip + ". " : "") + metadata
                            + ". Enter: " + (isMenuBarSelected ? content.unpinText : content.pinText) + ". Delete: Hide."
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.selectable: true
    Accessible.selected: isMenuBarSelected
    Accessible.onPressAction: content.toggleRow(key)

    /// What is cut is told in full, above what a double-click does. A name from right to left reorders nothing around it.
    function fullToolTip(): string {
        let cut = nameText.truncated ? "\u2068" + name + "\u2069, " : "";
        if (metadataText.truncated)
            cut += metadata + ", ";
        if (chipText.width < chipText.implicitWidth)
            cut += valueText + ", ";
        return cut.slice(0, -2) + "\n" + toolTip;
    }

    onIsToldAtFocusChanged: HoverTarget.hover(pointer, isToldAtFocus)
    onIsHoveredChanged: content.sensors.hover(key, isHovered)
    Component.onDestruction: content.sensors.hover(key, false)

    Binding on toldValue {
        value: row.valueText
        when: !row.activeFocus
        restoreMode: Binding.RestoreNone
    }
    Plate {
        anchors.fill: parent
        colors: row.backgroundColors
        radius: 9
        stroke: row.activeFocus ? PanelStyle.focusRing
              : row.isHovered ? PanelStyle.markInk
              : row.isMenuBarSelected ? PanelStyle.tinted(PanelStyle.pin, 0.34) : PanelStyle.white(0.065)
    }
    MouseArea {
        id: pointer

        readonly property string toolTip: row.isCut ? row.fullToolTip() : row.toolTip
        readonly property real toolTipEnd: row.toolTipEnd

        anchors.fill: parent
        hoverEnabled: true
        onContainsMouseChanged: HoverTarget.hover(pointer, containsMouse)
        onPressed: mouse => {
            row.content.pressRow(row.key, pointer.mapToItem(null, mouse.x, mouse.y));
            HoverTarget.hover(pointer, false); // after the row has got the keyboard, which shows its tooltip
        }
        onDoubleClicked: row.content.doubleClickRow(row.key)
    }
    Column {
        anchors.left: parent.left
        anchors.leftMargin: PanelStyle.scaled(11)
        anchors.right: marks.left
        anchors.rightMargin: PanelStyle.scaled(8)
        anchors.verticalCenter: parent.verticalCenter
        spacing: PanelStyle.scaled(1)

        Text {
            id: nameText
            width: parent.width
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            textFormat: Text.PlainText
            maximumLineCount: 1
            text: row.name
            font: PanelStyle.font(11.2, Font.Bold)
            color: PanelStyle.rowNameInk
            Accessible.ignored: true
        }
        Text {
            id: metadataText
            width: parent.width
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            textFormat: Text.PlainText
            maximumLineCount: 1
            text: row.metadata
            font: PanelStyle.font(8.7, Font.Bold)
            color: PanelStyle.metadataInk
            Accessible.ignored: true
        }
    }
    Row {
        id: marks
        anchors.right: parent.right
        anchors.rightMargin: PanelStyle.scaled(9) - hide.rim
        anchors.verticalCenter: parent.verticalCenter
        spacing: PanelStyle.scaled(8) - hide.rim

        Symbol {
            id: pin

            readonly property string toolTip: row.content.pinnedText
            readonly property real toolTipEnd: row.toolTipEnd - marks.x - pin.x

            anchors.verticalCenter: parent.verticalCenter
            visible: row.isMenuBarSelected
            name: "menubar.rectangle"
            size: PanelStyle.scaled(13)
            color: PanelStyle.pin

            HoverHandler {
                onHoveredChanged: HoverTarget.hover(hovered ? pin : pointer, hovered || pointer.containsMouse)
            }
        }
        Plate {
            id: chip

            readonly property real margin: PanelStyle.scaled(9)
            readonly property real valueWidth: Math.max(row.columnWidth, chipText.implicitWidth)

            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(row.width / 2, Math.max(PanelStyle.scaled(76), Math.ceil(valueWidth) + 2 * margin))
            height: PanelStyle.scaled(23)
            radius: height / 2
            isVertical: true
            colors: PanelStyle.chipColors
            stroke: PanelStyle.tinted(row.accent, 0.3)

            DigitsText {
                id: chipText
                anchors.right: parent.right
                // The column is in the middle of its chips.
                anchors.rightMargin: Math.max(chip.margin, Math.floor((chip.width - chip.valueWidth) / 2))
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, chip.width - 2 * chip.margin)
                text: row.valueText
                font: PanelStyle.valueFont
                color: PanelStyle.accentText(row.accent)
            }
        }
        CompactIconButtonStyle {
            id: hide

            readonly property real rim: 2
            readonly property real toolTipEnd: row.toolTipEnd - marks.x - hide.x

            anchors.verticalCenter: parent.verticalCenter
            // The circle is smaller than what can be hit.
            implicitWidth: PanelStyle.scaled(20) + 2 * rim
            implicitHeight: implicitWidth
            leftInset: rim
            topInset: rim
            rightInset: rim
            bottomInset: rim
            radius: plate.height / 2
            toolTip: "Hide this property from the list"
            focusPolicy: Qt.NoFocus
            activeFocusOnTab: false
            plate.colors: hovered ? [PanelStyle.white(0.14)] : []
            plate.stroke: hovered ? PanelStyle.secondaryInk : PanelStyle.markInk
            symbol: "minus"
            symbolSize: 10
            Accessible.description: row.name
            onClicked: row.content.pressHideButton(row.key, hide.mapToItem(null, hide.pressX, hide.pressY))
        }
    }
}
