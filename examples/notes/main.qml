/*
    Notes: list, edit and save notes.

    A note is two files in a folder below the user's home: its text as "<name>.txt" and its colour and
    title as "<name>.json". The folder is a FileFolder. What the user prefers (text size, sort order) are declared
    properties of a Settings element, which persist by themselves; the last open note is in App.settings,
    the app's own settings file.
*/
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Zemrik.Tessaline 1.0

App {
    id: app

    readonly property real unit: Tessaline.displayScaleFactor
    readonly property color accent: "#8a5a16"
    readonly property bool wide: width >= 600 * unit
    readonly property var colors: [ "#f6d55c", "#9bd19b", "#8ecae6", "#f4a6a6" ]
    property string current          // base name of the open note; empty: none
    property bool modified: false
    property string failure          // what went wrong last, shown below the editor

    width: 900 * unit
    height: 640 * unit

    Component.onCompleted: {
        notes.folder.makeFolder();
        notes.reload();
        const last = app.settings.value("lastNote", "");
        if (last > "" && notes.folder.fileExists(last + ".json"))
            notes.open(last);
    }
    Component.onDestruction: if (modified) notes.save()

    Settings {
        id: preferences

        property int textSize: 14
        property bool newestFirst: true
    }

    // The notes on disk.
    QtObject {
        id: notes

        readonly property FileFolder folder: Tessaline.fileFolder("~/Zemrik/Notes")
        property var entries: []   // name, title, colour and the beginning of the text of each note

        function reload() {
            const found = folder.fileNames("*.json").map(fileName => {
                const name = fileName.slice(0, -5);
                const note = details(name);
                return {
                    name: name,
                    title: note.title || name,
                    color: app.colors[(note.color || 0) % app.colors.length],
                    preview: folder.readTextFile(name + ".txt").slice(0, 80)
                };
            });
            entries = preferences.newestFirst ? found.reverse() : found;
        }
        function details(name) {
            return folder.readJsonFile(name + ".json");
        }
        function create() {
            save();
            const name = "note-" + Date.now();
            failure = "";
            if (!folder.writeTextFile(name + ".txt", "") || !folder.writeJsonFile(name + ".json", { title: "New note", color: 0 })) {
                failure = "The note could not be made in " + folder.path;
                return;
            }
            reload();
            open(name);
            titleField.forceActiveFocus();
            titleField.selectAll();
        }
        function open(name) {
            if (name === current)
                return;
            save();
            const note = details(name);
            current = name;
            titleField.text = note.title || name;
            colorRow.index = note.color || 0;
            editor.text = folder.readTextFile(name + ".txt");
            modified = false;
            app.settings.setValue("lastNote", name);
            app.settings.synchronize();
        }
        function save() {
            if (current === "" || !modified)
                return true;
            const written = folder.writeTextFile(current + ".txt", editor.text)
                && folder.writeJsonFile(current + ".json", { title: titleField.text, color: colorRow.index });
            failure = written ? "" : "The note could not be saved in " + folder.path;
            modified = !written;
            reload();
            return written;
        }
        function removeCurrent() {
            folder.removeFile(current + ".txt");
            folder.removeFile(current + ".json");
            close();
            reload();
        }
        function close() {
            current = "";
            modified = false;
            app.settings.remove("lastNote");
        }
    }

    // Saves a moment after the last key, and at once when another note is opened.
    Timer {
        id: autoSave

        interval: 600
        onTriggered: notes.save()
    }

    Shortcut { sequence: StandardKey.New; onActivated: notes.create() }
    Shortcut { sequence: StandardKey.Save; onActivated: notes.save() }

    Rectangle {
        anchors.fill: parent
        color: "#f7f4ee"
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        // The list: beside the editor, or instead of it in a narrow window.
        Rectangle {
            Layout.fillHeight: true
            Layout.fillWidth: !app.wide
            Layout.preferredWidth: app.wide ? 260 * app.unit : app.width
            visible: app.wide || app.current === ""
            color: "#efe8da"

            ColumnLayout {
                anchors.fill: parent
                spacing: 0

                Rectangle {
                    Layout.fillWidth: true
                    Layout.preferredHeight: 52 * app.unit
                    color: app.accent

                    RowLayout {
                        anchors { fill: parent; leftMargin: 14 * app.unit; rightMargin: 8 * app.unit }
                        spacing: 4 * app.unit

                        Text {
                            Layout.fillWidth: true
                            text: "Notes"
                            color: "white"
                            font { pixelSize: 20 * app.unit; bold: true }
                        }
                        BarButton {
                            unit: app.unit
                            text: preferences.newestFirst ? "Newest first" : "Oldest first"
                            onClicked: {
                                preferences.newestFirst = !preferences.newestFirst;
                                notes.reload();
                            }
                        }
                        BarButton {
                            objectName: "newButton"
                            unit: app.unit
                            text: "New"
                            filled: true
                            onClicked: notes.create()
                        }
                    }
                }

                ListView {
                    id: list

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    objectName: "noteList"
                    model: notes.entries
                    clip: true
                    boundsBehavior: Flickable.StopAtBounds
                    ScrollBar.vertical: ScrollBar {}

                    delegate: NoteItem {
                        objectName: "noteItem"
                        width: list.width
                        unit: app.unit
                        title: modelData.title
                        preview: modelData.preview
                        tint: modelData.color
                        selected: modelData.name === app.current
                        onClicked: notes.open(modelData.name)
                    }

                    Text {
                        anchors.centerIn: parent
                        width: parent.width - 40 * app.unit
                        visible: list.count === 0
                        text: "No notes yet.\nPress New to write one."
                        horizontalAlignment: Text.AlignHCenter
                        wrapMode: Text.Wrap
                        color: "#7a6f5d"
                        font.pixelSize: 14 * app.unit
                    }
                }
            }
        }

        // The editor.
        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: app.wide || app.current > ""
            spacing: 0

            Rectangle {
                Layout.fillWidth: true
                Layout.preferredHeight: 52 * app.unit
                color: app.current > "" ? app.colors[colorRow.index] : "#e4dccb"

                RowLayout {
                    anchors { fill: parent; leftMargin: 8 * app.unit; rightMargin: 8 * app.unit }
                    spacing: 6 * app.unit

                    BarButton {
                        objectName: "backButton"
                        visible: !app.wide
                        unit: app.unit
                        dark: true
                        text: "‹ Back"
                        onClicked: if (notes.save()) notes.close()
                    }
                    TextField {
                        id: titleField

                        Layout.fillWidth: true
                        objectName: "titleField"
                        enabled: app.current > ""
                        placeholderText: enabled ? "Title" : ""
                        font { pixelSize: 16 * app.unit; bold: true }
                        color: "#2b2418"
                        background: null
                        selectByMouse: true
                        onTextEdited: {
                            app.modified = true;
                            autoSave.restart();
                        }
                        onAccepted: editor.forceActiveFocus()
                    }
                    BarButton {
                        objectName: "deleteButton"
                        visible: app.current > ""
                        unit: app.unit
                        dark: true
                        text: "Delete"
                        onClicked: notes.removeCurrent()
                    }
                }
            }

            ScrollView {
                Layout.fillWidth: true
                Layout.fillHeight: true
                visible: app.current > ""
                clip: true

                TextArea {
                    id: editor

                    objectName: "editor"
                    padding: 14 * app.unit
                    font.pixelSize: preferences.textSize * app.unit
                    wrapMode: TextEdit.Wrap
                    selectByMouse: true
                    color: "#2b2418"
                    placeholderText: "Write here. Notes save themselves."
                    background: null
                    onTextChanged: {
                        if (!activeFocus)
                            return;
                        app.modified = true;
                        autoSave.restart();
                    }
                }
            }

            Item {
                Layout.fillWidth: true
                Layout.fillHeight: true
                visible: app.current === ""

                Text {
                    anchors.centerIn: parent
                    text: "Choose a note, or press New."
                    color: "#7a6f5d"
                    font.pixelSize: 15 * app.unit
                }
            }

            Rectangle {
                Layout.fillWidth: true
                Layout.preferredHeight: 44 * app.unit
                color: "#efe8da"

                RowLayout {
                    anchors { fill: parent; leftMargin: 14 * app.unit; rightMargin: 8 * app.unit }
                    spacing: 8 * app.unit

                    Row {
                        id: colorRow

                        property int index: 0

                        visible: app.current > ""
                        spacing: 8 * app.unit

                        Repeater {
                            model: app.colors

                            Rectangle {
                                width: 22 * app.unit
                                height: width
                                radius: width / 2
                                color: modelData
                                border { width: (colorRow.index === index ? 3 : 1) * app.unit; color: "#2b2418" }

                                MouseArea {
                                    anchors { fill: parent; margins: -4 * app.unit }
                                    onClicked: {
                                        colorRow.index = index;
                                        app.modified = true;
                                        notes.save();
                                    }
                                }
                            }
                        }
                    }

                    Text {
                        Layout.fillWidth: true
                        objectName: "state"
                        text: app.failure > "" ? app.failure : app.current === "" ? "" : app.modified ? "Saving…" : "Saved"
                        color: app.failure > "" ? "#b3261e" : "#7a6f5d"
                        elide: Text.ElideRight
                        horizontalAlignment: Text.AlignRight
                        font.pixelSize: 12 * app.unit
                    }
                    BarButton {
                        unit: app.unit
                        dark: true
                        text: "A−"
                        enabled: preferences.textSize > 10
                        onClicked: preferences.textSize -= 2
                    }
                    BarButton {
                        objectName: "largerButton"
                        unit: app.unit
                        dark: true
                        text: "A+"
                        enabled: preferences.textSize < 32
                        onClicked: preferences.textSize += 2
                    }
                }
            }
        }
    }
}
