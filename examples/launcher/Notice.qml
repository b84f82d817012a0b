// A line across the page that tells what happened or what can be done, with a button.
import QtQuick 2.15
import "Theme.js" as Theme

Rectangle {
    id: notice

    property string text
    property string action         // the button's text; none when empty
    property bool failed: false
    property real unit: 1
    readonly property alias button: actionButton

    signal triggered()

    implicitHeight: Math.max(label.height, actionButton.visible ? actionButton.height : 0) + 16 * unit
    radius: 8 * unit
    color: failed ? Theme.badLight : Theme.accentLight
    Accessible.role: failed ? Accessible.AlertMessage : Accessible.StaticText
    Accessible.name: text
    border { width: 1; color: failed ? "#f0b8b3" : "#c3d1f5" }

    Text {
        id: label

        anchors {
            left: parent.left; right: actionButton.visible ? actionButton.left : parent.right; verticalCenter: parent.verticalCenter
            leftMargin: 14 * notice.unit; rightMargin: 12 * notice.unit
        }
        objectName: notice.objectName + "Text"
        text: notice.text
        textFormat: Text.PlainText
        color: notice.failed ? Theme.bad : Theme.text
        font.pixelSize: 13 * notice.unit
        wrapMode: Text.Wrap
        maximumLineCount: 5
        elide: Text.ElideRight
    }
    PushButton {
        id: actionButton

        anchors { right: parent.right; rightMargin: 8 * notice.unit; verticalCenter: parent.verticalCenter }
        objectName: notice.objectName + "Button"
        visible: notice.action > ""
        unit: notice.unit
        text: notice.action
        onClicked: notice.triggered()
    }
}
