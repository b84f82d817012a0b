import QtQuick 2.3
import QtQuick.Controls 1.2
import QtQuick.Dialogs 1.2
import QtQuick.Window 2.2
import QtMultimedia 5.0
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Controls 1.0

/*!
    \qmltype ImageCaptureDialog
    \inqmlmodule Zemrik.Tessaline.Dialogs
    \brief A camera dialog: live view, shutter and camera settings.

    \badcode
    ImageCaptureDialog {
        id: camera
        onAccepted: photo.source = imageUrl
    }

    Button {
        text: "Take a picture"
        onClicked: camera.open()
    }
    \endcode

    The picture that is taken ends the dialog at once, as accepted. The camera is loaded only while the
    dialog is visible. It is a Dialog of QtQuick.Dialogs 1.2, as large as the parent of the document's
    root times sizeRatio, or 600 by 400 without one.
*/
Dialog {
    id: dialog

    /*! The folder of new pictures, which must exist. The user's folder of pictures by default. A picture
        is named after the time: \c{IMG-yyyyMMdd-HHmmss.jpg}. */
    property string capturePath: Tessaline.standardPaths.writableLocation(StandardPaths.PicturesLocation)
    /*! The picture that was saved last; empty before the first. */
    property string imagePath
    /*! The same as a URL. It stays as it was if the dialog is cancelled. */
    property url imageUrl
    /*! True on Android. */
    readonly property bool fullScreen: Qt.platform.os === "android"
    /*! The share of the parent's size: 1 where \l fullScreen is true, otherwise 0.95. */
    readonly property real sizeRatio: fullScreen ? 1 : 0.95

    visible: false
    title: qsTr("Capture")
    standardButtons: StandardButton.NoButton
    width: typeof parent !== "undefined" && parent ? parent.width * sizeRatio : 600
    height: typeof parent !== "undefined" && parent ? parent.height * sizeRatio : 400

    // Return would accept the dialog without a picture.
    onActionChosen: {
        if (action.button === StandardButton.Ok && action.key)
            action.accepted = false;
    }

    // Qt's dialog would vanish in silence where its window is closed by the frame.
    Connections {
        target: dialogItem.Window.window

        function onClosing(event) {
            // On some systems the dialog is a part of the applet's window.
            if (visible && contentItem.parent === dialogItem.Window.window.contentItem)
                reject();
        }
    }

    Item {
        // Over the padding of Qt's dialog.
        anchors { fill: parent; leftMargin: -12; rightMargin: -12; topMargin: -12 }

        Rectangle {
            id: dialogItem

            anchors.fill: parent
            color: "grey"
            LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
            LayoutMirroring.childrenInherit: true

            // Inside CameraProperties the names camera and videoOutput are its own properties.
            readonly property Camera liveCamera: camera
            readonly property VideoOutput liveOutput: videoOutput

            function capture() {
                var fileName = "IMG-" + new Date().toLocaleString(Qt.locale(), "yyyyMMdd-HHmmss") + ".jpg";
                camera.imageCapture.captureToLocation(capturePath + "/" + fileName);
            }

            Camera {
                id: camera

                cameraState: dialog.visible ? Camera.ActiveState : Camera.UnloadedState
                captureMode: Camera.CaptureStillImage
                exposure {
                    exposureCompensation: -1.0
                    exposureMode: Camera.ExposurePortrait
                }
                imageCapture {
                    onImageMetadataAvailable: console.log("Image Metadata Callback : ", key, value)
                    onImageCaptured: {
                    }
                    onCapturedImagePathChanged: console.log("Camera image path changed: ",
                                                            camera.imageCapture.capturedImagePath)
                    onImageSaved: {
                        dialog.imagePath = path;
                        dialog.imageUrl = Tessaline.resolvedPathUrl(path);
                        console.debug("onImageSaved", path);
                        dialog.click(StandardButton.Ok);
                    }
                }
            }

            VideoOutput {
                id: videoOutput

                anchors.fill: parent
                source: camera
                fillMode: VideoOutput.PreserveAspectFit

                MouseArea {
                    anchors.fill: parent
                    onClicked: {
                    }
                }

                ImageButton {
                    anchors { right: parent.right; top: parent.top; margins: 10 }
                    width: Tessaline.displayScaleFactor * 32
                    height: width
                    source: "images/close.png"
                    visible: dialog.modality == Qt.WindowModal
                    onClicked: dialog.click(StandardButton.Cancel)
                }

                ImageButton {
                    anchors { left: parent.left; bottom: parent.bottom; margins: 10 }
                    width: Tessaline.displayScaleFactor * 32
                    height: width
                    source: "images/gear.png"
                    visible: !cameraPropertiesPanel.visible
                    onClicked: cameraPropertiesPanel.show()
                }

                ImageButton {
                    anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; margins: 20 }
                    width: Tessaline.displayScaleFactor * 60
                    height: Tessaline.displayScaleFactor * 40
                    source: "images/camera.png"
                    onClicked: dialogItem.capture()
                }
            }

            Rectangle {
                id: cameraPropertiesPanel

                anchors { top: parent.top; bottom: parent.bottom }
                width: Tessaline.displayScaleFactor * 200
                // From the side where the gear is.
                x: LayoutMirroring.enabled ? parent.width - (opacity > 0 ? width : 0)
                                           : (opacity > 0 ? 0 : -width)
                color: "#80808080"
                opacity: 0
                visible: opacity > 0

                Behavior on x {
                    NumberAnimation { duration: 200 }
                }
                Behavior on opacity {
                    NumberAnimation { duration: 200 }
                }

                function show() {
                    opacity = 1;
                }

                function hide() {
                    opacity = 0;
                }

                Rectangle {
                    id: panelTitle

                    anchors { left: parent.left; right: parent.right; top: parent.top }
                    height: Tessaline.displayScaleFactor * 40
                    color: "#60000000"

                    ImageButton {
                        anchors { right: parent.right; verticalCenter: parent.verticalCenter; margins: 8 }
                        width: Tessaline.displayScaleFactor * 28
                        height: width
                        source: "images/close.png"
                        visible: dialog.modality == Qt.WindowModal
                        onClicked: cameraPropertiesPanel.hide()
                    }
                }

                Flickable {
                    anchors {
                        left: parent.left; right: parent.right; top: panelTitle.bottom; bottom: parent.bottom
                        margins: 8
                    }
                    clip: true
                    contentWidth: width
                    contentHeight: cameraProperties.height
                    flickableDirection: Flickable.VerticalFlick

                    CameraProperties {
                        id: cameraProperties

                        width: parent.width
                        camera: dialogItem.liveCamera
                        videoOutput: dialogItem.liveOutput
                    }
                }
            }
        }
    }
}
