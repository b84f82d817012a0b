import QtQuick 2.15
import Zemrik.Tessaline 1.0

App {
    property var singleton: Tessaline

    Component.onCompleted: console.warn("version=" + Tessaline.version)

    Timer {
        interval: 1
        running: true
        onTriggered: Qt.quit()
    }
}
