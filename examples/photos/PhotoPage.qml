// One picture with what is known about it.
//
// Keys: left and right go to its neighbours, Return or E edits, Escape goes back.
import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import Zemrik.Tessaline 1.0
import "Theme.js" as Theme

FocusScope {
    id: page

    property var album
    property string name          // of the picture
    property real unit: 1
    readonly property bool wide: width >= 720 * unit
    readonly property int place: album.pictures.indexOf(name)
    readonly property bool isPicture: visible && name > "" && album.isPicture(name) && image.status !== Image.Error

    signal back()
    signal editWanted()
    signal moved(string name)

    // To the next picture or, with -1, the one before.
    function move(step) {
        const target = album.pictures[place + step];
        if (place >= 0 && target)
            moved(target);
    }

    Keys.onEscapePressed: back()
    Keys.onBackPressed: back()
    Keys.onLeftPressed: move(-1)
    Keys.onRightPressed: move(1)
    Keys.onReturnPressed: if (isPicture) editWanted()
    Keys.onEnterPressed: if (isPicture) editWanted()
    Keys.onPressed: {
        if (event.key !== Qt.Key_E || !isPicture)
            return;
        event.accepted = true;
        editWanted();
    }

    // Reads the file when the page opens: an edited picture keeps its name.
    ExifInfo {
        id: exif

        filePath: page.visible && page.name > "" ? page.album.folder.filePath(page.name) : ""
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        Bar {
            Layout.fillWidth: true
            unit: page.unit
            space: 6 * page.unit

            PushButton {
                objectName: "backButton"
                unit: page.unit
                flat: true
                text: qsTr("‹ Folder")
                onClicked: page.back()
            }
            Text {
                Layout.fillWidth: true
                objectName: "photoName"
                text: page.name
                textFormat: Text.PlainText
                color: Theme.text
                font { pixelSize: 16 * page.unit; bold: true }
                horizontalAlignment: Text.AlignHCenter
                elide: Text.ElideMiddle
            }
            PushButton {
                Layout.rightMargin: 6 * page.unit
                objectName: "editButton"
                enabled: page.isPicture
                unit: page.unit
                filled: true
                text: qsTr("Edit")
                onClicked: page.editWanted()
            }
        }

        GridLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            columns: page.wide ? 2 : 1
            columnSpacing: 0
            rowSpacing: 0

            Rectangle {
                id: stage

                Layout.fillWidth: true
                Layout.fillHeight: page.wide
                Layout.preferredHeight: page.height * 0.48
                objectName: "stage"
                color: Theme.stage
                clip: true

                Image {
                    id: image

                    anchors { fill: parent; margins: 12 * page.unit }
                    objectName: "photo"
                    source: page.visible && page.name > "" && page.album.isPicture(page.name) ? page.album.folder.fileUrl(page.name) : ""
                    // No more pixels than the screen shows, in steps, as in the grid.
                    sourceSize.width: Math.ceil(width * Screen.devicePixelRatio / 256) * 256
                    sourceSize.height: Math.ceil(height * Screen.devicePixelRatio / 256) * 256
                    fillMode: Image.PreserveAspectFit
                    asynchronous: true
                    autoTransform: true
                    cache: false
                    mipmap: true
                }
                Text {
                    anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 56 * page.unit }
                    objectName: "photoFailure"
                    visible: !page.isPicture
                    text: qsTr("This file can't be read as a picture.")
                    color: Theme.stageText
                    font.pixelSize: 15 * page.unit
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                }
                // A swipe goes to the next picture.
                MouseArea {
                    property real startX

                    anchors.fill: parent
                    onPressed: startX = mouse.x
                    onReleased: {
                        if (Math.abs(mouse.x - startX) > 60 * page.unit)
                            page.move(mouse.x < startX ? 1 : -1);
                    }
                }
                StageButton {
                    anchors { left: parent.left; leftMargin: 8 * page.unit; verticalCenter: parent.verticalCenter }
                    objectName: "previousButton"
                    visible: page.place > 0
                    unit: page.unit
                    text: "‹"
                    onClicked: page.move(-1)
                }
                StageButton {
                    anchors { right: parent.right; rightMargin: 8 * page.unit; verticalCenter: parent.verticalCenter }
                    objectName: "nextButton"
                    visible: page.place >= 0 && page.place < page.album.pictures.length - 1
                    unit: page.unit
                    text: "›"
                    onClicked: page.move(1)
                }
                Rectangle {
                    anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: 10 * page.unit }
                    width: counter.implicitWidth + 20 * page.unit
                    height: counter.implicitHeight + 8 * page.unit
                    radius: height / 2
                    visible: page.album.pictures.length > 1
                    color: "#b3000000"

                    Text {
                        id: counter

                        anchors.centerIn: parent
                        objectName: "counter"
                        text: qsTr("%1 of %2").arg(page.place + 1).arg(page.album.pictures.length)
                        color: Theme.stageText
                        font.pixelSize: 12 * page.unit
                    }
                }
            }
            TagList {
                Layout.fillWidth: !page.wide
                Layout.fillHeight: true
                Layout.preferredWidth: 330 * page.unit
                objectName: "tagList"
                unit: page.unit
                exif: exif
            }
        }
    }
}
