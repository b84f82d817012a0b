// One record: time, level and message; with a click also its structured data.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

ItemDelegate {
    id: item

    property real unit: 1
    property string time
    property int severity: 6
    property string message
    property string details
    property bool open: false
    readonly property bool narrow: width < 420 * unit

    readonly property var levels: ({
        1: { name: "fatal", color: "#ff5c8a" },
        2: { name: "critical", color: "#ff7b72" },
        4: { name: "warning", color: "#f2b84b" },
        6: { name: "info", color: "#7fd1ae" },
        7: { name: "debug", color: "#9aa5c4" }
    })
    readonly property var level: levels[severity] || levels[6]

    padding: 5 * unit
    leftPadding: 12 * unit
    rightPadding: 12 * unit
    onClicked: open = !open

    background: Rectangle {
        color: item.hovered || item.open ? "#322b45" : "transparent"
    }
    // In a narrow view the message has a line of its own.
    contentItem: GridLayout {
        columns: item.narrow ? 2 : 3
        columnSpacing: 10 * item.unit
        rowSpacing: 2 * item.unit

        Text {
            Layout.alignment: Qt.AlignTop
            text: item.time
            color: "#8f88a8"
            font { pixelSize: 12 * item.unit; family: "monospace" }
        }
        Text {
            Layout.alignment: Qt.AlignTop
            Layout.preferredWidth: 62 * item.unit
            Layout.fillWidth: item.narrow
            text: item.level.name
            color: item.level.color
            font { pixelSize: 12 * item.unit; family: "monospace"; bold: true }
        }
        Text {
            Layout.fillWidth: true
            Layout.columnSpan: item.narrow ? 2 : 1
            text: item.message
            textFormat: Text.PlainText
            color: item.message.startsWith("$ ") ? "#b9b3cc" : "#f1eff7"
            font { pixelSize: 12 * item.unit; family: "monospace" }
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            maximumLineCount: item.open ? 200 : 3
            elide: Text.ElideRight
        }
        Text {
            Layout.fillWidth: true
            Layout.columnSpan: item.narrow ? 2 : 3
            visible: item.open
            text: item.details
            textFormat: Text.PlainText
            color: "#b4a7e0"
            font { pixelSize: 11 * item.unit; family: "monospace" }
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        }
    }
}
