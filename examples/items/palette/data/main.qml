/*
    Palette: tints of one colour, with text that can be read on them.

    Tessaline.contrastColor() chooses the text; the base colour is kept in App.settings, which survive
    an update of the app. Keys: Left and Right change the hue, Tab and Return take a tint.
*/
import QtQuick 2.15
import QtQuick.Layouts 1.15
import Zemrik.Tessaline 1.0

App {
    id: app

    readonly property real unit: Tessaline.displayScaleFactor
    readonly property int columns: width > 560 * unit ? 4 : 2
    property color base: app.settings ? app.settings.colorValue("base", "#7b2d8b") : "#7b2d8b"

    width: 720 * unit
    height: 560 * unit

    Component.onCompleted: hues.forceActiveFocus()

    function choose(color) {
        base = color;
        app.settings.setColorValue("base", color);
        app.settings.synchronize();
    }
    function hue(share) {
        return Qt.hsla(Math.max(0, Math.min(0.999, share)), 0.6, 0.42, 1);
    }

    // Relative luminance and contrast as accessibility guidelines define them.
    function luminance(color) {
        const linear = part => part <= 0.03928 ? part / 12.92 : Math.pow((part + 0.055) / 1.055, 2.4);
        return 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
    }
    function contrast(one, other) {
        const a = luminance(one), b = luminance(other);
        return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
    }

    Rectangle {
        anchors.fill: parent
        color: "#f6f4f8"
    }

    ColumnLayout {
        anchors { fill: parent; margins: 16 * app.unit }
        spacing: 14 * app.unit

        Text {
            text: "Palette"
            color: "#241a2b"
            font { pixelSize: 22 * app.unit; bold: true }
        }

        // The hues: press or drag.
        Rectangle {
            id: hues

            objectName: "hues"
            activeFocusOnTab: true
            Accessible.role: Accessible.Slider
            Accessible.name: "Hue"
            Keys.onLeftPressed: app.choose(app.hue(app.base.hslHue - 0.02))
            Keys.onRightPressed: app.choose(app.hue(app.base.hslHue + 0.02))
            border { width: activeFocus ? 2 * app.unit : 0; color: "#241a2b" }
            Layout.fillWidth: true
            Layout.preferredHeight: 44 * app.unit
            radius: 10 * app.unit
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0; color: Qt.hsla(0, 0.6, 0.5, 1) }
                GradientStop { position: 0.166; color: Qt.hsla(0.166, 0.6, 0.5, 1) }
                GradientStop { position: 0.333; color: Qt.hsla(0.333, 0.6, 0.5, 1) }
                GradientStop { position: 0.5; color: Qt.hsla(0.5, 0.6, 0.5, 1) }
                GradientStop { position: 0.666; color: Qt.hsla(0.666, 0.6, 0.5, 1) }
                GradientStop { position: 0.833; color: Qt.hsla(0.833, 0.6, 0.5, 1) }
                GradientStop { position: 1; color: Qt.hsla(0.999, 0.6, 0.5, 1) }
            }

            Rectangle {
                x: Math.max(0, app.base.hslHue) * (parent.width - width)
                anchors.verticalCenter: parent.verticalCenter
                width: 14 * app.unit
                height: parent.height + 8 * app.unit
                radius: width / 2
                color: app.base
                border { width: 3 * app.unit; color: "white" }
            }
            MouseArea {
                anchors.fill: parent
                onPressed: app.base = app.hue(mouse.x / width)
                onPositionChanged: app.base = app.hue(mouse.x / width)
                onReleased: app.choose(app.base)   // is kept only now
            }
        }

        GridLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            columns: app.columns
            columnSpacing: 10 * app.unit
            rowSpacing: 10 * app.unit

            Repeater {
                model: [ 0.92, 0.82, 0.7, 0.58, 0.46, 0.34, 0.24, 0.14 ]

                Rectangle {
                    id: swatch

                    readonly property color textColor: Tessaline.contrastColor(color)

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    radius: 10 * app.unit
                    objectName: "swatch " + index
                    activeFocusOnTab: true
                    Accessible.role: Accessible.Button
                    Accessible.name: color.toString()
                    Keys.onReturnPressed: app.choose(color)
                    Keys.onEnterPressed: app.choose(color)
                    Keys.onSpacePressed: app.choose(color)
                    border { width: activeFocus ? 3 * app.unit : 0; color: textColor }
                    color: Qt.hsla(Math.max(0, app.base.hslHue), Math.max(0.35, app.base.hslSaturation), modelData, 1)

                    Column {
                        anchors { left: parent.left; bottom: parent.bottom; margins: 12 * app.unit }
                        spacing: 2 * app.unit

                        Text {
                            text: swatch.color.toString().toUpperCase()
                            color: swatch.textColor
                            font { pixelSize: 15 * app.unit; bold: true }
                        }
                        Text {
                            text: "contrast " + app.contrast(swatch.color, swatch.textColor).toFixed(1)
                            color: swatch.textColor
                            font.pixelSize: 12 * app.unit
                        }
                    }
                    MouseArea {
                        anchors.fill: parent
                        onClicked: app.choose(swatch.color)
                    }
                }
            }
        }
    }
}
