// A number: its name, a slider and what it is. moved() comes when the user changes it.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

RowLayout {
    id: setting

    property real unit: 1
    property string name
    property alias from: slider.from
    property alias to: slider.to
    property alias value: slider.value
    property alias stepSize: slider.stepSize
    property alias sliderName: slider.objectName
    property int decimals: 0

    signal moved(real value)

    Layout.fillWidth: true
    spacing: 8 * unit

    Text {
        Layout.preferredWidth: 112 * setting.unit
        text: setting.name
        color: "#2b1f28"
        font.pixelSize: 12 * setting.unit
        elide: Text.ElideRight
    }
    Slider {
        id: slider

        Layout.fillWidth: true
        Layout.minimumWidth: 60 * setting.unit
        implicitHeight: 28 * setting.unit
        padding: 0
        onMoved: setting.moved(value)

        background: Rectangle {
            y: (slider.height - height) / 2
            width: slider.width
            height: 4 * setting.unit
            radius: height / 2
            color: "#ddcfd9"

            Rectangle {
                // From the beginning, which is at the right in some languages.
                x: slider.mirrored ? parent.width - width : 0
                width: slider.position * parent.width
                height: parent.height
                radius: parent.radius
                color: "#7a3b69"
            }
        }
        handle: Rectangle {
            x: slider.visualPosition * (slider.width - width)
            y: (slider.height - height) / 2
            width: 18 * setting.unit
            height: width
            radius: width / 2
            color: slider.pressed ? "#ecd9e6" : "white"
            border { width: (slider.visualFocus ? 3 : 2) * setting.unit; color: "#7a3b69" }
        }
    }
    Text {
        Layout.preferredWidth: 40 * setting.unit
        text: slider.value.toFixed(setting.decimals)
        color: "#6b5b67"
        font.pixelSize: 12 * setting.unit
        horizontalAlignment: Text.AlignRight
    }
}
