import QtQuick

Rectangle {
    color: "#16181d"

    ListView {
        anchors.fill: parent
        anchors.margins: 12
        clip: true
        model: readingLines
        delegate: Text {
            required property string modelData
            text: modelData
            color: "#e6e9ee"
            font.pixelSize: 13
            height: 22
        }
    }
}
