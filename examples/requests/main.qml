/*
    Requests: a small HTTP client.

    The left half makes a request, the right half shows the answer. All of it is one NetworkRequest:
    headers are properties of its `headers`, a form is an object given to send(), an answer that is
    saved goes to `responsePath`. The plain values of a form are the user's and may begin with
    anything, so files are marked by a prefix that nobody can type.
*/
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Zemrik.Tessaline 1.0

App {
    id: app

    readonly property real unit: Tessaline.displayScaleFactor
    readonly property color accent: "#1c6478"
    readonly property bool wide: width >= 760 * unit
    readonly property bool running: request.readyState === NetworkRequest.ReadyStateSending
                                    || request.readyState === NetworkRequest.ReadyStateProcessing
    property bool showsAnswer: false   // of the two pages of a narrow window
    property real startTime: 0

    width: 1000 * unit
    height: 680 * unit

    Settings {
        id: preferences

        property string url: "http://127.0.0.1:8081/echo"
        property string method: "GET"
        property bool followRedirects: true
        property bool ignoreSslErrors: false
        property int bodyKind: 0   // 0 none, 1 form, 2 text
        property string bodyText
        property bool savesAnswer: false
        property string answerPath: "~/answer.bin"
    }

    NetworkRequest {
        id: request

        uploadPrefix: "\u001ffile:"
        onSslErrors: answer.tlsErrors = errors
        onSslErrorsIgnored: answer.tlsErrors = errors
        onReadyStateChanged: if (readyState === NetworkRequest.ReadyStateComplete) app.finish()
    }

    // A bar for what takes longer than a moment.
    Timer {
        id: patience

        interval: 300
        running: app.running
        onRunningChanged: if (running) answer.slow = false
        onTriggered: answer.slow = true
    }

    function send() {
        transmit(preferences.ignoreSslErrors);
    }
    function transmit(ignoreSslErrors) {
        if (running || preferences.url.trim() === "")
            return;
        const headers = form.headers();
        request.headers.clear();
        for (const name in headers)
            request.headers[name] = headers[name];
        request.followRedirects = preferences.followRedirects;
        request.ignoreSslErrors = ignoreSslErrors;
        request.responsePath = preferences.savesAnswer ? preferences.answerPath : "";
        request.open(preferences.method, address() + form.query());
        answer.begin();
        answer.savedTo = request.responsePath;
        showsAnswer = true;
        startTime = Date.now();
        request.send(form.body());
    }
    function address() {
        const text = preferences.url.trim();
        return /^[a-z]+:\/\//i.test(text) ? text : "http://" + text;
    }
    function finish() {
        answer.elapsed = Date.now() - startTime;
        answer.finish();
    }
    function follow(location) {
        const base = address();
        // A location may leave out what is as before.
        preferences.url = /^[a-z]+:/i.test(location) ? location
                        : location.startsWith("//") ? base.split("//")[0] + location
                        : location.startsWith("/") ? base.replace(/^([a-z]+:\/\/[^\/?#]*).*$/i, "$1") + location
                        : base.replace(/[?#].*$/, "").replace(/[^\/]*$/, "") + location;
        preferences.method = "GET";
        preferences.bodyKind = 0;
        send();
    }

    Shortcut { sequence: "Ctrl+Return"; onActivated: app.send() }
    Shortcut { sequence: StandardKey.Cancel; enabled: app.running; onActivated: request.abort() }

    Rectangle {
        anchors.fill: parent
        color: "#f2f7f9"
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        // Title, state, help, send and cancel.
        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.round(60 * app.unit)
            color: app.accent

            RowLayout {
                anchors { fill: parent; leftMargin: 16 * app.unit; rightMargin: 12 * app.unit }
                spacing: 8 * app.unit

                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 0

                    Text {
                        text: qsTr("Requests")
                        color: "white"
                        font { pixelSize: 20 * app.unit; bold: true }
                    }
                    Text {
                        Layout.fillWidth: true
                        objectName: "state"
                        text: !app.running ? (answer.begun ? qsTr("Done") : qsTr("Ready"))
                            : request.readyState === NetworkRequest.ReadyStateProcessing ? qsTr("Receiving") : qsTr("Sending")
                        color: "#cfe5ec"
                        font.pixelSize: 12 * app.unit
                    }
                }
                PlainButton {
                    objectName: "helpButton"
                    unit: app.unit
                    color: "#f2f7f9"
                    text: qsTr("Help")
                    onClicked: help.visible = !help.visible
                }
                PlainButton {
                    objectName: "sendButton"
                    enabled: app.running || preferences.url.trim() > ""
                    unit: app.unit
                    color: "#f2f7f9"
                    filled: !app.running
                    text: app.running ? qsTr("Cancel") : qsTr("Send")
                    onClicked: app.running ? request.abort() : app.send()
                }
            }
        }

        Choice {
            Layout.fillWidth: true
            Layout.margins: 8 * app.unit
            visible: !app.wide && !help.visible
            unit: app.unit
            names: [ "Request", "Answer" ]
            index: app.showsAnswer ? 1 : 0
            onChosen: app.showsAnswer = index === 1
        }

        HelpPage {
            id: help

            Layout.fillWidth: true
            Layout.fillHeight: true
            objectName: "help"
            visible: false
            unit: app.unit
            onClosed: visible = false
            onChosen: {
                preferences.url = url;
                visible = false;
                app.showsAnswer = false;
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: !help.visible
            spacing: 0

            RequestForm {
                id: form

                Layout.fillHeight: true
                Layout.fillWidth: !app.wide
                Layout.preferredWidth: app.wide ? 390 * app.unit : app.width
                objectName: "form"
                visible: app.wide || !app.showsAnswer
                unit: app.unit
                preferences: preferences
                uploadPrefix: request.uploadPrefix
                onAccepted: app.send()
            }
            AnswerView {
                id: answer

                Layout.fillWidth: true
                Layout.fillHeight: true
                objectName: "answer"
                visible: app.wide || app.showsAnswer
                unit: app.unit
                request: request
                running: app.running
                onFollowClicked: app.follow(location)
                onTrustClicked: app.transmit(true)
            }
        }
    }
}
