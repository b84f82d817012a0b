// A label with its value; not there without one.
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "Theme.js" as Theme

RowLayout {
    id: row

    property string label
    property string value
    property real unit: 1

    width: parent ? parent.width : implicitWidth
    visible: value > ""
    spacing: 12 * unit

    Text {
        Layout.preferredWidth: 104 * row.unit
        Layout.alignment: Qt.AlignTop
        text: row.label
        color: Theme.secondaryText
        font.pixelSize: 13 * row.unit
    }
    Text {
        Layout.fillWidth: true
        objectName: row.objectName + "Value"
        text: row.value
        textFormat: Text.PlainText
        color: Theme.text
        font.pixelSize: 13 * row.unit
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
    }
}
