// A text field.
import QtQuick 2.15
import QtQuick.Controls 2.15
import "Theme.js" as Theme

TextField {
    id: field

    property real unit: 1

    implicitHeight: 36 * unit
    leftPadding: 12 * unit
    rightPadding: leftPadding
    color: Theme.text
    placeholderTextColor: Theme.secondaryText
    font.pixelSize: 14 * unit
    selectByMouse: true
    selectionColor: Theme.accent
    selectedTextColor: "white"
    autoScroll: activeFocus   // else its beginning shows
    inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
    background: Rectangle {
        radius: 8 * field.unit
        color: Theme.surface
        border { width: field.activeFocus ? 2 * field.unit : 1; color: field.activeFocus ? Theme.accent : Theme.outline }
    }
}
