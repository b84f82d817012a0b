// The strip at the top of a page; what is declared in it stands in a row.
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "Theme.js" as Theme

Rectangle {
    id: bar

    default property alias items: row.data
    property real unit: 1
    property real space: 12 * unit

    implicitHeight: Math.round(56 * unit)
    color: Theme.surface

    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 1
        color: Theme.line
    }
    RowLayout {
        id: row

        anchors { fill: parent; leftMargin: bar.space; rightMargin: bar.space }
        spacing: 8 * bar.unit
    }
}
