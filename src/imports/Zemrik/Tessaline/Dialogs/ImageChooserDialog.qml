import QtQuick 2.3
import QtQuick.Controls 1.2
import QtQuick.Dialogs 1.2
import QtQuick.Window 2.2
import Zemrik.Tessaline 1.0

/*!
    \qmltype ImageChooserDialog
    \inqmlmodule Zemrik.Tessaline.Dialogs
    \brief A dialog for picking a picture, with thumbnails and folder navigation.

    \badcode
    ImageChooserDialog {
        id: chooser
        onAccepted: photo.source = imageUrl
    }

    Button {
        text: "Choose"
        onClicked: chooser.open()
    }
    \endcode

    A click or an arrow key selects, a double click opens a folder or takes a picture. While a folder is
    selected the dialog can't be accepted. It begins in the user's folder of pictures, stays where the
    user leaves it, and reads the folder each time it opens. It is a Dialog of QtQuick.Dialogs 1.2, as
    large as the parent of the document's root times sizeRatio, or 600 by 400 without one.
*/
Dialog {
    id: dialog

    /*! Whether subfolders and the way up are listed. True by default. */
    property bool showFolders: true
    /*! The name patterns of the pictures, \c{[ "*.jpg", "*.png" ]} by default. */
    property var filter: [ "*.jpg", "*.png" ]
    /*! The picture that was selected last, also after cancelling. */
    property string imagePath
    /*! The same as a URL. */
    property url imageUrl
    /*! True on Android. */
    readonly property bool fullScreen: Qt.platform.os === "android"
    /*! The share of the parent's size: 0.98 where \l fullScreen is true, otherwise 0.9. */
    readonly property real sizeRatio: fullScreen ? 0.98 : 0.9
    /*! Whether the system draws the dialog's frame: where it isn't application-modal, and on Android and
        iOS. */
    readonly property bool osFrame: modality !== Qt.ApplicationModal
                                    || Qt.platform.os === "android" || Qt.platform.os === "ios"

    visible: false
    title: qsTr("Images")
    standardButtons: StandardButton.Ok + StandardButton.Cancel
    width: typeof parent !== "undefined" && parent ? parent.width * sizeRatio : 600
    height: typeof parent !== "undefined" && parent ? parent.height * sizeRatio : 400

    onVisibleChanged: {
        if (!visible)
            return;
        _refresh();
        // Qt's dialog takes the focus for itself when it opens; the arrow keys are for the pictures.
        imagesView.forceActiveFocus();
    }
    onAccepted: {
    }
    // Return would accept even where no Ok is offered.
    onActionChosen: {
        if (action.button === StandardButton.Ok && !(standardButtons & StandardButton.Ok))
            action.accepted = false;
    }

    // Qt's dialog would vanish in silence where its window is closed by the frame.
    Connections {
        target: imagesView.Window.window

        function onClosing(event) {
            // On some systems the dialog is a part of the applet's window.
            if (visible && contentItem.parent === imagesView.Window.window.contentItem)
                reject();
        }
    }

    Item {
        // Over the padding of Qt's dialog, but not over its buttons.
        anchors { fill: parent; leftMargin: -12; rightMargin: -12; topMargin: -12 }
        LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
        LayoutMirroring.childrenInherit: true

        GridView {
            id: imagesView

            anchors { fill: parent; margins: 10; bottomMargin: 50 }
            cellWidth: Tessaline.displayScaleFactor * 130
            cellHeight: cellWidth * 1.12
            delegate: imageDelegate
            highlight: highlightDelegate
            highlightFollowsCurrentItem: true
            clip: true
            focus: true

            onCurrentIndexChanged: _select()
        }

        // Where the view stands in a long folder, in its right margin.
        Rectangle {
            anchors { left: imagesView.right; leftMargin: 3 }
            y: imagesView.y + imagesView.visibleArea.yPosition * imagesView.height
            width: 4
            height: Math.max(20, imagesView.visibleArea.heightRatio * imagesView.height)
            radius: 2
            color: "grey"
            visible: imagesView.visibleArea.heightRatio < 1
        }
    }

    SystemPalette {
        id: systemPalette
    }

    FileFolder {
        id: imagesFolder

        path: Tessaline.standardPaths.writableLocation(StandardPaths.PicturesLocation)

        // The folder at the start is read when the dialog opens, not before.
        Component.onCompleted: pathChanged.connect(_refresh)
    }

    Component {
        id: highlightDelegate

        Rectangle {
            color: "lightsteelblue"
            radius: 5
        }
    }

    Component {
        id: imageDelegate

        Item {
            id: imageItem

            readonly property string subFolderName: modelData.substr(1)
            readonly property bool isSubFolder: modelData.substr(0, 1) === "~"
            // Ready where the picture's header claims no more than its bytes can hold: the decoder would
            // believe it.
            readonly property Image pictureCheck: Image {
                cache: false
                source: imageItem.isSubFolder ? ""
                      : "image://picturecheck/" + encodeURIComponent(imagesFolder.filePath(modelData))
            }

            width: imagesView.cellWidth
            height: imagesView.cellHeight

            Rectangle {
                id: imageFrame

                anchors { left: parent.left; right: parent.right; top: parent.top; margins: 5 }
                height: width
                color: "transparent"
                border { width: imageItem.isSubFolder ? 0 : 1; color: "lightgrey" }

                Image {
                    anchors { fill: parent; margins: 2 }
                    fillMode: Image.PreserveAspectFit
                    asynchronous: true
                    // As many pixels as the cell shows: a folder of photos stays light.
                    sourceSize {
                        width: imagesView.cellWidth * Screen.devicePixelRatio
                        height: imagesView.cellWidth * Screen.devicePixelRatio
                    }
                    source: imageItem.pictureCheck.status === Image.Ready ? imagesFolder.fileUrl(modelData)
                          : !imageItem.isSubFolder ? ""
                          : imageItem.subFolderName > "" ? "images/folder_open.png"
                          : "images/folder_open-arrow_up.png"
                }
            }

            Text {
                anchors {
                    left: parent.left; right: parent.right; top: imageFrame.bottom; bottom: parent.bottom
                    leftMargin: 2; rightMargin: 2
                }
                text: imageItem.isSubFolder ? imageItem.subFolderName : modelData
                color: imageItem.GridView.isCurrentItem ? "black" : systemPalette.windowText
                textFormat: Text.PlainText
                visible: text > ""
                font.pointSize: 12
                fontSizeMode: Text.Fit
                minimumPointSize: 10
                wrapMode: Text.NoWrap
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
            }

            MouseArea {
                anchors.fill: parent
                onClicked: imagesView.currentIndex = index
                onDoubleClicked: {
                    imagesView.currentIndex = index;
                    if (!imageItem.isSubFolder)
                        dialog.click(StandardButton.Ok);
                    else if (imageItem.subFolderName > "")
                        imagesFolder.cd(imageItem.subFolderName);
                    else
                        imagesFolder.cdUp();
                }
            }
        }
    }

    // A picture is its name, a folder "~" and its name, the way up "~" alone.
    function _refresh() {
        var files = imagesFolder.fileNames(filter);
        standardButtons = files.length > 0 ? StandardButton.Cancel + StandardButton.Ok : StandardButton.Cancel;
        if (showFolders) {
            files.push("~");
            imagesFolder.folderNames().forEach(function (name) {
                files.push("~" + name);
            });
        }
        imagesView.model = files;
        // The view keeps its index, without a signal, where the list is the same as before.
        _select();
    }

    // A folder can't be taken, a picture can.
    function _select() {
        if (imagesView.currentIndex < 0)
            return;
        var entry = imagesView.model[imagesView.currentIndex];
        if (entry.substr(0, 1) === "~") {
            standardButtons = StandardButton.Cancel;
        } else {
            standardButtons = StandardButton.Cancel + StandardButton.Ok;
            imagePath = imagesFolder.filePath(entry);
            imageUrl = imagesFolder.fileUrl(entry);
        }
    }
}
