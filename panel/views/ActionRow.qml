import QtQuick
import QtQuick.Templates as T
import Kelvinbar.Panel

/// The actions of the panel, besides showing readings: in one line, or in two when the text is so large that the labels do
/// not fit.
Flow {
    id: actions

    required property PanelControls controls
    required property HiddenRows hidden
    readonly property real room: width - 4 * spacing
    readonly property bool isOneLine: login.labelWidth + refresh.labelWidth + copy.labelWidth + showAll.labelWidth
                                      + quit.labelWidth <= room
    readonly property bool showsSymbols: isOneLine ? login.fullWidth + refresh.fullWidth + copy.fullWidth + showAll.fullWidth
                                                     + quit.fullWidth <= room
                                       : Math.max(login.fullWidth, refresh.fullWidth, copy.fullWidth) <= third
    /// In one line, the space that is left over is shared equally among the buttons.
    readonly property real spare: (room - login.implicitWidth - refresh.implicitWidth - copy.implicitWidth
                                   - showAll.implicitWidth - quit.implicitWidth) / 5
    /// In two lines, the buttons of a line have the same width.
    readonly property real third: (width - 2 * spacing) / 3
    readonly property real half: (width - spacing) / 2
    readonly property real buttonHeight: isOneLine ? PanelStyle.actionHeight : PanelStyle.scaled(30)

    spacing: 6

    function openHiddenMenu() {
        hidden.list();
        if (hidden.names.length === 0)
            return;
        hiddenMenu.active = true;
        (hiddenMenu.item as T.Menu).popup(showAll, 0, -4);
    }

    MenuFooterButtonStyle {
        id: login
        width: actions.isOneLine ? implicitWidth + actions.spare : actions.third
        height: actions.buttonHeight
        showsSymbol: actions.showsSymbols
        text: "Login"
        checkable: true
        isOn: actions.controls.runAtLogin
        symbol: isOn ? "checkmark.square.fill" : "square"
        symbolColor: isOn ? PanelStyle.cyan : PanelStyle.secondaryInk
        toolTip: actions.controls.loginToolTip
        onClicked: actions.controls.toggleRunAtLogin()
    }
    MenuFooterButtonStyle {
        id: refresh

        readonly property bool isRefreshed: actions.controls.refreshed.isShown

        width: actions.isOneLine ? implicitWidth + actions.spare : actions.third
        height: actions.buttonHeight
        showsSymbol: actions.showsSymbols
        text: "Refresh"
        symbol: isRefreshed ? "checkmark.circle.fill" : "arrow.clockwise"
        // A screen reader reads the description of the button with the keyboard again when it changes.
        Accessible.description: isRefreshed ? actions.controls.refreshAnswer : toolTip
        onClicked: actions.controls.refresh()
    }
    MenuFooterButtonStyle {
        id: copy

        readonly property bool isCopied: actions.controls.copied.isShown

        width: actions.isOneLine ? implicitWidth + actions.spare : actions.third
        height: actions.buttonHeight
        showsSymbol: actions.showsSymbols
        text: "Copy"
        symbol: isCopied ? "checkmark.circle.fill" : "doc.on.doc"
        Accessible.description: isCopied ? "Copied" : toolTip
        onClicked: actions.controls.copy()
    }
    MenuFooterButtonStyle {
        id: showAll
        width: actions.isOneLine ? implicitWidth + actions.spare : actions.half
        height: actions.buttonHeight
        showsSymbol: actions.showsSymbols
        text: "ShowAll"
        symbol: "eye"
        detail: actions.hidden.count > 0 ? actions.hidden.count : ""
        toolTip: "Show all hidden properties again"
        Accessible.name: detail.length > 0 ? text + ", " + detail + " hidden" : text
        Keys.onPressed: event => {
            const isMenuKey = event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier;
            event.accepted = isMenuKey;
            if (isMenuKey)
                actions.openHiddenMenu();
        }

        RightClick {
            onRightClicked: actions.openHiddenMenu()
        }
        Loader {
            id: hiddenMenu
            active: false
            // qmllint disable unqualified
            sourceComponent: HiddenMenu {
                hidden: actions.hidden
            }
            // qmllint enable unqualified
        }
        onClicked: actions.controls.showAll()
    }
    MenuFooterButtonStyle {
        id: quit
        width: actions.isOneLine ? implicitWidth + actions.spare : actions.half
        height: actions.buttonHeight
        showsSymbol: actions.showsSymbols
        text: "Quit"
        symbol: "xmark.square"
        onClicked: actions.controls.quit()
    }
}
