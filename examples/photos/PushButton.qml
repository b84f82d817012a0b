// A button: filled for the main action, otherwise with an outline, or flat in bars.
import QtQuick 2.15
import QtQuick.Controls 2.15
import "Theme.js" as Theme

AbstractButton {
    id: button

    property real unit: 1
    property bool filled: false
    property bool flat: false

    implicitWidth: Math.max(36 * unit, label.implicitWidth + (flat ? 18 : 28) * unit)
    implicitHeight: 36 * unit
    opacity: enabled ? 1 : 0.45

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Text {
        id: label

        text: button.text
        color: button.filled ? "white" : Theme.accentDark
        font { pixelSize: 14 * button.unit; bold: true }
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Rectangle {
        radius: 8 * button.unit
        color: button.filled ? (button.down ? Theme.accentDark : button.hovered ? "#553386" : Theme.accent)
                             : button.down ? "#ddd0ef" : button.hovered ? Theme.accentLight : button.flat ? "transparent" : Theme.surface
        border {
            width: button.visualFocus ? 2 * button.unit : button.filled || button.flat ? 0 : 1
            color: button.visualFocus ? Theme.text : Theme.outline
        }
    }
}
