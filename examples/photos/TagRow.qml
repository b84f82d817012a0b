// A name with its value.
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "Theme.js" as Theme

RowLayout {
    id: row

    property string name
    property string value
    property real unit: 1

    spacing: 12 * unit

    Text {
        Layout.preferredWidth: 124 * row.unit
        Layout.alignment: Qt.AlignTop
        text: row.name
        color: Theme.secondaryText
        font.pixelSize: 13 * row.unit
        wrapMode: Text.Wrap
    }
    Text {
        Layout.fillWidth: true
        Layout.alignment: Qt.AlignTop
        text: row.value
        textFormat: Text.PlainText
        color: Theme.text
        font.pixelSize: 13 * row.unit
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        maximumLineCount: 8
        elide: Text.ElideRight
    }
}
