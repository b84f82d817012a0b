// Asks for a new size in pixels.
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "Theme.js" as Theme

RowLayout {
    id: strip

    property size pictureSize
    property real unit: 1
    readonly property int newWidth: parseInt(widthField.text) || 0
    readonly property int newHeight: parseInt(heightField.text) || 0
    // As many as fit into 400 MB.
    readonly property bool valid: newWidth > 0 && newHeight > 0 && newWidth * newHeight <= 1e8

    signal accepted(int width, int height)
    signal rejected()

    spacing: 8 * unit

    function begin() {
        widthField.text = pictureSize.width;
        heightField.text = pictureSize.height;
        widthField.forceActiveFocus();
        widthField.selectAll();
    }
    function accept() {
        if (valid)
            accepted(newWidth, newHeight);
    }

    Keys.onEscapePressed: rejected()

    // Each follows the other, so that the proportions stay.
    Field {
        id: widthField

        Layout.fillWidth: true
        Layout.maximumWidth: 110 * strip.unit
        objectName: "widthField"
        unit: strip.unit
        inputMethodHints: Qt.ImhDigitsOnly
        validator: IntValidator { bottom: 1; top: 30000 }
        onTextEdited: heightField.text = Math.max(1, Math.round((parseInt(text) || 0) * strip.pictureSize.height / strip.pictureSize.width))
        onAccepted: strip.accept()
    }
    Text {
        text: "×"
        color: Theme.text
        font.pixelSize: 15 * strip.unit
    }
    Field {
        id: heightField

        Layout.fillWidth: true
        Layout.maximumWidth: 110 * strip.unit
        objectName: "heightField"
        unit: strip.unit
        inputMethodHints: Qt.ImhDigitsOnly
        validator: IntValidator { bottom: 1; top: 30000 }
        onTextEdited: widthField.text = Math.max(1, Math.round((parseInt(text) || 0) * strip.pictureSize.width / strip.pictureSize.height))
        onAccepted: strip.accept()
    }
    PushButton {
        objectName: "scaleApply"
        enabled: strip.valid
        unit: strip.unit
        filled: true
        text: qsTr("Scale")
        onClicked: strip.accept()
    }
    PushButton {
        objectName: "scaleCancel"
        unit: strip.unit
        text: qsTr("Cancel")
        onClicked: strip.rejected()
    }
}
