import QtQuick
import Kelvinbar.Panel

/// The header: the program's name, donations and About.
Item {
    id: header

    required property PanelContent content

    implicitHeight: PanelStyle.headerHeight

    Connections {
        target: header.content

        function onAboutRequested() {
            aboutPopover.showAbout = true;
        }
    }

    /// Call when the panel opens.
    function greet() {
        aboutPopover.showAbout = false;
        icon.greet();
    }

    AnimatedHeaderIcon {
        id: icon
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        size: PanelStyle.scaled(44)
        isAnimated: !header.content.reducedMotion
    }
    Text {
        anchors.left: icon.right
        anchors.leftMargin: PanelStyle.scaled(12)
        anchors.verticalCenter: parent.verticalCenter
        text: "Kelvinbar"
        font: PanelStyle.roundedFont(18, Font.Black)
        color: PanelStyle.titleInk
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        PanelButton {
            id: donation
            visible: header.content.controls.donationPage.length > 0
            anchors.verticalCenter: parent.verticalCenter
            text: "Donate"
            toolTip: header.content.controls.donationPage
            implicitHeight: PanelStyle.scaled(24)
            radius: height / 2
            leftPadding: PanelStyle.scaled(10)
            rightPadding: PanelStyle.scaled(10)
            contentItem: Row {
                spacing: PanelStyle.scaled(5)

                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "heart.fill"
                    size: PanelStyle.scaled(10)
                    color: PanelStyle.pink
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: donation.text
                    font: PanelStyle.font(10.5, Font.Bold)
                    color: PanelStyle.labelInk
                }
            }
            onClicked: header.content.controls.openDonationPage()
        }
        CompactIconButtonStyle {
            id: about
            anchors.verticalCenter: parent.verticalCenter
            symbol: "exclamationmark.circle"
            symbolSize: 15
            implicitWidth: PanelStyle.scaled(28)
            implicitHeight: PanelStyle.scaled(28)
            toolTip: "About"
            onClicked: aboutPopover.showAbout = !aboutPopover.showAbout

            AboutPopoverView {
                id: aboutPopover
                controls: header.content.controls
                x: about.width - width
                y: about.height + 8
                reducedMotion: header.content.reducedMotion
            }
        }
    }
}
