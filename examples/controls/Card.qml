// One control: its name, what it does, a stage to see it on, and its properties below.
import QtQuick 2.15
import QtQuick.Layouts 1.15

Rectangle {
    id: card

    property string title
    property string about
    property real unit: 1
    property alias stage: stage
    default property alias settings: settings.data

    implicitHeight: column.implicitHeight + 32 * unit
    radius: 6 * unit
    color: "white"
    border { width: Math.max(1, Math.round(unit)); color: "#e2d3de" }

    ColumnLayout {
        id: column

        anchors { fill: parent; margins: 16 * card.unit }
        spacing: 10 * card.unit

        Text {
            Layout.fillWidth: true
            text: card.title
            color: "#2b1f28"
            font { pixelSize: 17 * card.unit; bold: true }
            elide: Text.ElideRight
        }
        Text {
            Layout.fillWidth: true
            text: card.about
            color: "#6b5b67"
            font.pixelSize: 13 * card.unit
            wrapMode: Text.Wrap
        }
        Rectangle {
            id: stage

            Layout.fillWidth: true
            Layout.preferredHeight: Math.round(220 * card.unit)
            radius: 4 * card.unit
            color: "#ece2ea"
            clip: true
        }
        ColumnLayout {
            id: settings

            Layout.fillWidth: true
            spacing: 6 * card.unit
        }
        Item {
            Layout.fillHeight: true
        }
    }
}
