// The way up and the folder's path, which can be typed.
import QtQuick 2.15
import QtQuick.Layouts 1.15

RowLayout {
    id: row

    property var page   // GridPage

    spacing: 8 * page.unit

    PushButton {
        objectName: row.visible ? "upButton" : ""
        enabled: row.page.album.folder.path !== "/"
        unit: row.page.unit
        text: qsTr("↑ Up")
        onClicked: row.page.goUp()
    }
    Field {
        id: field

        Layout.fillWidth: true
        objectName: row.visible ? "pathField" : ""
        unit: row.page.unit
        text: row.page.album.folder.path
        placeholderText: qsTr("A folder's path")
        onAccepted: {
            if (text.trim() > "" && row.page.album.open(text.trim()))
                row.page.select("");
            if (row.page.album.failure === "")
                restore();
        }
        Keys.onEscapePressed: {
            row.page.album.failure = "";
            restore();
        }

        // Typing ends the binding.
        function restore() {
            text = Qt.binding(() => row.page.album.folder.path);
            row.page.focusGrid();
        }
    }
}
