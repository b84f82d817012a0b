// One note in the list: a strip in its colour, its title and the beginning of its text.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

ItemDelegate {
    id: item

    property string title
    property string preview
    property color tint
    property bool selected: false
    property real unit: 1

    height: 58 * unit
    padding: 0

    background: Rectangle {
        color: item.selected ? "white" : item.hovered ? "#f6f1e7" : "transparent"

        Rectangle {
            width: 6 * item.unit
            height: parent.height
            color: item.tint
        }
        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: 1
            color: "#ddd3bf"
        }
    }
    contentItem: ColumnLayout {
        spacing: 2 * item.unit

        Text {
            Layout.fillWidth: true
            Layout.leftMargin: 18 * item.unit
            Layout.rightMargin: 10 * item.unit
            text: item.title
            textFormat: Text.PlainText
            color: "#2b2418"
            font { pixelSize: 14 * item.unit; bold: true }
            elide: Text.ElideRight
        }
        Text {
            Layout.fillWidth: true
            Layout.leftMargin: 18 * item.unit
            Layout.rightMargin: 10 * item.unit
            text: item.preview.replace(/\s+/g, " ") || "Empty"
            textFormat: Text.PlainText
            color: "#7a6f5d"
            font.pixelSize: 12 * item.unit
            elide: Text.ElideRight
            maximumLineCount: 1
        }
    }
}
