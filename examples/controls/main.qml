/*
    Controls: a callout, a fader and an image button, with a slider or a switch for each property.

    Press and drag on the callout's stage: its tail follows. Touch the fader's panel: it wakes and fades
    again. The button counts what it is told.
*/
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Controls 1.0

App {
    id: app

    readonly property real unit: Tessaline.displayScaleFactor
    readonly property color accent: "#7a3b69"
    readonly property int columnCount: width >= 900 * unit ? 3 : width >= 600 * unit ? 2 : 1

    width: 1080 * unit
    height: 700 * unit

    Rectangle {
        anchors.fill: parent
        color: "#f6f1f5"
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.round(60 * app.unit)
            color: app.accent

            Column {
                anchors { left: parent.left; right: parent.right; margins: 16 * app.unit; verticalCenter: parent.verticalCenter }

                Text {
                    width: parent.width
                    objectName: "title"
                    text: app.info.title
                    color: "white"
                    font { pixelSize: 20 * app.unit; bold: true }
                    elide: Text.ElideRight
                }
                Text {
                    width: parent.width
                    text: app.info.itemInfo.snippet || ""
                    color: "#ecd9e6"
                    font.pixelSize: 12 * app.unit
                    elide: Text.ElideRight
                }
            }
        }

        Flickable {
            id: page

            Layout.fillWidth: true
            Layout.fillHeight: true
            objectName: "page"
            contentHeight: cards.height + 32 * app.unit
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}

            GridLayout {
                id: cards

                x: 16 * app.unit
                y: 16 * app.unit
                width: page.width - 32 * app.unit
                columns: app.columnCount
                columnSpacing: 16 * app.unit
                rowSpacing: 16 * app.unit

                Card {
                    id: calloutCard

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1    // all columns equally wide
                    unit: app.unit
                    title: "CalloutRectangle"
                    about: "A rectangle with a tail. Press or drag on the stage: the tail points there."
                    stage.data: [
                        MouseArea {
                            anchors.fill: parent
                            objectName: "calloutArea"
                            preventStealing: true
                            onPressed: callout.pointAt(mouse.x, mouse.y)
                            onPositionChanged: callout.pointAt(mouse.x, mouse.y)
                        },
                        CalloutRectangle {
                            id: callout

                            objectName: "callout"
                            width: 120 * app.unit
                            height: 64 * app.unit
                            x: Math.round((parent.width - width) / 2)
                            y: Math.round((parent.height - height) / 2)
                            originX: 36 * app.unit
                            originY: 24 * app.unit
                            tailWidth: tailSetting.value * app.unit
                            radius: radiusSetting.value * app.unit
                            border { width: Math.round(borderSetting.value * app.unit); color: app.accent }
                            glow.visible: glowSwitch.checked
                            onRadiusChanged: redraw()

                            // An origin inside the rectangle has no tail.
                            function pointAt(px, py) {
                                if (px >= x && px <= x + width && py >= y && py <= y + height)
                                    return;
                                originX = px;
                                originY = py;
                            }
                            // Moving the origin draws the tail anew; a new colour or border doesn't.
                            function redraw() {
                                var px = originX;
                                originX = px + 1;
                                originX = px;
                            }

                            Text {
                                anchors.centerIn: parent
                                text: "Here!"
                                color: "#2b1f28"
                                font.pixelSize: 15 * app.unit
                            }
                        },
                        Rectangle {   // where the tail points
                            x: callout.originX - width / 2
                            y: callout.originY - height / 2
                            width: 6 * app.unit
                            height: width
                            radius: width / 2
                            color: app.accent
                        }
                    ]

                    Setting {
                        id: tailSetting; name: "tailWidth"; sliderName: name
                        unit: app.unit; from: 2; to: 60; value: 16
                    }
                    Setting {
                        name: "width"; sliderName: "calloutWidth"
                        unit: app.unit; from: 60; to: 180; value: 120
                        onMoved: callout.width = value * app.unit
                    }
                    Setting {
                        name: "height"; sliderName: "calloutHeight"
                        unit: app.unit; from: 40; to: 120; value: 64
                        onMoved: callout.height = value * app.unit
                    }
                    Setting {
                        id: radiusSetting; name: "radius"; sliderName: name
                        unit: app.unit; from: 0; to: 24; value: 6
                    }
                    Setting {
                        id: borderSetting; name: "border.width"; sliderName: name
                        unit: app.unit; from: 1; to: 6; stepSize: 1; value: 1
                        onMoved: callout.redraw()
                    }
                    Swatches {
                        name: "color"
                        unit: app.unit
                        colors: [ "#ffffff", "#ffe9a8", "#cfe8d5", "#cfe0f2" ]
                        current: callout.color
                        onChosen: {
                            callout.color = color;
                            callout.redraw();
                        }
                    }
                    Switcher { id: glowSwitch; objectName: "glowSwitch"; unit: app.unit; text: "glow"; checked: true }
                }

                Card {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1
                    unit: app.unit
                    title: "Fader"
                    about: "Dims an item after a delay. Touch the panel: it wakes, and the delay begins anew."
                    stage.data: [
                        Rectangle {
                            id: panel

                            objectName: "panel"
                            anchors { fill: parent; margins: 32 * app.unit }
                            radius: 6 * app.unit
                            color: app.accent

                            Text {
                                anchors.centerIn: parent
                                text: Math.round(panel.opacity * 100) + " %"
                                color: "white"
                                font { pixelSize: 28 * app.unit; bold: true }
                            }
                            MouseArea {
                                anchors.fill: parent
                                onPressed: fader.start()
                            }
                            Fader {
                                id: fader

                                enabled: faderSwitch.checked
                                timeoutDuration: timeoutSetting.value
                                animationDuration: animationSetting.value
                                minumumOpacity: minimumSetting.value
                                maximumOpacity: maximumSetting.value
                            }
                        }
                    ]

                    Setting {
                        id: timeoutSetting; name: "timeoutDuration"; sliderName: name
                        unit: app.unit; from: 0; to: 6000; stepSize: 100; value: 1500
                    }
                    Setting {
                        id: animationSetting; name: "animationDuration"; sliderName: name
                        unit: app.unit; from: 0; to: 6000; stepSize: 100; value: 1500
                    }
                    Setting {
                        id: minimumSetting; name: "minumumOpacity"; sliderName: name
                        unit: app.unit; from: 0; to: 1; stepSize: 0.05; value: 0.35; decimals: 2
                    }
                    Setting {
                        id: maximumSetting; name: "maximumOpacity"; sliderName: name
                        unit: app.unit; from: 0; to: 1; stepSize: 0.05; value: 1; decimals: 2
                    }
                    Switcher {
                        id: faderSwitch; objectName: "faderSwitch"
                        unit: app.unit; text: "enabled"; checked: true
                    }
                    RowLayout {
                        Layout.fillWidth: true
                        spacing: 8 * app.unit

                        PlainButton {
                            objectName: "startButton"
                            Layout.fillWidth: true; unit: app.unit; text: "start()"
                            onClicked: fader.start()
                        }
                        PlainButton {
                            objectName: "stopButton"
                            Layout.fillWidth: true; unit: app.unit; text: "stop()"
                            onClicked: fader.stop()
                        }
                    }
                }

                Card {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1
                    unit: app.unit
                    title: "ImageButton"
                    about: "A picture that glows: hover it, press it, double-click it, hold it."
                    stage.data: [
                        ImageButton {
                            id: star

                            property int clicks: 0
                            property int doubleClicks: 0
                            property int holds: 0

                            objectName: "star"
                            anchors { centerIn: parent; verticalCenterOffset: -14 * app.unit }
                            width: sizeSetting.value * app.unit
                            height: width
                            source: "star.png"
                            image.sourceSize: Qt.size(256, 256)
                            enabled: enabledSwitch.checked
                            checked: checkedSwitch.checked
                            onClicked: ++clicks
                            onDoubleClicked: ++doubleClicks
                            onPressAndHold: ++holds
                        },
                        Text {
                            anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 8 * app.unit }
                            objectName: "counts"
                            text: "clicked %1 · doubleClicked %2 · pressAndHold %3".arg(star.clicks).arg(star.doubleClicks).arg(star.holds)
                            color: "#6b5b67"
                            font.pixelSize: 12 * app.unit
                            horizontalAlignment: Text.AlignHCenter
                            wrapMode: Text.Wrap
                        }
                    ]

                    Setting {
                        id: sizeSetting; name: "width, height"; sliderName: "buttonSize"
                        unit: app.unit; from: 24; to: 128; value: 80
                    }
                    Swatches {
                        name: "glowColor"
                        unit: app.unit
                        colors: [ "transparent", "#f2b632", "#e0563f", "#3f8f5f" ]
                        current: star.glowColor
                        onChosen: star.glowColor = color
                    }
                    Swatches {
                        name: "hoverColor"
                        unit: app.unit
                        colors: [ "#808080", "#f2b632", "#e0563f", "#3f8f5f" ]
                        current: star.hoverColor
                        onChosen: star.hoverColor = color
                    }
                    Swatches {
                        name: "pressedColor"
                        unit: app.unit
                        colors: [ "#d3d3d3", "#f2b632", "#e0563f", "#3f8f5f" ]
                        current: star.pressedColor
                        onChosen: star.pressedColor = color
                    }
                    Swatches {
                        name: "checkedColor"
                        unit: app.unit
                        colors: [ "#00b2ff", "#f2b632", "#e0563f", "#3f8f5f" ]
                        current: star.checkedColor
                        onChosen: star.checkedColor = color
                    }
                    Switcher { id: enabledSwitch; objectName: "enabledSwitch"; unit: app.unit; text: "enabled"; checked: true }
                    Switcher { id: checkedSwitch; objectName: "checkedSwitch"; unit: app.unit; text: "checked" }
                }
            }
        }
    }
}
