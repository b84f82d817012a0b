// Writes a message of the user's own through the script engine's console.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

Rectangle {
    id: composer

    property real unit: 1
    readonly property bool narrow: width < 560 * unit

    implicitHeight: layout.implicitHeight + hint.height + 28 * unit
    color: "#322b45"

    GridLayout {
        id: layout

        anchors { left: parent.left; right: parent.right; top: parent.top; leftMargin: 12 * composer.unit; rightMargin: 12 * composer.unit; topMargin: 10 * composer.unit }
        columns: composer.narrow ? 1 : 2
        columnSpacing: 10 * composer.unit
        rowSpacing: 8 * composer.unit

        TextField {
            id: input

            Layout.fillWidth: true
            Layout.preferredHeight: 34 * composer.unit
            leftPadding: 10 * composer.unit
            objectName: "messageField"
            text: "The map has been loaded"
            placeholderText: "A message"
            placeholderTextColor: "#8f88a8"
            color: "#f1eff7"
            font.pixelSize: 13 * composer.unit
            selectByMouse: true
            background: Rectangle {
                radius: 5 * composer.unit
                color: "#241f33"
                border { width: composer.unit; color: input.activeFocus ? "#b4a7e0" : "#5a5272" }
            }
            onAccepted: console.info(text)
        }
        RowLayout {
            Layout.fillWidth: composer.narrow
            spacing: 6 * composer.unit

            LevelButton { text: "Debug"; color: "#9aa5c4"; onClicked: console.log(input.text) }
            LevelButton { objectName: "infoButton"; text: "Info"; color: "#7fd1ae"; onClicked: console.info(input.text) }
            LevelButton { objectName: "warningButton"; text: "Warning"; color: "#f2b84b"; onClicked: console.warn(input.text) }
            LevelButton { text: "Critical"; color: "#ff7b72"; onClicked: console.error(input.text) }
        }
    }
    // Filter rules come before the log, and the player's drop what console.log says.
    Text {
        id: hint

        anchors { left: layout.left; right: layout.right; top: layout.bottom; topMargin: 8 * composer.unit }
        objectName: "debugHint"
        text: "The player drops debug messages unless it is started with QT_LOGGING_RULES='qml.debug=true'."
        color: "#a7a0bd"
        font.pixelSize: 12 * composer.unit
        wrapMode: Text.Wrap
    }

    component LevelButton: PlainButton {
        Layout.fillWidth: composer.narrow
        implicitWidth: contentItem.implicitWidth + (composer.narrow ? 8 : 20) * unit
        unit: composer.unit
    }
}
