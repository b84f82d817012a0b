// The editor. A tool that asks for something does so in a strip above the tools.
//
// Keys: Ctrl+Z undoes, Ctrl+S saves, Escape leaves the tool or the page; in the cropping frame the
// arrows move it, Shift+arrows resize it and Return applies it.
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
    property string tool          // "", "crop", "scale", "save" or "leave"
    property string failure
    property string news          // what was done last, as long as nothing failed
    readonly property bool narrow: width < 620 * unit
    readonly property bool ready: visible && editing.picture !== null
    readonly property size pictureSize: ready ? Qt.size(editing.picture.width, editing.picture.height) : Qt.size(0, 0)

    signal back()
    signal saved(string name)

    function begin(pictureName) {
        name = pictureName;
        tool = "";
        news = "";
        const path = album.folder.filePath(name);
        exif.filePath = path;
        failure = editing.load(path, exif.imageValue(274)) ? "" : qsTr("“%1” can't be read as a picture.").arg(name);
        exif.filePath = "";
        stage.forceActiveFocus();
    }
    // An operation's result: whether it worked.
    function done(worked, words) {
        failure = worked ? "" : qsTr("That was not possible.");
        news = words;
        choose("");
    }
    function choose(wanted) {
        tool = wanted;
        if (tool === "crop") {
            cropFrame.area = Qt.rect(0, 0, 0, 0);
            cropFrame.forceActiveFocus();
        } else if (tool === "scale") {
            scaleStrip.begin();
        } else if (tool === "save") {
            saveStrip.begin(name);
        } else {
            stage.forceActiveFocus();
        }
    }
    function applyCrop() {
        if (cropFrame.area.width > 0)
            done(editing.crop(cropFrame.area), qsTr("Cropped"));
    }
    function undo() {
        editing.undo();
        done(true, qsTr("Undone"));
    }
    function save(fileName) {
        if (editing.save(album.folder, fileName)) {
            name = fileName;
            done(true, qsTr("Saved as %1").arg(fileName));
            saved(fileName);
        } else {
            failure = qsTr("“%1” could not be saved in %2.").arg(fileName).arg(album.folder.path);
        }
    }
    function leave() {
        if (tool > "")
            choose("");
        else if (editing.changed)
            choose("leave");
        else
            discard();
    }
    function discard() {
        tool = "";
        editing.close();
        back();
    }

    Keys.onEscapePressed: leave()
    Keys.onBackPressed: leave()

    Editing { id: editing }

    // Tells how the camera was held.
    ExifInfo { id: exif }

    Shortcut { sequences: [ StandardKey.Undo ]; enabled: page.ready && editing.earlier.length > 0 && page.tool === ""; onActivated: page.undo() }
    Shortcut { sequences: [ StandardKey.Save ]; enabled: page.ready && page.tool === ""; onActivated: page.choose("save") }

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
                objectName: "doneButton"
                unit: page.unit
                flat: true
                text: qsTr("‹ Picture")
                onClicked: page.leave()
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 0

                Text {
                    Layout.fillWidth: true
                    text: page.name
                    textFormat: Text.PlainText
                    color: Theme.text
                    font { pixelSize: 15 * page.unit; bold: true }
                    horizontalAlignment: Text.AlignHCenter
                    elide: Text.ElideMiddle
                }
                Text {
                    Layout.fillWidth: true
                    objectName: "editState"
                    text: page.stateText()
                    textFormat: Text.PlainText
                    color: Theme.secondaryText
                    font.pixelSize: 12 * page.unit
                    horizontalAlignment: Text.AlignHCenter
                    elide: Text.ElideMiddle
                }
            }
            PushButton {
                Layout.rightMargin: 6 * page.unit
                objectName: "saveButton"
                enabled: page.ready
                unit: page.unit
                filled: true
                text: qsTr("Save as")
                onClicked: page.choose("save")
            }
        }

        Rectangle {
            id: stage

            Layout.fillWidth: true
            Layout.fillHeight: true
            color: Theme.stage
            clip: true

            // As large as fits, but small ones not more than four times their size.
            Image {
                readonly property real room: 20 * page.unit
                readonly property real zoom: Math.min((stage.width - 2 * room) / Math.max(1, page.pictureSize.width),
                                                      (stage.height - 2 * room) / Math.max(1, page.pictureSize.height),
                                                      4 / Screen.devicePixelRatio * Math.max(1, page.unit))

                anchors.centerIn: parent
                width: Math.max(1, page.pictureSize.width * zoom)
                height: Math.max(1, page.pictureSize.height * zoom)
                objectName: "edited"
                visible: page.ready
                source: page.ready ? editing.picture.url : ""
                cache: false
                mipmap: true

                CropFrame {
                    id: cropFrame

                    anchors.fill: parent
                    objectName: "cropFrame"
                    visible: page.tool === "crop"
                    unit: page.unit
                    pictureSize: page.pictureSize
                    onAccepted: page.applyCrop()
                    onRejected: page.choose("")
                }
            }
        }

        Notice {
            Layout.fillWidth: true
            Layout.margins: 10 * page.unit
            Layout.bottomMargin: 0
            objectName: "editFailure"
            failed: true
            unit: page.unit
            text: page.failure
        }

        ScaleStrip {
            id: scaleStrip

            Layout.fillWidth: true
            Layout.margins: 10 * page.unit
            Layout.maximumWidth: 410 * page.unit
            Layout.alignment: Qt.AlignHCenter
            visible: page.tool === "scale"
            unit: page.unit
            pictureSize: page.pictureSize
            onAccepted: page.done(editing.scale(width, height), qsTr("Scaled"))
            onRejected: page.choose("")
        }
        SaveStrip {
            id: saveStrip

            Layout.fillWidth: true
            Layout.margins: 10 * page.unit
            Layout.maximumWidth: 700 * page.unit
            Layout.alignment: Qt.AlignHCenter
            visible: page.tool === "save"
            unit: page.unit
            folder: page.album.folder
            editing: editing
            onAccepted: page.save(name)
            onRejected: page.choose("")
        }
        RowLayout {
            Layout.margins: 10 * page.unit
            Layout.alignment: Qt.AlignHCenter
            visible: page.tool === "crop" || page.tool === "leave"
            spacing: 8 * page.unit

            Text {
                Layout.fillWidth: page.narrow
                Layout.rightMargin: 8 * page.unit
                objectName: "question"
                text: page.tool === "leave" ? qsTr("The changes are not saved.")
                    : cropFrame.area.width < 1 ? qsTr("Drag a rectangle over the picture.")
                    : qsTr("%1 × %2 pixels").arg(cropFrame.area.width).arg(cropFrame.area.height)
                color: Theme.text
                font.pixelSize: 13 * page.unit
                wrapMode: Text.Wrap
            }
            PushButton {
                objectName: "cropApply"
                visible: page.tool === "crop"
                enabled: cropFrame.area.width > 0
                unit: page.unit
                filled: true
                text: qsTr("Crop")
                onClicked: page.applyCrop()
            }
            PushButton {
                objectName: "discardButton"
                visible: page.tool === "leave"
                unit: page.unit
                filled: true
                text: qsTr("Discard")
                onClicked: page.discard()
            }
            PushButton {
                objectName: "cancelButton"
                unit: page.unit
                text: page.tool === "leave" ? qsTr("Keep editing") : qsTr("Cancel")
                onClicked: page.choose("")
            }
        }

        GridLayout {
            Layout.fillWidth: true
            Layout.maximumWidth: 720 * page.unit
            Layout.alignment: Qt.AlignHCenter
            Layout.margins: 6 * page.unit
            columns: page.narrow ? 4 : 8
            columnSpacing: 4 * page.unit
            rowSpacing: 2 * page.unit
            enabled: page.ready

            ToolButton {
                Layout.fillWidth: true
                objectName: "rotateLeft"
                unit: page.unit
                sign: "↺"
                text: qsTr("Left")
                onClicked: page.done(editing.rotate(-90), qsTr("Turned left"))
            }
            ToolButton {
                Layout.fillWidth: true
                objectName: "rotateRight"
                unit: page.unit
                sign: "↻"
                text: qsTr("Right")
                onClicked: page.done(editing.rotate(90), qsTr("Turned right"))
            }
            ToolButton {
                Layout.fillWidth: true
                objectName: "mirrorHorizontally"
                unit: page.unit
                sign: "↔"
                text: qsTr("Mirror")
                onClicked: page.done(editing.mirror(true, false), qsTr("Mirrored"))
            }
            ToolButton {
                Layout.fillWidth: true
                objectName: "mirrorVertically"
                unit: page.unit
                sign: "↕"
                text: qsTr("Flip")
                onClicked: page.done(editing.mirror(false, true), qsTr("Flipped"))
            }
            ToolButton {
                Layout.fillWidth: true
                objectName: "crop"
                unit: page.unit
                sign: "⬚"
                text: qsTr("Crop")
                active: page.tool === "crop"
                onClicked: page.choose(active ? "" : "crop")
            }
            ToolButton {
                Layout.fillWidth: true
                objectName: "scale"
                unit: page.unit
                sign: "⤢"
                text: qsTr("Scale")
                active: page.tool === "scale"
                onClicked: page.choose(active ? "" : "scale")
            }
            ToolButton {
                Layout.fillWidth: true
                objectName: "invert"
                unit: page.unit
                sign: "◐"
                text: qsTr("Invert")
                onClicked: page.done(editing.invert(), qsTr("Inverted"))
            }
            ToolButton {
                Layout.fillWidth: true
                objectName: "undo"
                enabled: editing.earlier.length > 0
                unit: page.unit
                sign: "↶"
                text: qsTr("Undo")
                onClicked: page.undo()
            }
        }
    }

    function stateText() {
        if (!ready)
            return "";
        const parts = [ qsTr("%1 × %2 pixels").arg(pictureSize.width).arg(pictureSize.height) ];
        if (news > "")
            parts.push(news);
        return parts.join("  ·  ");
    }
}
