// Asks for the name of the file to write.
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "Theme.js" as Theme

GridLayout {
    id: strip

    property var folder           // FileFolder
    property var editing          // Editing
    property real unit: 1
    readonly property bool narrow: width < 520 * unit
    readonly property string name: field.text.trim()
    readonly property bool nameless: name === "" || name.includes("/") || name === "." || name === ".."
    readonly property bool unknown: !nameless && !editing.canWrite(name)
    property bool taken: false    // a file of that name is there

    signal accepted(string name)
    signal rejected()

    columns: narrow ? 1 : 2
    columnSpacing: 8 * unit
    rowSpacing: 8 * unit

    function begin(pictureName) {
        field.text = pictureName.replace(/(-edited)?(\.[^.]*)$/, "-edited$2");
        update();
        field.forceActiveFocus();
        field.select(0, Math.max(0, field.text.lastIndexOf(".")));
    }
    function update() {
        taken = name > "" && folder.fileExists(name);
    }
    function accept() {
        if (!nameless && !unknown)
            accepted(name);
    }

    onNameChanged: update()
    Keys.onEscapePressed: rejected()

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 4 * strip.unit

        Field {
            id: field

            Layout.fillWidth: true
            objectName: "nameField"
            unit: strip.unit
            onAccepted: strip.accept()
        }
        Text {
            Layout.fillWidth: true
            objectName: "saveHint"
            text: strip.nameless ? qsTr("A name is needed, without “/”.")
                : strip.unknown ? qsTr("The name must end in a format such as .jpg or .png.")
                : strip.taken ? qsTr("This file is there already and will be replaced.")
                : qsTr("In %1, without what the camera wrote.").arg(strip.folder.path)
            textFormat: Text.PlainText
            color: strip.nameless || strip.unknown || strip.taken ? Theme.bad : Theme.secondaryText
            font.pixelSize: 12 * strip.unit
            elide: Text.ElideMiddle
        }
    }
    RowLayout {
        Layout.alignment: Qt.AlignTop | (strip.narrow ? Qt.AlignRight : 0)
        spacing: 8 * strip.unit

        PushButton {
            objectName: "saveApply"
            enabled: !strip.nameless && !strip.unknown
            unit: strip.unit
            filled: true
            text: strip.taken ? qsTr("Replace") : qsTr("Save")
            onClicked: strip.accept()
        }
        PushButton {
            objectName: "saveCancel"
            unit: strip.unit
            text: qsTr("Cancel")
            onClicked: strip.rejected()
        }
    }
}
