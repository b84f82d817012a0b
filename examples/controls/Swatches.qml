// A colour out of a few, after its name. The one in use has a ring; a crossed circle is "transparent".
import QtQuick 2.15
import QtQuick.Layouts 1.15

RowLayout {
    id: swatches

    property real unit: 1
    property string name
    property var colors: []
    property color current

    signal chosen(color color)

    Layout.fillWidth: true
    Layout.preferredHeight: 28 * unit
    spacing: 8 * unit

    Text {
        Layout.preferredWidth: 112 * swatches.unit
        text: swatches.name
        color: "#2b1f28"
        font.pixelSize: 12 * swatches.unit
        elide: Text.ElideRight
    }
    Repeater {
        model: swatches.colors

        Rectangle {
            id: swatch

            readonly property bool isCurrent: Qt.colorEqual(swatches.current, modelData)

            objectName: swatches.name + " " + modelData
            implicitWidth: 22 * swatches.unit
            implicitHeight: implicitWidth
            radius: width / 2
            color: modelData
            border { width: (isCurrent ? 3 : 1) * swatches.unit; color: isCurrent ? "#2b1f28" : "#a08f9b" }

            Rectangle {
                anchors.centerIn: parent
                visible: Qt.colorEqual(modelData, "transparent")
                width: parent.width * 0.7
                height: 2 * swatches.unit
                rotation: -45
                color: "#a08f9b"
                antialiasing: true
            }
            MouseArea {
                anchors { fill: parent; margins: -3 * swatches.unit }
                onClicked: swatches.chosen(modelData)
            }
        }
    }
    Item { Layout.fillWidth: true }
}
