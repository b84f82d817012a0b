// One line of a card: a label on the left, its value on the right, wrapped where it is long.
import QtQuick 2.15
import QtQuick.Layouts 1.15

RowLayout {
    id: fact

    property string label
    property string value
    property bool path: false        // paths may break anywhere
    property real unit: 1            // pixels per point of a 72 dpi display

    width: parent ? parent.width : implicitWidth
    spacing: 8 * unit

    Text {
        Layout.preferredWidth: 92 * fact.unit
        Layout.maximumWidth: 92 * fact.unit
        Layout.alignment: Qt.AlignTop
        text: fact.label
        textFormat: Text.PlainText
        color: "#5b6b7a"
        font.pixelSize: 12 * fact.unit
        wrapMode: Text.Wrap
    }

    Text {
        Layout.fillWidth: true
        Layout.alignment: Qt.AlignTop
        text: fact.value
        textFormat: Text.PlainText
        color: "#1d2733"
        font.pixelSize: 12 * fact.unit
        wrapMode: fact.path ? Text.WrapAnywhere : Text.Wrap
    }
}
