// The headline of a setting, with a line under it.
import QtQuick 2.3

Text {
    property bool active: false

    width: parent ? parent.width : implicitWidth
    color: "white"
    font { pointSize: 14; bold: active }
    style: active ? Text.Raised : Text.Sunken
    styleColor: "black"
    elide: Text.ElideRight

    Rectangle {
        anchors { left: parent.left; right: parent.right; top: parent.bottom; topMargin: -1 }
        height: 1
        color: "#40ffffff"
    }
}
