import QtQuick
import QtQuick.Templates as T
import Kelvinbar.Panel

/// An entry of a menu.
T.MenuItem {
    id: item

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: PanelStyle.scaled(28)
    leftPadding: PanelStyle.scaled(10)
    rightPadding: PanelStyle.scaled(10)

    contentItem: Text {
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
        text: item.text
        font: PanelStyle.font(11, Font.DemiBold)
        color: PanelStyle.labelInk
    }
    background: Plate {
        radius: 6
        colors: item.highlighted ? [PanelStyle.white(0.16)] : []
    }
}
