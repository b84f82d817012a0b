// A text field with its name above and, if there is one, a hint below. edited() comes with each key.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

ColumnLayout {
    id: field

    property real unit: 1
    property string label
    property string hint
    property alias text: input.text
    property alias placeholder: input.placeholderText
    property alias inputName: input.objectName

    signal edited(string text)
    signal accepted()

    spacing: 4 * unit

    Text {
        text: field.label
        color: "#15272e"
        font { pixelSize: 12 * field.unit; bold: true }
    }
    TextField {
        id: input

        Layout.fillWidth: true
        Layout.preferredHeight: 36 * field.unit
        leftPadding: 10 * field.unit
        rightPadding: leftPadding
        color: "#15272e"
        placeholderTextColor: "#7f949d"
        font.pixelSize: 13 * field.unit
        selectByMouse: true
        autoScroll: activeFocus   // else its beginning shows
        background: Rectangle {
            radius: 5 * field.unit
            color: field.enabled ? "white" : "transparent"
            border { width: (input.activeFocus ? 2 : 1) * field.unit; color: input.activeFocus ? "#1c6478" : "#bcd0d8" }
        }
        onTextEdited: field.edited(text)
        onAccepted: field.accepted()
    }
    Text {
        Layout.fillWidth: true
        visible: field.hint > ""
        text: field.hint
        textFormat: Text.PlainText
        color: "#566c76"
        font.pixelSize: 11 * field.unit
        wrapMode: Text.Wrap
    }
}
