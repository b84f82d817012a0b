// The picture of an app with round corners, or its first letter where there is none (yet).
import QtQuick 2.15
import QtQuick.Window 2.15
import QtGraphicalEffects 1.15
import "Theme.js" as Theme

Item {
    id: thumbnail

    property url source
    property string title
    property real unit: 1

    Rectangle {
        anchors.fill: parent
        visible: image.status !== Image.Ready
        radius: 6 * thumbnail.unit
        color: Theme.tile(thumbnail.title)

        Text {
            anchors.centerIn: parent
            text: thumbnail.title.charAt(0).toUpperCase()
            textFormat: Text.PlainText
            color: "white"
            font { pixelSize: parent.height * 0.45; bold: true }
        }
    }
    Image {
        id: image

        anchors.fill: parent
        source: thumbnail.source
        // In the screen's own pixels, so that it is sharp at every scale.
        sourceSize.width: Math.ceil(width * Screen.devicePixelRatio)
        asynchronous: true
        fillMode: Image.PreserveAspectCrop
        smooth: true
        mipmap: true
        layer.enabled: true
        layer.effect: OpacityMask {
            maskSource: Item {
                width: image.width
                height: image.height

                Rectangle {
                    anchors.fill: parent
                    radius: 6 * thumbnail.unit
                }
            }
        }
    }
}
