// How to get a server to try this with. An address that is clicked is filled in.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

Rectangle {
    id: page

    property real unit: 1
    readonly property string server: "http://127.0.0.1:8081"
    readonly property var addresses: [
        { url: server + "/echo", text: qsTr("tells what it received: try headers, a form, a file") },
        { url: server + "/redirect/3", text: qsTr("moves on three times, then /echo") },
        { url: server + "/bytes/100000000?rate=20000000", text: qsTr("100 MB in five seconds: watch the bar") },
        { url: server + "/status/404", text: qsTr("answers with that status") },
        { url: "https://127.0.0.1:8443/echo", text: qsTr("a certificate that can't be trusted") }
    ]

    signal chosen(string url)
    signal closed()

    color: "#f2f7f9"

    Flickable {
        anchors.fill: parent
        contentHeight: layout.height + 40 * page.unit
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}

        ColumnLayout {
            id: layout

            x: Math.max(18 * page.unit, (page.width - width) / 2)
            y: 20 * page.unit
            width: Math.min(page.width - 36 * page.unit, 680 * page.unit)
            spacing: 10 * page.unit

            Title { text: qsTr("A server to try it with") }
            Words { text: qsTr("tessaline-echo comes with the development tools. It listens on this machine only:") }
            Command { text: "tessaline-echo --port 8081" }
            Words { text: qsTr("In the source tree it is build/bin/tessaline-echo after scripts/run. Click an address to take it:") }

            Repeater {
                model: page.addresses

                AbstractButton {
                    id: entry

                    Layout.fillWidth: true
                    objectName: "address"
                    padding: 10 * page.unit
                    onClicked: page.chosen(modelData.url)

                    contentItem: Column {
                        spacing: 2 * page.unit

                        Text {
                            width: parent.width
                            text: modelData.url
                            color: "#1c6478"
                            font { pixelSize: 13 * page.unit; bold: true }
                            wrapMode: Text.WrapAnywhere
                        }
                        Text {
                            width: parent.width
                            text: modelData.text
                            color: "#566c76"
                            font.pixelSize: 12 * page.unit
                            wrapMode: Text.Wrap
                        }
                    }
                    background: Rectangle {
                        radius: 6 * page.unit
                        color: entry.hovered || entry.visualFocus ? "#e0eef2" : "white"
                        border { width: page.unit; color: "#d3e2e8" }
                    }
                }
            }

            Title { text: qsTr("With TLS") }
            Words { text: qsTr("A server whose certificate nobody trusts shows how errors are told:") }
            Command { text: "tessaline-echo --port 8443 --https" }

            PlainButton {
                Layout.topMargin: 8 * page.unit
                objectName: "closeHelp"
                unit: page.unit
                filled: true
                color: "#1c6478"
                text: qsTr("Close")
                onClicked: page.closed()
            }
        }
    }

    component Title: Text {
        Layout.fillWidth: true
        Layout.topMargin: 6 * page.unit
        color: "#1c6478"
        font { pixelSize: 17 * page.unit; bold: true }
    }
    component Words: Text {
        Layout.fillWidth: true
        color: "#15272e"
        font.pixelSize: 13 * page.unit
        wrapMode: Text.Wrap
    }
    component Command: Rectangle {
        property alias text: command.text

        Layout.fillWidth: true
        Layout.preferredHeight: command.implicitHeight + 20 * page.unit
        radius: 6 * page.unit
        color: "#15272e"

        TextEdit {
            id: command

            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 12 * page.unit }
            readOnly: true
            selectByMouse: true
            color: "#b5d99c"
            font { family: "monospace"; pixelSize: 12 * page.unit }
            wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere
        }
    }
}
