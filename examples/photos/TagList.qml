// What is known about a picture: the file, and what the camera wrote into it.
import QtQuick 2.15
import QtQuick.Controls 2.15
import "Tags.js" as Tags
import "Theme.js" as Theme

Flickable {
    id: list

    property var exif            // ExifInfo
    property real unit: 1
    readonly property var sections: [ { title: qsTr("File"), rows: fileRows() } ].concat(exif.isExifValid ? Tags.sections(exif) : [])

    contentHeight: content.height + 32 * unit
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    ScrollBar.vertical: ScrollBar {}

    Column {
        id: content

        x: 16 * list.unit
        y: 16 * list.unit
        width: list.width - 32 * list.unit
        spacing: 18 * list.unit

        Repeater {
            model: list.sections

            Column {
                width: content.width
                spacing: 7 * list.unit

                Text {
                    width: parent.width
                    text: modelData.title
                    color: Theme.accentDark
                    font { pixelSize: 15 * list.unit; bold: true }
                }
                Repeater {
                    model: modelData.rows

                    TagRow {
                        width: content.width
                        objectName: "tag " + modelData.key
                        unit: list.unit
                        name: modelData.name
                        value: modelData.value
                    }
                }
            }
        }
        Text {
            width: parent.width
            objectName: "noExif"
            visible: !list.exif.isExifValid
            text: qsTr("No camera wrote anything into this file.")
            color: Theme.secondaryText
            font.pixelSize: 13 * list.unit
            wrapMode: Text.Wrap
        }
    }

    function fileRows() {
        const rows = [ { key: "name", name: qsTr("Name"), value: exif.fileName } ];
        if (exif.exists) {
            rows.push({ key: "bytes", name: qsTr("On disk"), value: Tags.fileSize(exif.size) });
            rows.push({ key: "modified", name: qsTr("Saved"), value: Qt.formatDateTime(exif.lastModified, "yyyy-MM-dd hh:mm") });
        }
        return rows;
    }
}
