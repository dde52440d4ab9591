import QtQuick
import Kelvinbar.Panel

/// The actions of the panel, besides showing readings.
Row {
    id: actions

    required property PanelControls controls
    required property HiddenRows hidden
    readonly property real room: width - 4 * spacing
    /// Symbols are left out when the text is so large that not everything fits.
    readonly property bool showsSymbols: login.fullWidth + refresh.fullWidth + copy.fullWidth + showAll.fullWidth
                                         + quit.fullWidth <= room
    /// The space that is left over, shared equally among the buttons.
    readonly property real spare: (room - login.implicitWidth - refresh.implicitWidth - copy.implicitWidth
                                   - showAll.implicitWidth - quit.implicitWidth) / 5

    spacing: 6

    function openHiddenMenu() {
        hidden.list();
        if (hidden.names.length === 0)
            return;
        hiddenMenu.active = true;
        (hiddenMenu.item as HiddenMenu).popup(showAll, 0, -4);
    }

    MenuFooterButtonStyle {
        id: login
        width: implicitWidth + actions.spare
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

        width: implicitWidth + actions.spare
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

        width: implicitWidth + actions.spare
        showsSymbol: actions.showsSymbols
        text: "Copy"
        symbol: isCopied ? "checkmark.circle.fill" : "doc.on.doc"
        Accessible.description: isCopied ? "Copied" : toolTip
        onClicked: actions.controls.copy()
    }
    MenuFooterButtonStyle {
        id: showAll
        width: implicitWidth + actions.spare
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
        width: implicitWidth + actions.spare
        showsSymbol: actions.showsSymbols
        text: "Quit"
        symbol: "xmark.square"
        onClicked: actions.controls.quit()
    }
}
