// A check box with its text.
import QtQuick 2.15
import QtQuick.Controls 2.15

AbstractButton {
    id: switcher

    property real unit: 1

    checkable: true
    implicitWidth: label.implicitWidth
    implicitHeight: 28 * unit

    contentItem: Text {
        id: label

        leftPadding: 28 * switcher.unit
        text: switcher.text
        color: "#2b1f28"
        font.pixelSize: 13 * switcher.unit
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Item {
        Rectangle {
            width: 18 * switcher.unit
            height: width
            anchors.verticalCenter: parent.verticalCenter
            radius: 4 * switcher.unit
            color: switcher.checked ? "#7a3b69" : "white"
            border { width: (switcher.visualFocus ? 2 : 1) * switcher.unit; color: "#7a3b69" }

            Text {
                anchors.centerIn: parent
                visible: switcher.checked
                text: "✓"
                color: "white"
                font { pixelSize: 13 * switcher.unit; bold: true }
            }
        }
    }
}
