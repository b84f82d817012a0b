// A name and its value in two fields, with a button that takes the row away. For a file the value is
// a path, and there is a button to choose it.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

RowLayout {
    id: row

    property real unit: 1
    property string kind       // "header", "field" or "file": also begins the names of the inputs
    property string name
    property string value

    signal nameEdited(string text)
    signal valueEdited(string text)
    signal chooseClicked()
    signal removed()

    spacing: 6 * unit

    Input {
        Layout.preferredWidth: 2
        objectName: row.kind + "Name"
        text: row.name
        placeholderText: "Name"
        onTextEdited: row.nameEdited(text)
    }
    Input {
        Layout.preferredWidth: 3
        objectName: row.kind + "Value"
        text: row.value
        placeholderText: row.kind === "file" ? "Path" : "Value"
        onTextEdited: row.valueEdited(text)
    }
    PlainButton {
        visible: row.kind === "file"
        implicitWidth: 34 * unit
        unit: row.unit
        text: "…"
        onClicked: row.chooseClicked()
    }
    PlainButton {
        objectName: row.kind + "Remove"
        implicitWidth: 26 * unit
        unit: row.unit
        color: "#566c76"
        text: "✕"
        background: null
        onClicked: row.removed()
    }

    component Input: TextField {
        id: input

        Layout.fillWidth: true
        Layout.preferredHeight: 34 * row.unit
        leftPadding: 8 * row.unit
        rightPadding: leftPadding
        color: "#15272e"
        placeholderTextColor: "#7f949d"
        font.pixelSize: 13 * row.unit
        selectByMouse: true
        autoScroll: activeFocus
        background: Rectangle {
            radius: 5 * row.unit
            color: "white"
            border { width: (input.activeFocus ? 2 : 1) * row.unit; color: input.activeFocus ? "#1c6478" : "#bcd0d8" }
        }
    }
}
