/*
    Welcome: what an applet sees of the machine it runs on.

    Every value on the page comes from the module: the Tessaline singleton, the App root item with the
    applet's own metadata, StandardPaths, StorageInfo and Environment. The cards flow into as many
    columns as the window has room for.
*/
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Zemrik.Tessaline 1.0

App {
    id: app

    // Lengths are given in points of a 72 dpi display and scaled to this one.
    readonly property real unit: Tessaline.displayScaleFactor
    readonly property color accent: app.info ? app.info.propertyValue("accentColor", "#1b6e8c") : "#1b6e8c"
    readonly property int columnCount: Math.max(1, Math.min(3, Math.floor(width / (320 * unit))))

    // The variables of appinfo.json are in the process once this item is complete, not before.
    property bool complete: false
    Component.onCompleted: complete = true

    width: 960 * unit
    height: 720 * unit

    function gigabytes(bytes) {
        if (bytes < 0)
            return "unknown";
        return (bytes / 1e9).toFixed(bytes < 1e10 ? 1 : 0) + " GB";
    }

    Rectangle {
        anchors.fill: parent
        color: "#eef2f5"
    }

    Rectangle {
        id: banner

        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: bannerColumn.implicitHeight + 32 * app.unit
        color: app.accent

        ColumnLayout {
            id: bannerColumn

            anchors { left: parent.left; right: parent.right; margins: 16 * app.unit; verticalCenter: parent.verticalCenter }
            spacing: 2 * app.unit

            Text {
                Layout.fillWidth: true
                objectName: "title"
                text: app.info ? app.info.title : ""
                color: Tessaline.contrastColor(app.accent)
                font { pixelSize: 24 * app.unit; bold: true }
                elide: Text.ElideRight
            }

            Text {
                Layout.fillWidth: true
                text: app.info ? app.info.snippet : ""
                color: Tessaline.contrastColor(app.accent)
                opacity: 0.85
                font.pixelSize: 13 * app.unit
                wrapMode: Text.WordWrap
            }
        }
    }

    Flickable {
        id: page

        anchors { left: parent.left; right: parent.right; top: banner.bottom; bottom: parent.bottom }
        contentWidth: width
        contentHeight: cards.height + 2 * cards.anchors.margins
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        focus: true

        Keys.onUpPressed: scrollBar.decrease()
        Keys.onDownPressed: scrollBar.increase()
        ScrollBar.vertical: ScrollBar { id: scrollBar }

        Row {
            id: cards

            anchors { left: parent.left; right: parent.right; top: parent.top; margins: 12 * app.unit }
            spacing: 12 * app.unit

            Repeater {
                model: app.columnCount

                // Each column takes every n-th card, so that columns stay balanced at any count.
                Column {
                    id: cardColumn

                    readonly property int column: index

                    width: (cards.width - (app.columnCount - 1) * cards.spacing) / app.columnCount
                    spacing: cards.spacing

                    Repeater {
                        model: {
                            var mine = [];
                            for (var i = cardColumn.column; i < app.cardDocuments.length; i += app.columnCount)
                                mine.push(app.cardDocuments[i]);
                            return mine;
                        }

                        Loader {
                            width: cardColumn.width
                            sourceComponent: modelData
                        }
                    }
                }
            }
        }
    }

    readonly property var cardDocuments: [ aboutCard, versionsCard, pathsCard, environmentCard, foldersCard, volumesCard ]

    Component {
        id: aboutCard

        Card {
            title: "This app"
            unit: app.unit
            accent: app.accent

            Image {
                anchors.horizontalCenter: parent.horizontalCenter
                source: app.info.thumbnail
                sourceSize { width: 200 * app.unit; height: 133 * app.unit }
                visible: status === Image.Ready
            }
            Fact { unit: app.unit; label: "Version"; value: app.info.version }
            Fact { unit: app.unit; label: "Kind"; value: app.info.typeString }
            Fact { unit: app.unit; label: "Owner"; value: app.info.owner }
            Fact { unit: app.unit; label: "Licence"; value: app.info.licenseInfo }
            Fact { unit: app.unit; label: "Folder"; value: app.folder.path; path: true }
            Fact { unit: app.unit; label: "Settings"; value: app.settings.path; path: true }
            Repeater {
                model: app.dependencies

                Fact { unit: app.unit; label: "Needs"; value: modelData.name + "\n" + modelData.folderPath; path: true }
            }
        }
    }

    Component {
        id: versionsCard

        Card {
            title: "Versions and display"
            unit: app.unit
            accent: app.accent

            Fact { unit: app.unit; label: "Tessaline"; value: Tessaline.version }
            Fact { unit: app.unit; label: "Qt"; value: Tessaline.qtVersion }
            Fact { unit: app.unit; label: "System"; value: Tessaline.osDisplayName }
            Fact { unit: app.unit; label: "Kernel"; value: Tessaline.kernelType + " " + Tessaline.kernelVersion }
            Fact { unit: app.unit; label: "TLS"; value: Tessaline.sslLibraryVersion }
            Fact { unit: app.unit; label: "Display scale"; value: Tessaline.displayScaleFactor.toFixed(2) }
            Fact { unit: app.unit; label: "Window"; value: Math.round(app.width) + " × " + Math.round(app.height) + " pixels" }
        }
    }

    Component {
        id: pathsCard

        Card {
            title: "Paths and variables"
            unit: app.unit
            accent: app.accent

            Fact { unit: app.unit; label: "~"; value: Tessaline.resolvedPath("~"); path: true }
            Fact { unit: app.unit; label: "$TEMP"; value: Tessaline.resolvedPath("$TEMP"); path: true }
            TextField {
                id: pathField

                width: parent.width
                objectName: "pathField"
                text: "~/Zemrik"
                placeholderText: "A path such as ~/notes or $TEMP/x"
                font.pixelSize: 13 * app.unit
                selectByMouse: true
                inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
            }
            Fact { unit: app.unit; label: "resolves to"; value: Tessaline.resolvedPath(pathField.text); path: true; objectName: "resolved" }
        }
    }

    Component {
        id: foldersCard

        Card {
            title: "Standard folders"
            unit: app.unit
            accent: app.accent

            Repeater {
                model: [ StandardPaths.HomeLocation, StandardPaths.DocumentsLocation, StandardPaths.PicturesLocation,
                         StandardPaths.DownloadLocation, StandardPaths.AppDataLocation, StandardPaths.CacheLocation ]

                Fact {
                    unit: app.unit
                    label: Tessaline.standardPaths.displayName(modelData)
                    value: Tessaline.standardPaths.writableLocation(modelData)
                    path: true
                }
            }
        }
    }

    Component {
        id: volumesCard

        Card {
            title: "Volumes"
            unit: app.unit
            accent: app.accent

            StorageInfo { id: rootVolume }

            Fact { unit: app.unit; label: "Root"; value: rootVolume.isValid ? rootVolume.path + " (" + rootVolume.fileSystemType + ")" : "unknown" }
            ProgressBar {
                width: parent.width
                palette.dark: app.accent
                value: rootVolume.bytesTotal > 0 ? 1 - rootVolume.bytesAvailable / rootVolume.bytesTotal : 0
            }
            Fact { unit: app.unit; label: "Free"; value: app.gigabytes(rootVolume.bytesAvailable) + " of " + app.gigabytes(rootVolume.bytesTotal) }
            Fact { unit: app.unit; label: "Mounted"; value: rootVolume.mountedVolumes.length + " volumes" }
        }
    }

    Component {
        id: environmentCard

        Card {
            title: "Environment"
            unit: app.unit
            accent: app.accent

            Fact { unit: app.unit; label: "GREETING"; value: app.complete ? Tessaline.environment.value("GREETING", "not set") : ""; objectName: "greeting" }
            Fact { unit: app.unit; label: "HOME"; value: Tessaline.environment.value("HOME", "not set"); path: true }
            Fact { unit: app.unit; label: "LANG"; value: Tessaline.environment.value("LANG", "not set") }
            Fact { unit: app.unit; label: "Arguments"; value: app.arguments.slice(1).join(" ") || "none"; path: true }
        }
    }
}
