// An operation of the editor: a sign with its name below.
import QtQuick 2.15
import QtQuick.Controls 2.15
import "Theme.js" as Theme

AbstractButton {
    id: button

    property real unit: 1
    property string sign
    property bool active: false   // its strip is open

    implicitWidth: Math.max(76 * unit, label.implicitWidth + 12 * unit)
    implicitHeight: 54 * unit
    opacity: enabled ? 1 : 0.4

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Text {
            anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 3 * button.unit }
            text: button.sign
            color: button.active ? "white" : Theme.accentDark
            font.pixelSize: 22 * button.unit
        }
        Text {
            id: label

            anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: 5 * button.unit }
            text: button.text
            color: button.active ? "white" : Theme.text
            font.pixelSize: 12 * button.unit
        }
    }
    background: Rectangle {
        radius: 8 * button.unit
        color: button.active ? Theme.accent : button.down ? "#ddd0ef" : button.hovered ? Theme.accentLight : "transparent"
        border { width: button.visualFocus ? 2 * button.unit : 0; color: Theme.text }
    }
}
