// The rows of camera settings in the capture dialog.
import QtQuick 2.3
import QtQuick.Controls 1.2
import QtMultimedia 5.0
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Controls 1.0

Column {
    id: configColumn

    property Camera camera
    property VideoOutput videoOutput

    spacing: 8

    Component.onCompleted: {
        if (!camera)
            console.error("No Camera");
    }

    CameraPropertyChooser {
        width: parent.width
        label: qsTr("Flash")
        model: ListModel {
            id: flashModel

            Component.onCompleted: {
                append({ icon: "images/camera_flash_auto.png", value: Camera.FlashAuto, label: qsTr("Auto") });
                append({ icon: "images/camera_flash_off.png", value: Camera.FlashOff, label: qsTr("Off") });
                append({ icon: "images/camera_flash_redeye.png", value: Camera.FlashRedEyeReduction, label: qsTr("Red Eye") });
                append({ icon: "images/camera_flash_fill.png", value: Camera.FlashFill, label: qsTr("Fill") });
            }
        }
        value: camera ? camera.flash.mode : Camera.FlashAuto
        // The name with a capital is what is written: the camera has no such property, says so, and
        // keeps its mode.
        onSelected: {
            if (camera)
                camera.flash.Mode = value;
        }
    }

    CameraPropertyChooser {
        width: parent.width
        label: qsTr("White Balance")
        model: ListModel {
            id: whiteBalanceModel

            Component.onCompleted: {
                append({ icon: "images/camera_auto_mode.png", value: CameraImageProcessing.WhiteBalanceAuto, label: qsTr("Auto") });
                append({ icon: "images/camera_white_balance_sunny.png", value: CameraImageProcessing.WhiteBalanceSunlight, label: qsTr("Sunlight") });
                append({ icon: "images/camera_white_balance_cloudy.png", value: CameraImageProcessing.WhiteBalanceCloudy, label: qsTr("Cloudy") });
                append({ icon: "images/camera_white_balance_incandescent.png", value: CameraImageProcessing.WhiteBalanceTungsten, label: qsTr("Tungsten") });
                append({ icon: "images/camera_white_balance_flourescent.png", value: CameraImageProcessing.WhiteBalanceFluorescent, label: qsTr("Fluorescent") });
            }
        }
        value: camera ? camera.imageProcessing.whiteBalanceMode : CameraImageProcessing.WhiteBalanceAuto
        onSelected: {
            if (camera)
                camera.imageProcessing.whiteBalanceMode = value;
        }
    }

    CameraPropertySlider {
        width: parent.width
        label: qsTr("Contrast")
        value: camera ? camera.imageProcessing.contrast : 0
        onValueChanged: {
            if (camera)
                camera.imageProcessing.contrast = value;
        }
    }

    CameraPropertySlider {
        width: parent.width
        label: qsTr("Saturation")
        value: camera ? camera.imageProcessing.saturation : 0
        onValueChanged: {
            if (camera)
                camera.imageProcessing.saturation = value;
        }
    }

    CameraPropertySlider {
        width: parent.width
        label: qsTr("Sharpening")
        value: camera ? camera.imageProcessing.sharpeningLevel : 0
        onValueChanged: {
            if (camera)
                camera.imageProcessing.sharpeningLevel = value;
        }
    }

    CameraPropertySection {
        width: parent.width
        text: qsTr("Orientation")
    }

    Switch {
        id: orientationSwitch

        onCheckedChanged: {
            if (videoOutput)
                videoOutput.autoOrientation = checked;
        }
    }

    // A click writes `checked`, which ends a binding that stands there itself.
    Binding {
        target: orientationSwitch
        property: "checked"
        value: videoOutput ? videoOutput.autoOrientation : false
    }

    CameraPropertyText {
        width: parent.width
        text: videoOutput ? "Orientation:" + videoOutput.orientation.toString() + " " + videoOutput.autoOrientation.toString() : ""
    }

    CameraPropertySection {
        width: parent.width
        text: qsTr("Camera")
    }

    CameraComboBox {
        width: parent.width
        camera: configColumn.camera
    }
}
