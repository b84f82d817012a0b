/*
    Logging: what Tessaline.logging can do, and what comes out of it.

    Start opens the chosen target and takes over the messages of the whole process; from then on each
    console.log() here, and each message of the library and of Qt, becomes a record. The right half
    reads the file back while it grows. What the user has set up stays in a Settings element.
*/
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Zemrik.Tessaline 1.0

App {
    id: app

    readonly property real unit: Tessaline.displayScaleFactor
    readonly property color accent: "#5b4b8a"
    readonly property bool wide: width >= 720 * unit
    readonly property Logging logging: Tessaline.logging
    property bool showsLog: false    // of the two pages of a narrow window
    property string failure

    width: 1000 * unit
    height: 680 * unit

    Component.onCompleted: view.restart()
    Component.onDestruction: logging.enabled = false   // closes the file with its last row

    Settings {
        id: preferences

        property int target: 0   // 0 a file of its own, 1 a file by name, 2 a collector
        property string file: "~/Zemrik/logging-example.log"
        property string collector: "127.0.0.1:514"
        property bool append: false
        property bool oldForm: false
        property string name
        property string userData
    }

    Binding { target: app.logging; property: "name"; value: preferences.name }
    Binding { target: app.logging; property: "userData"; value: preferences.userData }

    function location() {
        switch (preferences.target) {
        case 1:
            return Tessaline.resolvedPathUrl(preferences.file);
        case 2:
            return (preferences.oldForm ? "syslog0://" : "syslog://") + preferences.collector;
        default:
            return "";
        }
    }
    function start() {
        failure = "";
        logging.outputLocation = location();
        logging.append = preferences.append;
        logging.enabled = true;
        if (!logging.enabled)
            failure = preferences.target === 2 ? "There is no collector by the name " + preferences.collector
                                               : "The file can't be opened: " + logging.outputLocation;
        view.restart();
    }
    function stop() {
        logging.enabled = false;
    }

    Rectangle {
        anchors.fill: parent
        color: "#f4f2f9"
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        // Title, state, start and stop.
        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.round(60 * app.unit)
            color: app.accent

            RowLayout {
                anchors { fill: parent; leftMargin: 16 * app.unit; rightMargin: 12 * app.unit }
                spacing: 12 * app.unit

                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 0

                    Text {
                        text: "Logging"
                        color: "white"
                        font { pixelSize: 20 * app.unit; bold: true }
                    }
                    Text {
                        Layout.fillWidth: true
                        objectName: "state"
                        text: !app.logging.enabled ? "Off" : view.readable ? "Writing a file" : "Sending to " + preferences.collector
                        color: "#d9d2ee"
                        font.pixelSize: 12 * app.unit
                        elide: Text.ElideRight
                    }
                }
                PlainButton {
                    objectName: "startButton"
                    unit: app.unit
                    color: "#f4f2f9"
                    filled: !app.logging.enabled
                    text: app.logging.enabled ? "Stop" : "Start"
                    onClicked: app.logging.enabled ? app.stop() : app.start()
                }
            }
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: failureText.implicitHeight + 16 * app.unit
            visible: app.failure > ""
            color: "#fbe3e1"

            Text {
                id: failureText

                anchors { fill: parent; leftMargin: 16 * app.unit; rightMargin: 16 * app.unit }
                objectName: "failure"
                text: app.failure
                textFormat: Text.PlainText
                color: "#8c1d18"
                font.pixelSize: 13 * app.unit
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                verticalAlignment: Text.AlignVCenter
            }
        }

        Choice {
            Layout.fillWidth: true
            Layout.margins: 8 * app.unit
            objectName: "pages"
            visible: !app.wide
            unit: app.unit
            names: [ "Set-up", "Log" ]
            index: app.showsLog ? 1 : 0
            onChosen: app.showsLog = index === 1
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 0

            // What to do.
            Flickable {
                id: setup

                Layout.fillHeight: true
                Layout.fillWidth: !app.wide
                Layout.preferredWidth: app.wide ? 380 * app.unit : app.width
                visible: app.wide || !app.showsLog
                contentHeight: sections.height + 32 * app.unit
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: ScrollBar {}

                ColumnLayout {
                    id: sections

                    x: 16 * app.unit
                    y: 16 * app.unit
                    width: setup.width - 32 * app.unit
                    spacing: 24 * app.unit

                    Section {
                        Layout.fillWidth: true
                        unit: app.unit
                        title: "Where it goes"

                        Choice {
                            Layout.fillWidth: true
                            enabled: !app.logging.enabled
                            unit: app.unit
                            names: [ "Own file", "File", "Collector" ]
                            index: preferences.target
                            onChosen: {
                                preferences.target = index;
                                app.failure = "";
                            }
                        }
                        Text {
                            Layout.fillWidth: true
                            visible: preferences.target === 0
                            text: "A file below ~/Zemrik/Halvora/Logs, named after the application."
                            color: "#6b6480"
                            font.pixelSize: 12 * app.unit
                            wrapMode: Text.Wrap
                        }
                        Field {
                            Layout.fillWidth: true
                            visible: preferences.target === 1
                            enabled: !app.logging.enabled
                            unit: app.unit
                            label: "File"
                            inputName: "fileField"
                            text: preferences.file
                            onEdited: preferences.file = text
                        }
                        Field {
                            Layout.fillWidth: true
                            visible: preferences.target === 2
                            enabled: !app.logging.enabled
                            unit: app.unit
                            label: "Host and port"
                            hint: "Records go there by UDP; the port is 514 if none is given."
                            inputName: "collectorField"
                            text: preferences.collector
                            onEdited: preferences.collector = text
                        }
                        Switcher {
                            Layout.fillWidth: true
                            visible: preferences.target !== 2
                            enabled: !app.logging.enabled
                            unit: app.unit
                            text: "Continue a file that is there"
                            checked: preferences.append
                            onToggled: preferences.append = checked
                        }
                        Switcher {
                            Layout.fillWidth: true
                            visible: preferences.target === 2
                            enabled: !app.logging.enabled
                            unit: app.unit
                            text: "Old form (RFC 3164)"
                            checked: preferences.oldForm
                            onToggled: preferences.oldForm = checked
                        }
                        Text {
                            Layout.fillWidth: true
                            visible: app.logging.enabled
                            text: "Stop to change this."
                            color: "#6b6480"
                            font { pixelSize: 12 * app.unit; italic: true }
                        }
                    }

                    Section {
                        Layout.fillWidth: true
                        unit: app.unit
                        title: "What records hold"

                        Field {
                            Layout.fillWidth: true
                            unit: app.unit
                            label: "Name"
                            placeholder: Qt.application.name
                            inputName: "nameField"
                            text: preferences.name
                            onEdited: preferences.name = text
                        }
                        Field {
                            Layout.fillWidth: true
                            unit: app.unit
                            label: "Message pattern"
                            hint: "Holds for the whole process, the console included."
                            inputName: "patternField"
                            text: app.logging.messagePattern
                            onEdited: app.logging.messagePattern = text
                        }
                        Field {
                            Layout.fillWidth: true
                            unit: app.unit
                            label: "User data"
                            hint: "Between brackets in each record. %{category}, %{function}, %{file}, %{filename} and %{line} stand for the message's own."
                            placeholder: "place@48213 at=\"%{filename}:%{line}\""
                            inputName: "userDataField"
                            text: preferences.userData
                            onEdited: preferences.userData = text
                        }
                    }
                }
            }

            // What has come out of it.
            ColumnLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                visible: app.wide || app.showsLog
                spacing: 0

                Rectangle {
                    Layout.fillWidth: true
                    Layout.preferredHeight: Math.round(40 * app.unit)
                    color: "#322b45"

                    RowLayout {
                        anchors { fill: parent; leftMargin: 12 * app.unit; rightMargin: 4 * app.unit }

                        Text {
                            Layout.fillWidth: true
                            objectName: "location"
                            text: app.logging.outputLocation.toString().replace(/^file:\/\//, "") || "No file yet"
                            textFormat: Text.PlainText
                            color: "#d9d2ee"
                            font.pixelSize: 12 * app.unit
                            elide: Text.ElideMiddle
                        }
                        Text {
                            visible: view.count > 0
                            text: view.count === 1 ? "1 record" : view.count + " records"
                            color: "#8f88a8"
                            font.pixelSize: 12 * app.unit
                        }
                        PlainButton {
                            objectName: "clearButton"
                            enabled: view.count > 0
                            unit: app.unit
                            color: "#d9d2ee"
                            text: "Clear"
                            background: null
                            onClicked: view.clear()
                        }
                    }
                }
                LogView {
                    id: view

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    objectName: "view"
                    unit: app.unit
                    path: app.logging.outputLocation
                    running: app.logging.enabled
                    emptyText: app.logging.enabled && !readable ? "The records go to " + preferences.collector + ".\nThe collector shows them."
                                                                : "Press Start, and each message of this process appears here."
                }
                Composer {
                    Layout.fillWidth: true
                    unit: app.unit
                }
            }
        }
    }
}
