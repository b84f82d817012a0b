// The folder: its folders and pictures in a grid.
//
// Keys: arrows choose, Return opens, Backspace goes up, F5 reads the folder anew.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "Theme.js" as Theme

FocusScope {
    id: page

    property var album
    property real unit: 1
    readonly property bool narrow: width < 620 * unit
    readonly property real space: (narrow ? 12 : 20) * unit

    signal opened(string name)
    signal chooserWanted()

    function focusGrid() {
        grid.forceActiveFocus();
    }
    // The picture or folder becomes the current one.
    function select(name) {
        const place = album.entries.findIndex(entry => entry.name === name);
        grid.currentIndex = Math.max(0, place);
        grid.positionViewAtIndex(grid.currentIndex, GridView.Contain);
    }
    function goUp() {
        const from = album.folder.folderName;
        if (album.up())
            select(from);
        focusGrid();
    }
    function openEntry(entry) {
        if (!entry.isFolder)
            opened(entry.name);
        else if (album.open(album.folder.filePath(entry.name)))
            select("");
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        Bar {
            Layout.fillWidth: true
            unit: page.unit
            space: page.space

            Text {
                Layout.fillWidth: page.narrow
                text: qsTr("Photos")
                color: Theme.text
                font { pixelSize: 22 * page.unit; bold: true }
            }
            FolderRow {
                Layout.fillWidth: true
                Layout.leftMargin: 12 * page.unit
                visible: !page.narrow
                page: page
            }
            PushButton {
                objectName: "chooserButton"
                unit: page.unit
                text: qsTr("Choose…")
                onClicked: page.chooserWanted()

                ToolTip.visible: hovered
                ToolTip.delay: 600
                ToolTip.text: qsTr("Choose one of the pictures folder")
            }
        }

        FolderRow {
            Layout.fillWidth: true
            Layout.margins: page.space
            Layout.bottomMargin: 0
            visible: page.narrow
            page: page
        }
        Notice {
            Layout.fillWidth: true
            Layout.margins: page.space
            Layout.bottomMargin: 0
            objectName: "folderFailure"
            failed: true
            unit: page.unit
            text: page.album.failure
        }
        Text {
            Layout.fillWidth: true
            Layout.leftMargin: page.space
            Layout.rightMargin: page.space
            Layout.topMargin: 10 * page.unit
            objectName: "summary"
            text: page.summary()
            color: Theme.secondaryText
            font.pixelSize: 13 * page.unit
            elide: Text.ElideRight
        }

        GridView {
            id: grid

            readonly property int columns: Math.max(2, Math.floor(width / ((page.narrow ? 108 : 168) * page.unit)))

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.leftMargin: page.space - 4 * page.unit
            Layout.rightMargin: page.space - 4 * page.unit
            Layout.topMargin: 6 * page.unit
            objectName: "grid"
            focus: true
            clip: true
            model: page.album.entries
            cellWidth: Math.floor(width / columns)
            cellHeight: Math.round(cellWidth * 0.86 + 20 * page.unit)
            cacheBuffer: 0       // what is out of sight isn't decoded
            boundsBehavior: Flickable.StopAtBounds
            bottomMargin: 12 * page.unit
            highlightMoveDuration: 120
            ScrollBar.vertical: ScrollBar {}

            delegate: Item {
                width: grid.cellWidth
                height: grid.cellHeight

                Tile {
                    anchors { fill: parent; margins: 4 * page.unit }
                    objectName: "tile " + modelData.name
                    unit: page.unit
                    name: modelData.name
                    isFolder: modelData.isFolder
                    isPicture: !modelData.isFolder && page.album.isPicture(modelData.name)
                    source: isFolder || !page.visible ? "" : page.album.folder.fileUrl(modelData.name)
                    selected: grid.activeFocus && grid.currentIndex === index
                    onClicked: {
                        grid.currentIndex = index;
                        grid.forceActiveFocus();
                        page.openEntry(modelData);
                    }
                }
            }

            Keys.onReturnPressed: openCurrent()
            Keys.onEnterPressed: openCurrent()
            Keys.onPressed: {
                if (event.key === Qt.Key_Backspace || event.key === Qt.Key_Up && event.modifiers & Qt.AltModifier)
                    page.goUp();
                else if (event.key === Qt.Key_Home)
                    currentIndex = 0;
                else if (event.key === Qt.Key_End)
                    currentIndex = count - 1;
                else
                    return;
                event.accepted = true;
            }

            function openCurrent() {
                if (currentIndex >= 0 && currentIndex < count)
                    page.openEntry(page.album.entries[currentIndex]);
            }

            Column {
                anchors.centerIn: parent
                width: Math.min(parent.width - 40 * page.unit, 360 * page.unit)
                visible: grid.count === 0
                spacing: 6 * page.unit

                Text {
                    width: parent.width
                    objectName: "emptyText"
                    text: qsTr("No pictures here")
                    color: Theme.text
                    font { pixelSize: 16 * page.unit; bold: true }
                    horizontalAlignment: Text.AlignHCenter
                }
                Text {
                    width: parent.width
                    text: qsTr("Go up, or type the path of another folder above.")
                    color: Theme.secondaryText
                    font.pixelSize: 14 * page.unit
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                }
            }
        }
    }

    Shortcut { sequences: [ StandardKey.Refresh ]; enabled: page.visible; onActivated: page.album.read() }

    function summary() {
        const pictures = album.pictures.length, folders = album.folders.length;
        const parts = [ pictures === 0 ? qsTr("No pictures in this folder") : pictures === 1 ? qsTr("1 picture") : qsTr("%1 pictures").arg(pictures) ];
        if (folders > 0)
            parts.push(folders === 1 ? qsTr("1 folder") : qsTr("%1 folders").arg(folders));
        return parts.join("  ·  ");
    }
}
