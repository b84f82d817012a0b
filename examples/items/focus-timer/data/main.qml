/*
    Focus Timer: twenty-five minutes of work, five of rest.

    The finished rounds of the day are in App.settings. Keys: Tab and Return, Space starts and pauses.
*/
import QtQuick 2.15
import Zemrik.Tessaline 1.0

App {
    id: app

    readonly property real unit: Tessaline.displayScaleFactor
    readonly property int workSeconds: 25 * 60
    readonly property int restSeconds: 5 * 60
    property bool working: true
    property bool running: false
    property real endTime: 0           // milliseconds since the epoch, while running
    property real remaining: workSeconds
    property int rounds: 0

    width: 480 * unit
    height: 560 * unit

    Component.onCompleted: {
        rounds = roundsOfToday();
        startButton.forceActiveFocus();
    }

    // Asked for each time: the timer may run past midnight.
    function today() {
        return "rounds/" + Qt.formatDate(new Date(), "yyyy-MM-dd");
    }
    function roundsOfToday() {
        return settings.numberValue(today(), 0);
    }
    function startOrPause() {
        running = !running;
        if (running)
            endTime = Date.now() + remaining * 1000;
    }
    function reset() {
        running = false;
        remaining = working ? workSeconds : restSeconds;
    }
    function finish() {
        if (working) {
            rounds = roundsOfToday() + 1;
            settings.setValue(today(), rounds);
            settings.synchronize();
        }
        working = !working;
        reset();
    }

    Timer {
        interval: 200
        repeat: true
        running: app.running
        onTriggered: {
            app.remaining = Math.max(0, (app.endTime - Date.now()) / 1000);
            if (app.remaining === 0)
                app.finish();
        }
    }

    Rectangle {
        anchors.fill: parent
        color: "#fff7f3"
    }

    Column {
        anchors.centerIn: parent
        spacing: 24 * app.unit

        Item {
            id: dial

            readonly property real share: app.remaining / (app.working ? app.workSeconds : app.restSeconds)

            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(app.width * 0.7, app.height * 0.5, 300 * app.unit)
            height: width

            Rectangle {
                anchors.fill: parent
                radius: width / 2
                color: "transparent"
                border { width: 14 * app.unit; color: "#f3d9d2" }
            }
            Canvas {
                id: arc

                readonly property real share: dial.share
                readonly property color stroke: app.working ? "#c8452a" : "#2c7d5b"

                anchors.fill: parent
                onShareChanged: requestPaint()
                onStrokeChanged: requestPaint()
                onPaint: {
                    const context = getContext("2d");
                    context.reset();
                    context.lineWidth = 14 * app.unit;
                    context.lineCap = "round";
                    context.strokeStyle = stroke;
                    context.beginPath();
                    context.arc(width / 2, height / 2, width / 2 - 7 * app.unit, -Math.PI / 2, Math.PI * (2 * share - 0.5));
                    context.stroke();
                }
            }
            Column {
                anchors.centerIn: parent

                Text {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: app.working ? "Work" : "Rest"
                    color: "#7a4a3d"
                    font.pixelSize: 16 * app.unit
                }
                Text {
                    objectName: "clock"
                    text: Math.floor(Math.ceil(app.remaining) / 60) + ":" + ("0" + Math.ceil(app.remaining) % 60).slice(-2)
                    color: "#3a1f17"
                    font { pixelSize: 48 * app.unit; bold: true }
                }
            }
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 12 * app.unit

            RoundButton {
                id: startButton

                objectName: "startButton"
                unit: app.unit
                filled: true
                text: app.running ? "Pause" : "Start"
                onClicked: app.startOrPause()
            }
            RoundButton {
                objectName: "resetButton"
                unit: app.unit
                text: "Reset"
                onClicked: app.reset()
            }
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: app.rounds === 1 ? "1 round finished today" : app.rounds + " rounds finished today"
            color: "#7a4a3d"
            font.pixelSize: 14 * app.unit
        }
    }
}
