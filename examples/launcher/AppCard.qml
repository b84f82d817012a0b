// One app in the grid.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "Format.js" as Format
import "Theme.js" as Theme

ItemDelegate {
    id: card

    property var info            // AppInfo
    property var download: null  // the app's Download, if there is one
    property bool changed: false
    property bool selected: false
    property real unit: 1

    readonly property bool downloading: download !== null && (download.state === "running" || download.state === "waiting")
    readonly property bool failed: download !== null && download.state === "failed"
    readonly property string stateText: failed ? qsTr("Download failed") : info.isLocal ? qsTr("On this device") : qsTr("On the portal")
    readonly property real pictureHeight: (width - 16 * unit) * 2 / 3

    signal pinToggled()

    implicitHeight: pictureHeight + 108 * unit
    padding: 8 * unit
    focusPolicy: Qt.NoFocus      // the grid has it

    Accessible.role: Accessible.ListItem
    Accessible.name: [ Format.line(info.title), downloading ? qsTr("Downloading") : stateText ].concat(
                         info.isUpdateAvailable ? qsTr("Update available") : [], changed ? qsTr("Changed locally") : [], info.pinned ? qsTr("Pinned") : []).join(", ")
    Accessible.description: info.snippet
    Accessible.selected: selected

    background: Rectangle {
        radius: 10 * card.unit
        color: card.down ? Theme.accentLight : Theme.surface
        border {
            width: card.selected ? 2 * card.unit : 1
            color: card.selected ? Theme.accent : card.hovered ? "#a9b8da" : Theme.line
        }
    }
    contentItem: ColumnLayout {
        spacing: 3 * card.unit

        Thumbnail {
            Layout.fillWidth: true
            Layout.preferredHeight: card.pictureHeight
            source: card.info.thumbnail
            title: card.info.title
            unit: card.unit

            Badge {
                anchors { left: parent.left; top: parent.top; margins: 6 * card.unit }
                objectName: "updateBadge"
                visible: card.info.isUpdateAvailable
                kind: "good"
                text: qsTr("Update available")
                unit: card.unit
            }
            Badge {
                anchors { left: parent.left; top: parent.top; margins: 6 * card.unit }
                objectName: "changedBadge"
                visible: card.changed
                kind: "warning"
                text: qsTr("Changed locally")
                unit: card.unit
            }
            AbstractButton {
                anchors { right: parent.right; bottom: parent.bottom; margins: 4 * card.unit }
                width: 34 * card.unit
                height: width
                objectName: "pinButton"
                visible: card.info.isLocal && (card.info.pinned || card.hovered || hovered || card.selected)
                focusPolicy: Qt.NoFocus
                Accessible.role: Accessible.Button
                Accessible.name: card.info.pinned ? qsTr("Unpin") : qsTr("Pin")
                onClicked: card.pinToggled()

                background: Rectangle {
                    anchors.fill: parent
                    anchors.margins: 3 * card.unit
                    radius: width / 2
                    color: "white"
                    opacity: 0.92
                }
                contentItem: Text {
                    text: card.info.pinned ? "★" : "☆"
                    color: card.info.pinned ? Theme.warning : Theme.text
                    font.pixelSize: 17 * card.unit
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                }
            }
        }
        Text {
            Layout.fillWidth: true
            Layout.topMargin: 4 * card.unit
            text: Format.line(card.info.title)
            textFormat: Text.PlainText
            color: Theme.text
            font { pixelSize: 14 * card.unit; bold: true }
            elide: Text.ElideRight
        }
        Text {
            Layout.fillWidth: true
            Layout.fillHeight: true
            text: card.info.snippet
            textFormat: Text.PlainText
            color: Theme.secondaryText
            font.pixelSize: 12 * card.unit
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
        }
        Text {
            Layout.fillWidth: true
            visible: !card.downloading
            text: card.stateText
            color: card.failed ? Theme.bad : card.info.isLocal ? Theme.good : Theme.accentDark
            font { pixelSize: 12 * card.unit; bold: true }
            elide: Text.ElideRight
        }
        ProgressLine {
            Layout.fillWidth: true
            Layout.bottomMargin: 4 * card.unit
            visible: card.downloading
            percentage: card.download ? card.download.percentage : 0
            unknown: card.downloading && card.download.percentage === 0
            unit: card.unit
        }
    }
}
