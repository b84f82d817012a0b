// Everything about one app, and what can be done with it.
//
// Keys: Return does the main action, Escape goes back, the arrows and the page keys scroll.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Zemrik.Tessaline 1.0
import "Format.js" as Format
import "Theme.js" as Theme

FocusScope {
    id: page

    property var info: null       // AppInfo
    property var catalogue
    property var downloads
    property var portal
    property real unit: 1
    readonly property bool narrow: width < 620 * unit
    readonly property var download: info && downloads.revision >= 0 ? downloads.of(info.itemId) : null
    readonly property bool downloading: download !== null && (download.state === "running" || download.state === "waiting")
    readonly property bool failed: download !== null && download.state === "failed"
    readonly property bool canDownload: info !== null && !downloading && !failed && (!local || info.isUpdateAvailable)
    readonly property bool local: info !== null && info.isLocal
    // What an author tells a portal about an app that isn't here yet; see docs/publishing.md.
    readonly property var told: info && info.itemInfo.properties ? info.itemInfo.properties : ({})

    signal back()
    signal startWanted(var info)
    signal signInWanted()

    // For another app than before.
    function begin() {
        flickable.contentY = 0;
        focusAction();
    }
    function focusAction() {
        const action = [ openButton, downloadButton, downloadNotice.button ].find(button => button.visible) || backButton;
        action.forceActiveFocus(Qt.TabFocusReason);
    }
    function restoreFocus() {
        if (visible)
            focusAction();
    }
    // A key that is held leaves this page alone.
    function leave(event) {
        if (!event.isAutoRepeat)
            back();
    }
    function startDownload() {
        if (portal.signedIn)
            downloads.start(info);
        else
            signInWanted();
    }

    Keys.onEscapePressed: leave(event)
    Keys.onBackPressed: leave(event)
    Keys.onPressed: {
        const steps = { [Qt.Key_Up]: -48 * unit, [Qt.Key_Down]: 48 * unit, [Qt.Key_PageUp]: -0.9 * flickable.height, [Qt.Key_PageDown]: 0.9 * flickable.height,
                        [Qt.Key_Home]: -flickable.contentHeight, [Qt.Key_End]: flickable.contentHeight };
        if (event.key in steps) {
            flickable.contentY = Math.max(0, Math.min(flickable.contentY + steps[event.key], flickable.contentHeight - flickable.height));
            event.accepted = true;
        }
    }
    // The button that had the focus may be gone when a download ends.
    onDownloadingChanged: Qt.callLater(restoreFocus)

    // Only asked whether an item lies on this machine.
    ItemPackage { id: items }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }

    Rectangle {
        id: bar

        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: 52 * page.unit
        color: Theme.surface

        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: 1
            color: Theme.line
        }
        PushButton {
            id: backButton

            anchors { left: parent.left; leftMargin: 6 * page.unit; verticalCenter: parent.verticalCenter }
            objectName: "backButton"
            unit: page.unit
            flat: true
            text: qsTr("‹ All apps")
            onClicked: page.back()
        }
        PushButton {
            anchors { right: parent.right; rightMargin: 12 * page.unit; verticalCenter: parent.verticalCenter }
            objectName: "detailsPinButton"
            visible: page.local
            unit: page.unit
            flat: true
            text: page.info && page.info.pinned ? qsTr("★ Pinned") : qsTr("☆ Pin")
            onClicked: {
                page.info.pinned = !page.info.pinned;
                page.catalogue.rebuild();
            }
        }
    }

    Flickable {
        id: flickable

        objectName: "detailsFlickable"
        anchors { left: parent.left; right: parent.right; top: bar.bottom; bottom: parent.bottom }
        contentHeight: content.height + 40 * page.unit
        onContentHeightChanged: returnToBounds()
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        ScrollBar.vertical: ScrollBar {}

        Column {
            id: content

            x: (parent.width - width) / 2
            y: 20 * page.unit
            width: Math.min(parent.width - (page.narrow ? 32 : 64) * page.unit, 820 * page.unit)
            spacing: 20 * page.unit

            GridLayout {
                width: parent.width
                columns: page.narrow ? 1 : 2
                columnSpacing: 28 * page.unit
                rowSpacing: 16 * page.unit

                Thumbnail {
                    Layout.preferredWidth: page.narrow ? content.width : 300 * page.unit
                    Layout.preferredHeight: Layout.preferredWidth * 2 / 3
                    Layout.alignment: Qt.AlignTop
                    source: page.info ? page.info.thumbnail : ""
                    title: page.info ? page.info.title : ""
                    unit: page.unit
                }

                ColumnLayout {
                    Layout.fillWidth: true
                    Layout.alignment: Qt.AlignTop
                    spacing: 8 * page.unit

                    Text {
                        Layout.fillWidth: true
                        objectName: "detailsTitle"
                        text: page.info ? page.info.title : ""
                        textFormat: Text.PlainText
                        color: Theme.text
                        font { pixelSize: 26 * page.unit; bold: true }
                        wrapMode: Text.Wrap
                    }
                    Text {
                        Layout.fillWidth: true
                        visible: text > ""
                        text: page.info ? page.info.snippet : ""
                        textFormat: Text.PlainText
                        color: Theme.secondaryText
                        font.pixelSize: 14 * page.unit
                        wrapMode: Text.Wrap
                    }
                    Flow {
                        Layout.fillWidth: true
                        visible: page.local
                        spacing: 8 * page.unit

                        Badge {
                            text: qsTr("On this device")
                            unit: page.unit
                        }
                        Badge {
                            visible: page.local && page.info.isUpdateAvailable
                            text: qsTr("Update available")
                            unit: page.unit
                        }
                        Badge {
                            visible: page.local && page.catalogue.revision >= 0 && page.catalogue.isChanged(page.info)
                            kind: "warning"
                            text: qsTr("Changed locally")
                            unit: page.unit
                        }
                    }
                    RowLayout {
                        Layout.topMargin: 6 * page.unit
                        visible: page.local && !page.downloading || page.canDownload
                        spacing: 10 * page.unit

                        PushButton {
                            id: openButton

                            objectName: "openButton"
                            visible: page.local
                            unit: page.unit
                            filled: true
                            text: qsTr("Start")
                            onClicked: page.startWanted(page.info)
                        }
                        PushButton {
                            id: downloadButton

                            objectName: "downloadButton"
                            visible: page.canDownload
                            unit: page.unit
                            filled: !page.local
                            text: page.local ? qsTr("Update") : qsTr("Download")
                            onClicked: page.startDownload()
                        }
                    }
                    ColumnLayout {
                        Layout.fillWidth: true
                        Layout.topMargin: 6 * page.unit
                        visible: page.downloading
                        spacing: 6 * page.unit

                        Text {
                            Layout.fillWidth: true
                            objectName: "downloadText"
                            text: !page.downloading ? ""
                                  : page.download.state === "waiting" ? qsTr("Waits for another download")
                                  : page.download.message > "" ? page.download.message : qsTr("Downloading the app")
                            textFormat: Text.PlainText
                            color: Theme.text
                            font.pixelSize: 13 * page.unit
                            wrapMode: Text.Wrap
                        }
                        ProgressLine {
                            Layout.fillWidth: true
                            objectName: "progressLine"
                            percentage: page.downloading ? page.download.percentage : 0
                            unknown: percentage === 0
                            unit: page.unit
                        }
                        Text {
                            text: qsTr("%1 %").arg(page.downloading ? page.download.percentage : 0)
                            color: Theme.secondaryText
                            font.pixelSize: 12 * page.unit
                        }
                    }
                    Notice {
                        id: downloadNotice

                        Layout.fillWidth: true
                        Layout.topMargin: 6 * page.unit
                        objectName: "downloadNotice"
                        visible: page.failed
                        unit: page.unit
                        failed: true
                        text: page.failed ? page.download.failure : ""
                        action: page.portal.signedIn ? qsTr("Try again") : qsTr("Sign in")
                        onTriggered: page.startDownload()
                    }
                }
            }

            Rectangle {
                width: parent.width
                height: 1
                color: Theme.line
            }

            Text {
                width: parent.width
                objectName: "description"
                visible: text > ""
                text: page.info ? page.info.description : ""
                textFormat: Text.PlainText
                color: Theme.text
                font.pixelSize: 14 * page.unit
                lineHeight: 1.25
                wrapMode: Text.Wrap
            }

            Column {
                width: parent.width
                spacing: 8 * page.unit

                DetailRow {
                    objectName: "version"
                    unit: page.unit
                    label: qsTr("Version")
                    value: page.local ? page.info.version : page.told.version ? String(page.told.version) : qsTr("known after the download")
                }
                DetailRow { objectName: "owner"; unit: page.unit; label: qsTr("Owner"); value: page.info ? page.info.owner : "" }
                DetailRow { objectName: "size"; unit: page.unit; label: qsTr("Size"); value: page.sizeText() }
                DetailRow { unit: page.unit; label: qsTr("Published"); value: page.info ? Format.date(new Date(page.info.itemInfo.modified || 0)) : "" }
                DetailRow { unit: page.unit; label: qsTr("Tags"); value: page.info ? page.info.tags.map(tag => "#" + tag).join("  ") : "" }
                DetailRow { unit: page.unit; label: qsTr("Licence"); value: page.info ? page.info.licenseInfo : "" }
                DetailRow { objectName: "needs"; unit: page.unit; label: qsTr("Needs"); value: page.needsText() }
                DetailRow { unit: page.unit; label: qsTr("Folder"); value: page.info ? page.info.path : "" }
            }
        }
    }

    function sizeText() {
        if (!info)
            return "";
        return Format.size(local ? Tessaline.fileFolder(info.path).size : info.itemInfo.size);
    }

    function needsText() {
        if (!info)
            return "";
        const toldNeeds = Array.isArray(told.dependencies) ? told.dependencies : [];
        const needs = local ? info.dependencies : toldNeeds.map(id => ({ itemId: String(id), name: String(id) }));
        if (needs.length === 0)
            return local || told.version ? qsTr("nothing else") : qsTr("known after the download");
        return needs.map(need => {
            const name = need.name || need.itemId;
            return (items.exists(need.itemId) ? qsTr("%1 (on this device)") : local ? qsTr("%1 (not on this device)") : qsTr("%1 (comes with the download)")).arg(name);
        }).join("\n");
    }
}
