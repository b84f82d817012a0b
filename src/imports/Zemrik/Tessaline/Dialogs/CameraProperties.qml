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

    onCameraChanged: sliderFollower.follow()

    Component.onCompleted: {
        if (!camera)
            console.error("No Camera");
    }

    // Brings the camera's values to the sliders. A binding would meet itself: a slider rounds a value
    // to its steps, and what it shows would go back to the camera.
    Connections {
        id: sliderFollower

        property bool following: false

        target: camera ? camera.imageProcessing : null

        function onContrastChanged() {
            follow();
        }

        function onSaturationChanged() {
            follow();
        }

        function onSharpeningLevelChanged() {
            follow();
        }

        function follow() {
            following = true;
            contrastSlider.value = camera ? camera.imageProcessing.contrast : 0;
            saturationSlider.value = camera ? camera.imageProcessing.saturation : 0;
            sharpeningSlider.value = camera ? camera.imageProcessing.sharpeningLevel : 0;
            following = false;
        }
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
        // The name with a capital is what is written; the mode stays.
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
        id: contrastSlider

        width: parent.width
        label: qsTr("Contrast")
        onValueChanged: {
            if (camera && !sliderFollower.following)
                camera.imageProcessing.contrast = value;
        }
    }

    CameraPropertySlider {
        id: saturationSlider

        width: parent.width
        label: qsTr("Saturation")
        onValueChanged: {
            if (camera && !sliderFollower.following)
                camera.imageProcessing.saturation = value;
        }
    }

    CameraPropertySlider {
        id: sharpeningSlider

        width: parent.width
        label: qsTr("Sharpening")
        onValueChanged: {
            if (camera && !sliderFollower.following)
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
