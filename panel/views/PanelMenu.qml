import QtQuick
import QtQuick.Templates as T
import Kelvinbar.Panel

/// A menu in the panel. It gives the keyboard back when it closes.
T.Menu {
    id: menu

    /// The item that had the keyboard focus before.
    property Item formerFocus: null

    onAboutToShow: {
        formerFocus = parent.Window.activeFocusItem;
        HoverTarget.item = null;
    }
    onClosed: formerFocus?.forceActiveFocus()
    margins: 8
    padding: 5
    overlap: 1
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    implicitWidth: Math.max(PanelStyle.scaled(190), contentWidth + leftPadding + rightPadding)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        currentIndex: menu.currentIndex
        clip: true
        boundsBehavior: Flickable.StopAtBounds
    }
    background: Plate {
        colors: PanelStyle.popupColors
        isVertical: true
        radius: 9
        stroke: PanelStyle.white(0.16)
    }
}
