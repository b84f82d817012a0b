// The picture that a dialog gave, or an empty frame with a hint.
import QtQuick 2.15

Rectangle {
    id: preview

    property url picture
    property string pictureName
    property string hint
    property real unit: 1

    implicitHeight: 150 * unit
    radius: 4 * unit
    color: "#eef3f0"

    Image {
        anchors { fill: parent; margins: 4 * preview.unit }
        objectName: preview.pictureName
        source: preview.picture
        sourceSize.width: 800
        asynchronous: true
        autoTransform: true
        cache: false    // a picture taken in the same second has the same name
        fillMode: Image.PreserveAspectFit
    }
    Text {
        anchors.centerIn: parent
        width: parent.width - 24 * preview.unit
        visible: preview.picture.toString() === ""
        text: preview.hint
        color: "#5c6b63"
        font.pixelSize: 13 * preview.unit
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }
}
