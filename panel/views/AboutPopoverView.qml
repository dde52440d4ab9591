import QtQuick
import QtQuick.Templates as T
import Kelvinbar.Panel

/// What the program is, where it keeps what, and how to contact its author.
T.Popup {
    id: popover

    required property PanelControls controls
    property bool reducedMotion: false
    /// Whether the popover is open.
    property bool showAbout: false

    /// The item that had the keyboard focus before.
    property Item formerFocus: null

    visible: showAbout
    onAboutToShow: formerFocus = parent.Window.activeFocusItem
    onClosed: {
        showAbout = false;
        formerFocus?.forceActiveFocus();
    }
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    margins: 10
    padding: 20
    implicitWidth: PanelStyle.scaled(290)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    enter: Transition {
        enabled: !popover.reducedMotion
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 120 }
    }
    background: Plate {
        colors: PanelStyle.aboutColors
        radius: 14
        stroke: PanelStyle.white(0.2)
    }
    contentItem: Column {
        spacing: 10
        // Screen readers tell what has the keyboard.
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: "About Kelvinbar"
        Accessible.description: popover.controls.about
        Accessible.focusable: true
        Accessible.focused: activeFocus

        AnimatedHeaderIcon {
            anchors.horizontalCenter: parent.horizontalCenter
            size: 72
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Kelvinbar"
            font: PanelStyle.roundedFont(18, Font.Black)
            color: PanelStyle.titleInk
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: popover.controls.about
            font: PanelStyle.font(11.5, Font.Normal)
            color: PanelStyle.secondaryInk
            lineHeight: 1.15
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Repeater {
            model: popover.controls.programLines

            // Before Qt 6.5, a delegate cannot declare that it uses ids around it (ComponentBehavior).
            // qmllint disable unqualified
            Text {
                required property string modelData

                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                text: modelData
                font: PanelStyle.font(10.5, Font.Normal)
                color: PanelStyle.secondaryInk
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            // qmllint enable unqualified
        }
        Text {
            width: parent.width
            visible: text.length > 0
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: popover.controls.author
            font: PanelStyle.font(11.5, Font.Bold)
            color: PanelStyle.labelInk
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        MenuFooterButtonStyle {
            visible: popover.controls.contact.length > 0
            width: parent.width
            symbol: "envelope"
            text: popover.controls.contact
            onClicked: popover.controls.writeToAuthor()
        }
        MenuFooterButtonStyle {
            visible: popover.controls.donationPage.length > 0
            width: parent.width
            symbol: "heart.fill"
            symbolColor: PanelStyle.pink
            text: "Donate"
            onClicked: popover.controls.openDonationPage()
        }
    }
}
