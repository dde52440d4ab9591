import QtQuick
import Kelvinbar.Panel

/// The actions of the panel, besides showing readings.
Row {
    id: actions

    required property PanelControls controls
    readonly property real room: width - 4 * spacing
    /// Symbols are left out when the text is so large that not everything fits.
    readonly property bool showsSymbols: login.fullWidth + refresh.fullWidth + copy.fullWidth + showAll.fullWidth
                                         + quit.fullWidth <= room
    /// The space that is left over, shared equally among the buttons.
    readonly property real spare: (room - login.implicitWidth - refresh.implicitWidth - copy.implicitWidth
                                   - showAll.implicitWidth - quit.implicitWidth) / 5

    spacing: 6

    MenuFooterButtonStyle {
        id: login
        width: implicitWidth + actions.spare
        showsSymbol: actions.showsSymbols
        text: "Login"
        checkable: true
        isOn: actions.controls.runAtLogin
        symbol: isOn ? "checkmark.square.fill" : "square"
        symbolColor: isOn ? PanelStyle.cyan : PanelStyle.white(0.6)
        toolTip: actions.controls.loginToolTip
        onClicked: actions.controls.toggleRunAtLogin()
    }
    MenuFooterButtonStyle {
        id: refresh
        width: implicitWidth + actions.spare
        showsSymbol: actions.showsSymbols
        text: "Refresh"
        symbol: "arrow.clockwise"
        onClicked: actions.controls.refresh()
    }
    MenuFooterButtonStyle {
        id: copy
        width: implicitWidth + actions.spare
        showsSymbol: actions.showsSymbols
        text: "Copy"
        symbol: "doc.on.doc"
        onClicked: actions.controls.copy()
    }
    MenuFooterButtonStyle {
        id: showAll
        width: implicitWidth + actions.spare
        showsSymbol: actions.showsSymbols
        text: "ShowAll"
        symbol: "eye"
        toolTip: "Show all hidden properties again"
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
