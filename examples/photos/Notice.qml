// A line that tells what went wrong, or something to know.
import QtQuick 2.15
import "Theme.js" as Theme

Rectangle {
    id: notice

    property string text
    property bool failed: false
    property real unit: 1

    implicitHeight: label.implicitHeight + 20 * unit
    visible: text > ""
    radius: 8 * unit
    color: failed ? Theme.badLight : Theme.accentLight
    border { width: 1; color: failed ? "#f0b8b3" : Theme.outline }

    Text {
        id: label

        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 12 * notice.unit }
        text: notice.text
        textFormat: Text.PlainText
        color: notice.failed ? Theme.bad : Theme.text
        font.pixelSize: 13 * notice.unit
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        maximumLineCount: 5
        elide: Text.ElideRight
    }
}
