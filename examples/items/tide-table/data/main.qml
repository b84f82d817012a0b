/*
    Tide Table: an app whose data is an item of its own.

    appinfo.json declares the item "tide-readings". Who downloads the app gets it too, and finds it with
    App.dependency(): its folder holds tides.json, from which the curve is computed.
    Keys: Up and Down choose the harbour, Left and Right the day.
*/
import QtQuick 2.15
import QtQuick.Layouts 1.15
import Zemrik.Tessaline 1.0

App {
    id: app

    readonly property real unit: Tessaline.displayScaleFactor
    readonly property real space: Math.max(16, Math.min(32, width / unit / 24)) * unit
    property var tides: ({})
    readonly property var harbours: tides.harbours || []
    readonly property var harbour: harbours[harbourIndex] || null
    property int harbourIndex: 0
    property int dayOffset: 0
    readonly property var day: {
        const date = new Date();
        return new Date(date.getFullYear(), date.getMonth(), date.getDate() + dayOffset);
    }
    readonly property var extremes: harbour ? turningPoints() : []

    width: 720 * unit
    height: 560 * unit

    focus: true

    Component.onCompleted: {
        const needed = app.info ? app.dependency("itemId", "tide-readings") : null;
        if (needed)
            tides = Tessaline.fileFolder(needed.folderPath).readJsonFile("tides.json");
    }

    Keys.onUpPressed: harbourIndex = Math.max(0, harbourIndex - 1)
    Keys.onDownPressed: harbourIndex = Math.min(harbours.length - 1, harbourIndex + 1)
    Keys.onLeftPressed: dayOffset--
    Keys.onRightPressed: dayOffset++

    // The height in metres, some hours after the day's beginning.
    function heightAt(hours) {
        const since = (day.getTime() - new Date(tides.epoch).getTime()) / 3600000 + hours;
        return harbour.constituents.reduce((sum, wave) => {
            return sum + wave.amplitude * Math.cos(2 * Math.PI * (since / wave.period - wave.phase / 360));
        }, harbour.mean);
    }

    function turningPoints() {
        const found = [];
        const step = 0.1;
        for (let hours = 0; hours < 24; hours += step) {
            const before = heightAt(hours - step), here = heightAt(hours), after = heightAt(hours + step);
            if (here > before && here >= after)
                found.push({ high: true, hours: hours, height: here });
            else if (here < before && here <= after)
                found.push({ high: false, hours: hours, height: here });
        }
        return found;
    }

    function clock(hours) {
        const minutes = Math.round(hours * 60);
        return ("0" + Math.floor(minutes / 60) % 24).slice(-2) + ":" + ("0" + minutes % 60).slice(-2);
    }

    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop { position: 0; color: "#0b3954" }
            GradientStop { position: 1; color: "#0d2436" }
        }
    }

    Text {
        anchors.centerIn: parent
        width: parent.width - 4 * app.space
        visible: app.harbours.length === 0
        text: "The tide constants are not on this machine.\nDownload the app again to get them."
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: "white"
        font.pixelSize: 15 * app.unit
    }

    ColumnLayout {
        anchors { fill: parent; margins: app.space }
        visible: app.harbours.length > 0
        spacing: 14 * app.unit

        Flow {
            Layout.fillWidth: true
            spacing: 8 * app.unit

            Repeater {
                model: app.harbours

                Rectangle {
                    width: name.implicitWidth + 24 * app.unit
                    height: 34 * app.unit
                    radius: height / 2
                    color: index === app.harbourIndex ? "#7fd1ff" : "transparent"
                    border { width: 1; color: "#7fd1ff" }

                    Text {
                        id: name

                        anchors.centerIn: parent
                        text: modelData.name
                        textFormat: Text.PlainText
                        color: index === app.harbourIndex ? "#0b2536" : "white"
                        font { pixelSize: 13 * app.unit; bold: index === app.harbourIndex }
                    }
                    MouseArea {
                        anchors.fill: parent
                        onClicked: app.harbourIndex = index
                    }
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 12 * app.unit

            Text {
                Layout.fillWidth: true
                objectName: "day"
                text: app.dayOffset === 0 ? "Today" : Qt.formatDate(app.day, "dddd, d MMMM")
                color: "white"
                font { pixelSize: 22 * app.unit; bold: true }
                elide: Text.ElideRight
            }
            Repeater {
                model: [ { text: "‹", step: -1 }, { text: "›", step: 1 } ]

                Rectangle {
                    Layout.preferredWidth: 40 * app.unit
                    Layout.preferredHeight: 36 * app.unit
                    radius: 8 * app.unit
                    color: stepArea.pressed ? "#2f6f96" : "#1b4c6b"

                    Text {
                        anchors.centerIn: parent
                        text: modelData.text
                        color: "white"
                        font { pixelSize: 20 * app.unit; bold: true }
                    }
                    MouseArea {
                        id: stepArea

                        anchors.fill: parent
                        onClicked: app.dayOffset += modelData.step
                    }
                }
            }
        }

        Item {
            id: chart

            readonly property real highest: app.harbour
                                            ? app.harbour.constituents.reduce((sum, wave) => sum + wave.amplitude,
                                                                              app.harbour.mean)
                                            : 1

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.minimumHeight: 120 * app.unit
            objectName: "chart"

            Canvas {
                id: curve

                readonly property var shown: [ app.harbour, app.dayOffset ]

                anchors { left: parent.left; right: parent.right; top: parent.top; bottom: hours.top; bottomMargin: 4 * app.unit }
                onShownChanged: requestPaint()
                onPaint: {
                    const context = getContext("2d");
                    context.reset();
                    if (!app.harbour)
                        return;
                    const water = context.createLinearGradient(0, 0, 0, height);
                    water.addColorStop(0, "#7fd1ff");
                    water.addColorStop(1, "#1f6f9f");
                    const y = x => height - Math.max(0.03, app.heightAt(x * 24 / width) / chart.highest) * height;
                    context.beginPath();
                    context.moveTo(0, height);
                    for (let x = 0; x <= width; x += 2)
                        context.lineTo(x, y(x));
                    context.lineTo(width, height);
                    context.closePath();
                    context.fillStyle = water;
                    context.fill();
                }
            }
            Item {
                id: hours

                anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
                height: 18 * app.unit

                Repeater {
                    model: 5

                    Text {
                        x: index * (hours.width - implicitWidth) / 4
                        text: app.clock(index * 6 % 24)
                        color: "#c9e4f5"
                        font.pixelSize: 12 * app.unit
                    }
                }
            }
        }

        Flow {
            Layout.fillWidth: true
            spacing: 10 * app.unit

            Repeater {
                model: app.extremes

                Rectangle {
                    width: 132 * app.unit
                    height: 58 * app.unit
                    radius: 10 * app.unit
                    color: "#143d58"

                    Column {
                        anchors { left: parent.left; leftMargin: 12 * app.unit; verticalCenter: parent.verticalCenter }
                        spacing: 2 * app.unit

                        Text {
                            text: (modelData.high ? "▲ High " : "▼ Low ") + app.clock(modelData.hours)
                            color: "white"
                            font { pixelSize: 14 * app.unit; bold: true }
                        }
                        Text {
                            text: modelData.height.toFixed(1) + " m"
                            color: "#c9e4f5"
                            font.pixelSize: 13 * app.unit
                        }
                    }
                }
            }
        }
    }
}
