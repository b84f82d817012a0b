// A filled button that takes the keyboard too.
import QtQuick 2.15
import QtQuick.Controls 2.15

AbstractButton {
    id: button

    property real unit: 1

    implicitWidth: label.implicitWidth + 32 * unit
    implicitHeight: 34 * unit

    contentItem: Text {
        id: label

        text: button.text
        color: "white"
        font { pixelSize: 13 * button.unit; bold: true }
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Rectangle {
        radius: 5 * button.unit
        color: button.down ? "#5f2d52" : button.hovered ? "#8f4a7c" : "#7a3b69"
        border { width: button.visualFocus ? 2 * button.unit : 0; color: "#2b1f28" }
    }
}
