// One of a few: buttons side by side, of which the one at `index` is filled.
import QtQuick 2.15
import QtQuick.Layouts 1.15

RowLayout {
    id: choice

    property real unit: 1
    property var names: []
    property int index: 0
    property bool dark: false   // on a dark ground

    signal chosen(int index)

    spacing: 6 * unit

    Repeater {
        model: choice.names

        PlainButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1   // all as wide as each other
            objectName: "choice " + modelData
            unit: choice.unit
            color: choice.dark ? "#cfe5ec" : "#1c6478"
            text: modelData
            filled: index === choice.index
            onClicked: choice.chosen(index)
        }
    }
}
