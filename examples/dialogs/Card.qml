// One dialog: what it is for, what can be set, what it gave back, and the button that opens it.
import QtQuick 2.15
import QtQuick.Layouts 1.15

Rectangle {
    id: card

    property string title
    property string about
    property string action             // the button's text
    property string actionName         // the button's object name
    property string outcome            // how the dialog ended last; empty: not opened yet
    property string outcomeName
    property real unit: 1
    default property alias content: body.data

    signal triggered()

    implicitHeight: column.implicitHeight + 32 * unit
    radius: 6 * unit
    color: "white"
    border { width: Math.max(1, Math.round(unit)); color: "#d3ddd7" }

    ColumnLayout {
        id: column

        anchors { fill: parent; margins: 16 * card.unit }
        spacing: 10 * card.unit

        Text {
            Layout.fillWidth: true
            text: card.title
            color: "#1f2a24"
            font { pixelSize: 17 * card.unit; bold: true }
            elide: Text.ElideRight
        }
        Text {
            Layout.fillWidth: true
            text: card.about
            color: "#5c6b63"
            font.pixelSize: 13 * card.unit
            wrapMode: Text.Wrap
        }
        ColumnLayout {
            id: body

            Layout.fillWidth: true
            spacing: 8 * card.unit
        }
        Item {
            Layout.fillHeight: true
        }
        Text {
            Layout.fillWidth: true
            objectName: card.outcomeName
            text: card.outcome || "Not opened yet"
            textFormat: Text.PlainText
            color: card.outcome > "" ? "#1f2a24" : "#5c6b63"
            font.pixelSize: 13 * card.unit
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            maximumLineCount: 3
            elide: Text.ElideRight
        }
        PlainButton {
            Layout.fillWidth: true
            objectName: card.actionName
            unit: card.unit
            text: card.action
            onClicked: card.triggered()
        }
    }
}
