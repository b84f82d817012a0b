import QtQuick 2.15
import Zemrik.Tessaline 1.0

Rectangle {
    width: 640
    height: 480

    Text {
        anchors.centerIn: parent
        text: qsTr("Tessaline %1").arg(Tessaline.version)
    }
}
