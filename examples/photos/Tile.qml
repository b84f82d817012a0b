// A picture or a folder in the grid.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import "Theme.js" as Theme

ItemDelegate {
    id: tile

    property string name
    property bool isFolder: false
    property bool isPicture: true    // of a file: whether it can be shown
    property url source
    property bool selected: false
    property real unit: 1

    padding: 6 * unit
    focusPolicy: Qt.NoFocus          // the grid has it

    background: Rectangle {
        radius: 8 * tile.unit
        color: tile.down ? Theme.accentLight : Theme.surface
        border {
            width: tile.selected ? 2 * tile.unit : 1
            color: tile.selected ? Theme.accent : tile.hovered ? Theme.outline : Theme.line
        }
    }
    contentItem: Item {
        Rectangle {
            id: frame

            anchors { left: parent.left; right: parent.right; top: parent.top; bottom: label.top; bottomMargin: 4 * tile.unit }
            radius: 4 * tile.unit
            color: tile.isFolder ? "transparent" : Theme.page

            Image {
                id: image

                anchors.fill: parent
                objectName: "tileImage"
                visible: status === Image.Ready
                source: tile.isPicture ? tile.source : ""
                // As many of the screen's pixels as it shows, in steps, so that a window that is being
                // resized doesn't decode anew all the time.
                sourceSize.width: Math.ceil(width * Screen.devicePixelRatio / 64) * 64
                sourceSize.height: Math.ceil(height * Screen.devicePixelRatio / 64) * 64
                fillMode: Image.PreserveAspectCrop
                asynchronous: true
                autoTransform: true
                cache: false     // an edited picture keeps its name
                mipmap: true
            }
            // A folder, drawn.
            Item {
                anchors.centerIn: parent
                visible: tile.isFolder
                width: Math.min(parent.width, parent.height) * 0.62
                height: width * 0.76

                Rectangle {
                    width: parent.width * 0.44
                    height: parent.height * 0.3
                    radius: 4 * tile.unit
                    color: "#a58bc9"
                }
                Rectangle {
                    anchors { fill: parent; topMargin: parent.height * 0.13 }
                    radius: 4 * tile.unit
                    color: "#bfa9dd"
                }
            }
            Text {
                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 8 * tile.unit }
                objectName: "tileText"
                visible: !tile.isFolder && (!tile.isPicture || image.status === Image.Error)
                text: qsTr("Can't be read")
                color: Theme.bad
                font.pixelSize: 12 * tile.unit
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
            }
        }
        Text {
            id: label

            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            text: tile.name
            textFormat: Text.PlainText
            color: Theme.text
            font { pixelSize: 12 * tile.unit; bold: tile.isFolder }
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideMiddle
        }
    }
}
