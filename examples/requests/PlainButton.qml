// A flat button: filled with its colour, or outlined in it.
import QtQuick 2.15
import QtQuick.Controls 2.15

AbstractButton {
    id: button

    property real unit: 1
    property color color: "#1c6478"
    property bool filled: false

    implicitWidth: label.implicitWidth + 24 * unit
    implicitHeight: 34 * unit
    opacity: enabled ? 1 : 0.4

    contentItem: Text {
        id: label

        text: button.text
        color: !button.filled ? button.color : button.color.hslLightness > 0.7 ? "#114453" : "white"
        font { pixelSize: 13 * button.unit; bold: true }
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Rectangle {
        radius: 5 * button.unit
        color: button.filled ? button.color : "transparent"
        opacity: button.down ? 0.7 : button.hovered ? 0.9 : 1
        border { width: (button.visualFocus ? 2 : 1) * button.unit; color: button.visualFocus ? "#15272e" : button.color }
    }
}
