import QtQuick
import Kelvinbar.Panel

/// What the panel can do besides showing readings.
Row {
    id: actions

    required property QtObject controls
    /// What is left of the width when every button is as wide as its label goes to all buttons alike.
    readonly property real spare: (width - 4 * spacing - login.implicitWidth - refresh.implicitWidth - copy.implicitWidth
                                   - showAll.implicitWidth - quit.implicitWidth) / 5

    spacing: 6

    MenuFooterButtonStyle {
        id: login
        width: implicitWidth + actions.spare
        text: "Login"
        checkable: true
        isOn: actions.controls.runAtLogin
        symbol: isOn ? "checkmark.square.fill" : "square"
        symbolColor: isOn ? "#64d2ff" : PanelStyle.white(0.6)
        toolTip: actions.controls.loginToolTip
        onClicked: actions.controls.toggleRunAtLogin()
    }
    MenuFooterButtonStyle {
        id: refresh
        width: implicitWidth + actions.spare
        text: "Refresh"
        symbol: "arrow.clockwise"
        onClicked: actions.controls.refresh()
    }
    MenuFooterButtonStyle {
        id: copy
        width: implicitWidth + actions.spare
        text: "Copy"
        symbol: "doc.on.doc"
        onClicked: actions.controls.copy()
    }
    MenuFooterButtonStyle {
        id: showAll
        width: implicitWidth + actions.spare
        text: "ShowAll"
        symbol: "eye"
        toolTip: "Show all hidden properties again"
        onClicked: actions.controls.showAll()
    }
    MenuFooterButtonStyle {
        id: quit
        width: implicitWidth + actions.spare
        text: "Quit"
        symbol: "xmark.square"
        onClicked: actions.controls.quit()
    }
}
