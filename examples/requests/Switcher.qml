// A check box with its text. toggled() comes when the user changes it.
import QtQuick 2.15
import QtQuick.Controls 2.15

AbstractButton {
    id: switcher

    property real unit: 1

    checkable: true
    implicitHeight: 28 * unit
    opacity: enabled ? 1 : 0.4

    contentItem: Text {
        leftPadding: 28 * switcher.unit
        text: switcher.text
        color: "#15272e"
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
            color: switcher.checked ? "#1c6478" : "white"
            border { width: (switcher.visualFocus ? 2 : 1) * switcher.unit; color: "#1c6478" }

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
