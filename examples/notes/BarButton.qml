// A flat button for bars: light text on a coloured bar, or dark text on a light one.
import QtQuick 2.15
import QtQuick.Controls 2.15

AbstractButton {
    id: button

    property real unit: 1
    property bool dark: false
    property bool filled: false

    implicitWidth: label.implicitWidth + 20 * unit
    implicitHeight: 32 * unit
    opacity: enabled ? 1 : 0.4

    contentItem: Text {
        id: label

        text: button.text
        color: button.filled ? "#5d3c0d" : button.dark ? "#2b2418" : "white"
        font { pixelSize: 13 * button.unit; bold: button.filled }
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        radius: 4 * button.unit
        color: button.filled ? "white" : button.dark ? "black" : "white"
        opacity: button.filled ? (button.down ? 0.8 : 1) : button.down ? 0.2 : button.hovered ? 0.12 : 0
        border { width: button.visualFocus ? 2 * button.unit : 0; color: "#2b2418" }
    }
}
