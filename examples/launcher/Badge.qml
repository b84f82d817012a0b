// A short word about an app.
import QtQuick 2.15
import "Theme.js" as Theme

Rectangle {
    id: badge

    property string text
    property string kind: "good"   // or "warning"
    property real unit: 1

    implicitWidth: label.implicitWidth + 14 * unit
    implicitHeight: label.implicitHeight + 6 * unit
    radius: 4 * unit
    color: kind === "good" ? Theme.goodLight : Theme.warningLight

    Text {
        id: label

        anchors.centerIn: parent
        text: badge.text
        color: badge.kind === "good" ? Theme.good : Theme.warning
        font { pixelSize: 11 * badge.unit; bold: true }
    }
}
