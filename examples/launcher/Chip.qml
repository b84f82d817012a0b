// One choice of a row of filters.
import QtQuick 2.15
import QtQuick.Controls 2.15
import "Theme.js" as Theme

AbstractButton {
    id: chip

    property real unit: 1
    property int count: 0   // shown behind the text when there are any

    implicitWidth: label.implicitWidth + 26 * unit
    implicitHeight: 32 * unit
    checkable: true
    autoExclusive: true
    Accessible.name: label.text

    contentItem: Text {
        id: label

        text: chip.count > 0 ? chip.text + " " + chip.count : chip.text
        color: chip.checked ? "white" : Theme.text
        font { pixelSize: 13 * chip.unit; bold: chip.checked }
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        radius: height / 2
        color: chip.checked ? Theme.accent : chip.down || chip.hovered ? Theme.accentLight : Theme.surface
        border {
            width: chip.visualFocus ? 2 * chip.unit : 1
            color: chip.visualFocus ? Theme.text : chip.checked ? Theme.accent : Theme.line
        }
    }
}
