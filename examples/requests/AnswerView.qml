/*
    What came of a request: its status, a bar while a long transfer runs, and the answer's body,
    headers and certificate errors on a page each.

    The body is read once, when the request is complete. A text bound to responseText would be copied
    anew with each piece that arrives.
*/
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Zemrik.Tessaline 1.0
import "JsonText.js" as JsonText

Rectangle {
    id: view

    property NetworkRequest request
    property real unit: 1
    property bool running: false
    property bool slow: false        // the transfer takes so long that a bar is wanted
    property var tlsErrors: []
    property string savedTo          // the file that took the body; empty: none
    property real elapsed: 0         // milliseconds
    property int page: 0             // 0 body, 1 headers, 2 certificate errors
    readonly property int longest: 200000   // characters that are shown
    readonly property real narrowest: 520 * unit   // where status and pages fit side by side

    property bool begun: false
    property string body             // as it is shown
    property bool isJson: false
    property string note             // about the body
    property var headers: []
    property string location         // of a redirect that was not followed

    signal followClicked(string location)
    signal trustClicked()

    // Before the request is sent.
    function begin() {
        begun = true;
        page = 0;
        body = "";
        isJson = false;
        note = "";
        headers = [];
        location = "";
        tlsErrors = [];
        savedTo = "";
    }
    // When it is complete.
    function finish() {
        headers = Object.keys(request.responseHeaders).map(name => ({ name: name, value: request.responseHeaders[name] }));
        location = request.status >= 300 && request.status < 400 ? header("Location") : "";
        if (tlsErrors.length > 0 && request.errorCode !== 0)
            page = 2;
        const text = request.responseText;
        if (savedTo > "" && text === "")
            showFile();
        else
            showText(text);
    }
    function header(name) {
        const found = headers.find(entry => entry.name.toLowerCase() === name.toLowerCase());
        return found ? found.value : "";
    }
    function showFile() {
        const file = Tessaline.fileInfo(savedTo);
        note = request.errorCode === 0 && request.status > 0 && file.exists
             ? qsTr("%1 bytes in %2").arg(grouped(file.size)).arg(file.filePath) : qsTr("No file was written.");
    }
    function showText(text) {
        const pretty = text.length <= longest ? JsonText.pretty(text) : "";
        isJson = pretty > "";
        body = isJson ? JsonText.colored(pretty) : text.slice(0, longest);
        note = text.length > longest ? qsTr("The first %1 of %2 characters").arg(grouped(longest)).arg(grouped(text.length))
                                     : text === "" ? qsTr("The answer has no text.") : "";
    }
    function grouped(number) {
        return String(Math.round(number)).replace(/(\d)(?=(\d{3})+$)/g, "$1 ");
    }

    color: "#15272e"

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        // Status and time.
        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.round(44 * view.unit)
            color: "#203840"

            RowLayout {
                anchors { fill: parent; leftMargin: 12 * view.unit; rightMargin: 12 * view.unit }
                spacing: 10 * view.unit

                Rectangle {
                    readonly property int hundreds: Math.floor(view.request.status / 100)

                    Layout.maximumWidth: view.width * 0.6
                    Layout.preferredWidth: statusText.implicitWidth + 20 * view.unit
                    Layout.preferredHeight: 26 * view.unit
                    visible: view.begun && !view.running
                    radius: height / 2
                    color: hundreds === 2 ? "#7fd1ae" : hundreds === 3 ? "#8fcbdc" : hundreds >= 4 ? "#f2b84b"
                                          : view.request.errorCode !== 0 ? "#ff8a80" : "#a9bfc8"

                    Text {
                        id: statusText

                        anchors { fill: parent; leftMargin: 10 * view.unit; rightMargin: 10 * view.unit }
                        objectName: "status"
                        // Without a body the status isn't known.
                        text: view.request.statusText || (view.request.errorCode !== 0 ? qsTr("Failed") : qsTr("Done"))
                        textFormat: Text.PlainText
                        color: "#15272e"
                        font { pixelSize: 13 * view.unit; bold: true }
                        elide: Text.ElideRight
                        verticalAlignment: Text.AlignVCenter
                    }
                }
                Text {
                    Layout.fillWidth: true
                    objectName: "summary"
                    text: !view.begun ? qsTr("No answer yet") : view.running ? (view.slow ? "" : qsTr("Waiting…")) : view.grouped(view.elapsed) + " ms"
                    color: "#a9bfc8"
                    font.pixelSize: 12 * view.unit
                    elide: Text.ElideRight
                }
                Choice {
                    Layout.fillWidth: false
                    Layout.preferredWidth: 96 * view.unit * names.length
                    visible: view.begun && view.width >= view.narrowest
                    unit: view.unit
                    dark: true
                    names: pages.names
                    index: view.page
                    onChosen: view.page = index
                }
            }
        }

        // How far a long transfer is. Half of the request's progress is for the upload, half for the
        // download; here each has the whole bar.
        Rectangle {
            id: bar

            readonly property bool receiving: view.request.readyState === NetworkRequest.ReadyStateProcessing
            readonly property real done: Math.max(0, view.request.progress * 2 - (receiving ? 1 : 0))

            Layout.fillWidth: true
            Layout.preferredHeight: 26 * view.unit
            visible: view.running && view.slow
            color: "#203840"

            Rectangle {
                width: parent.width * Math.min(1, bar.done)
                height: parent.height
                objectName: "bar"
                color: "#2c8199"
            }
            Text {
                anchors.centerIn: parent
                objectName: "barText"
                text: bar.done === 0 ? (bar.receiving ? qsTr("Receiving") : qsTr("Waiting for the answer"))
                    : bar.receiving ? qsTr("Receiving, %1 %").arg(Math.round(bar.done * 100))
                    : bar.done < 1 ? qsTr("Sending, %1 %").arg(Math.round(bar.done * 100)) : qsTr("Sent, waiting for the answer")
                color: "white"
                font { pixelSize: 12 * view.unit; bold: true }
            }
        }

        // Where the width doesn't allow the pages' names beside the status.
        Choice {
            id: pages

            Layout.fillWidth: true
            Layout.margins: 8 * view.unit
            visible: view.begun && view.width < view.narrowest
            unit: view.unit
            dark: true
            names: view.tlsErrors.length > 0 ? [ "Body", "Headers", "Certificate" ] : [ "Body", "Headers" ]
            index: view.page
            onChosen: view.page = index
        }

        Banner {
            objectName: "failure"
            visible: view.begun && !view.running && view.request.errorText > ""
            text: view.request.errorText
            color: "#5b2a2a"
            action: view.tlsErrors.length > 0 && view.request.errorCode !== 0 ? qsTr("Send all the same") : ""
            actionName: "trustButton"
            onClicked: view.trustClicked()
        }
        Banner {
            objectName: "redirect"
            visible: !view.running && view.location > ""
            text: qsTr("Moved to %1").arg(view.location)
            color: "#1e4a5a"
            action: qsTr("Follow")
            actionName: "followButton"
            onClicked: view.followClicked(view.location)
        }
        Banner {
            objectName: "ignored"
            visible: view.tlsErrors.length > 0 && view.request.errorCode === 0
            text: qsTr("The server's certificate can't be trusted.")
            color: "#5a4617"
        }

        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: view.page

            Item {
                ScrollView {
                    anchors.fill: parent
                    visible: view.body > ""
                    clip: true

                    TextArea {
                        objectName: "body"
                        padding: 14 * view.unit
                        readOnly: true
                        selectByMouse: true
                        textFormat: view.isJson ? TextEdit.RichText : TextEdit.PlainText
                        text: view.body
                        color: "#eef5f7"
                        selectionColor: "#2c8199"
                        font { family: "monospace"; pixelSize: 12 * view.unit }
                        wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere
                        background: null
                    }
                }
                Text {
                    // In the middle of an empty page, or at the foot of a full one.
                    width: parent.width - 40 * view.unit
                    x: 20 * view.unit
                    y: view.body > "" ? parent.height - height - 10 * view.unit : (parent.height - height) / 2
                    objectName: "note"
                    text: view.begun ? (view.running ? "" : view.note) : qsTr("Press Send, and the answer appears here.")
                    textFormat: Text.PlainText
                    color: "#a9bfc8"
                    font.pixelSize: 14 * view.unit
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                }
            }

            ListView {
                id: headerList

                objectName: "headers"
                model: view.headers
                topMargin: 10 * view.unit
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: ScrollBar {}

                delegate: ColumnLayout {
                    x: 14 * view.unit
                    width: headerList.width - 28 * view.unit
                    spacing: 1 * view.unit

                    Text {
                        Layout.fillWidth: true
                        text: modelData.name
                        textFormat: Text.PlainText
                        color: "#8fcbdc"
                        font { family: "monospace"; pixelSize: 12 * view.unit; bold: true }
                        elide: Text.ElideRight
                    }
                    Text {
                        Layout.fillWidth: true
                        Layout.bottomMargin: 7 * view.unit
                        text: modelData.value
                        textFormat: Text.PlainText
                        color: "#eef5f7"
                        font { family: "monospace"; pixelSize: 12 * view.unit }
                        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                    }
                }
            }

            TlsErrors {
                objectName: "tlsErrors"
                unit: view.unit
                errors: view.tlsErrors
            }
        }
    }

    // A line of words with a button behind it.
    component Banner: Rectangle {
        id: banner

        property alias text: words.text
        property alias action: button.text
        property alias actionName: button.objectName

        signal clicked()

        Layout.fillWidth: true
        Layout.preferredHeight: Math.max(words.implicitHeight, button.visible ? button.implicitHeight : 0) + 14 * view.unit

        Text {
            id: words

            anchors { left: parent.left; right: button.visible ? button.left : parent.right; verticalCenter: parent.verticalCenter; leftMargin: 14 * view.unit; rightMargin: 14 * view.unit }
            textFormat: Text.PlainText
            color: "white"
            font.pixelSize: 12 * view.unit
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            maximumLineCount: 4
            elide: Text.ElideRight
        }
        PlainButton {
            id: button

            anchors { right: parent.right; verticalCenter: parent.verticalCenter; rightMargin: 10 * view.unit }
            visible: text > ""
            unit: view.unit
            color: "#eef5f7"
            onClicked: banner.clicked()
        }
    }
}
