// How far a download has come, in percent; moving to and fro while nothing is known.
import QtQuick 2.15
import "Theme.js" as Theme

Rectangle {
    id: line

    property int percentage: 0
    property bool unknown: false
    property real unit: 1

    implicitHeight: 8 * unit
    radius: height / 2
    color: "#d3ddf7"
    clip: true
    Accessible.role: Accessible.ProgressBar
    Accessible.name: unknown ? qsTr("Download begins") : qsTr("Download: %1 %").arg(percentage)

    Rectangle {
        id: bar

        width: line.unknown ? line.width / 4 : line.width * Math.max(0, Math.min(100, line.percentage)) / 100
        height: line.height
        radius: height / 2
        color: Theme.accent

        SequentialAnimation on x {
            running: line.unknown && line.visible
            loops: Animation.Infinite
            onStopped: bar.x = 0

            NumberAnimation { from: 0; to: line.width * 3 / 4; duration: 900; easing.type: Easing.InOutQuad }
            NumberAnimation { to: 0; duration: 900; easing.type: Easing.InOutQuad }
        }
    }
}
