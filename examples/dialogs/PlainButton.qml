// A filled button that takes the keyboard too.
import QtQuick 2.15
import QtQuick.Controls 2.15

AbstractButton {
    id: button

    property real unit: 1

    implicitHeight: 40 * unit

    contentItem: Text {
        text: button.text
        color: "white"
        font { pixelSize: 14 * button.unit; bold: true }
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Rectangle {
        radius: 5 * button.unit
        color: button.down ? "#24533d" : button.hovered ? "#387d5d" : "#2f6b4f"
        border { width: button.visualFocus ? 2 * button.unit : 0; color: "#1f2a24" }
    }
}
