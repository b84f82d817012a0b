// A button: filled for the main action of a page, otherwise with an outline, or flat in bars, which may
// be dark.
import QtQuick 2.15
import QtQuick.Controls 2.15
import "Theme.js" as Theme

AbstractButton {
    id: button

    property real unit: 1
    property bool filled: false
    property bool flat: false
    property bool dark: false   // the bar below a flat one

    implicitWidth: Math.max(36 * unit, label.implicitWidth + (flat ? 18 : 28) * unit)
    implicitHeight: 36 * unit
    opacity: enabled ? 1 : 0.45

    Accessible.role: Accessible.Button
    Accessible.name: text
    Keys.onReturnPressed: press(event)
    Keys.onEnterPressed: press(event)

    // Once for a key that is held: it may have come from another page.
    function press(event) {
        if (!event.isAutoRepeat)
            clicked();
    }

    contentItem: Text {
        id: label

        text: button.text
        color: button.filled || button.dark ? "white" : Theme.accentDark
        font { pixelSize: 14 * button.unit; bold: true }
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Rectangle {
        radius: 8 * button.unit
        color: button.dark ? (button.down ? "#4a587a" : button.hovered ? "#34415f" : "transparent")
               : button.filled ? (button.down ? Theme.accentDark : button.hovered ? "#264bb5" : Theme.accent)
               : button.down ? "#d3ddf7" : button.hovered ? Theme.accentLight : button.flat ? "transparent" : Theme.surface
        border {
            width: button.visualFocus ? 2 * button.unit : button.filled || button.flat ? 0 : 1
            color: !button.visualFocus ? "#b8c4dd" : button.dark ? "white" : Theme.text
        }
    }
}
