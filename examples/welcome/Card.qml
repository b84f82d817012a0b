// A white card with a title and a column of content: Card { title: "Versions"; Fact { ... } }
import QtQuick 2.15

Rectangle {
    id: card

    property string title
    property real unit: 1            // pixels per point of a 72 dpi display
    property color accent: "#1b6e8c"
    default property alias content: column.data

    implicitHeight: column.implicitHeight + 28 * unit
    radius: 6 * unit
    color: "white"
    border { width: Math.max(1, Math.round(unit)); color: "#d7dee5" }

    Column {
        id: column

        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 14 * card.unit }
        spacing: 6 * card.unit

        Text {
            width: parent.width
            bottomPadding: 2 * card.unit
            text: card.title
            color: card.accent
            font { pixelSize: 15 * card.unit; bold: true }
            elide: Text.ElideRight
        }
    }
}
