// A setting from -1 to 1.
import QtQuick 2.3
import QtQuick.Controls 1.2

Column {
    property alias value: slider.value
    property alias label: section.text

    spacing: 4

    CameraPropertySection {
        id: section

        width: parent.width
    }

    Slider {
        id: slider

        width: parent.width
        minimumValue: -1
        maximumValue: 1
        stepSize: 0.2
        tickmarksEnabled: true
        updateValueWhileDragging: true
    }
}
