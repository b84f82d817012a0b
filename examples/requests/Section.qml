// A group of settings under a heading.
import QtQuick 2.15
import QtQuick.Layouts 1.15

ColumnLayout {
    id: section

    property real unit: 1
    property string title

    spacing: 10 * unit

    Text {
        Layout.fillWidth: true
        text: section.title
        color: "#1c6478"
        font { pixelSize: 16 * section.unit; bold: true }
    }
}
