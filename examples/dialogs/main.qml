/*
    Dialogs: opens the camera, the chooser and the sign-in dialog, and shows what each gives back.

    Each dialog is declared once and opened as often as needed. What it has to say stands in its
    properties when accepted() or rejected() arrives.
*/
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Dialogs 1.0
import Zemrik.Tessaline.Portal 1.0

App {
    id: app

    readonly property real unit: Tessaline.displayScaleFactor
    readonly property color accent: "#2f6b4f"
    readonly property int columnCount: width >= 900 * unit ? 3 : width >= 600 * unit ? 2 : 1

    width: 1000 * unit
    height: 640 * unit

    // The camera's folder must exist: the dialog doesn't make it.
    readonly property FileFolder pictures: Tessaline.fileFolder(captureDialog.capturePath)

    ImageCaptureDialog {
        id: captureDialog

        objectName: "captureDialog"
        onAccepted: captureCard.outcome = "Saved as " + imagePath
        onRejected: captureCard.outcome = "Cancelled"
    }

    ImageChooserDialog {
        id: chooserDialog

        objectName: "chooserDialog"
        showFolders: foldersSwitch.checked
        onAccepted: {
            chooserPreview.picture = imageUrl;
            chooserCard.outcome = imagePath;
        }
        onRejected: chooserCard.outcome = "Cancelled"
    }

    Portal {
        id: portal

        name: "the portal"
        portalUrl: "http://localhost:8080"
        onSignedInChanged: portalCard.outcome = signedIn ? "Signed in as " + username : "Signed out"
    }

    PortalDialog {
        id: portalDialog

        objectName: "portalDialog"
        portal: portal
        bannerColor: app.accent
        onRejected: portalCard.outcome = "Cancelled"
    }

    Rectangle {
        anchors.fill: parent
        color: "#eef3f0"
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.round(60 * app.unit)
            color: app.accent

            Column {
                anchors { left: parent.left; right: parent.right; margins: 16 * app.unit; verticalCenter: parent.verticalCenter }

                Text {
                    width: parent.width
                    objectName: "title"
                    text: app.info.title
                    color: "white"
                    font { pixelSize: 20 * app.unit; bold: true }
                    elide: Text.ElideRight
                }
                Text {
                    width: parent.width
                    text: app.info.itemInfo.snippet || ""
                    color: "#d5e6dc"
                    font.pixelSize: 12 * app.unit
                    elide: Text.ElideRight
                }
            }
        }

        Flickable {
            id: page

            Layout.fillWidth: true
            Layout.fillHeight: true
            objectName: "page"
            contentHeight: cards.height + 32 * app.unit
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}

            GridLayout {
                id: cards

                x: 16 * app.unit
                y: 16 * app.unit
                width: page.width - 32 * app.unit
                columns: app.columnCount
                columnSpacing: 16 * app.unit
                rowSpacing: 16 * app.unit

                Card {
                    id: captureCard

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1    // all columns equally wide
                    unit: app.unit
                    title: "Take a picture"
                    about: "A live view, a shutter and the camera's settings. The first picture ends the dialog."
                    action: "Open the camera"
                    actionName: "captureButton"
                    outcomeName: "captureOutcome"
                    onTriggered: {
                        app.pictures.makeFolder();
                        captureDialog.open();
                    }

                    Preview {
                        Layout.fillWidth: true
                        pictureName: "capturePicture"
                        unit: app.unit
                        picture: captureDialog.imageUrl
                        hint: "Pictures go to " + captureDialog.capturePath
                    }
                }

                Card {
                    id: chooserCard

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1
                    unit: app.unit
                    title: "Choose a picture"
                    about: "Thumbnails of a folder. A double click opens a folder or takes a picture."
                    action: "Choose"
                    actionName: "chooserButton"
                    outcomeName: "chooserOutcome"
                    onTriggered: chooserDialog.open()

                    Preview {
                        id: chooserPreview

                        Layout.fillWidth: true
                        pictureName: "chooserPicture"
                        unit: app.unit
                        hint: "The chosen picture appears here"
                    }
                    Switch {
                        id: foldersSwitch

                        objectName: "foldersSwitch"
                        text: "Show folders"
                        checked: true
                        font.pixelSize: 13 * app.unit
                        palette.windowText: "#1f2a24"
                    }
                }

                Card {
                    id: portalCard

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1
                    unit: app.unit
                    title: "Sign in"
                    about: "A name and a password for a portal. tessaline-portal is one to try it with: "
                           + "the name and the password are both \"demo\"."
                    action: portal.signedIn ? "Sign out" : "Sign in"
                    actionName: "portalButton"
                    outcomeName: "portalOutcome"
                    onTriggered: portal.signedIn ? portal.signOut() : portalDialog.show("")

                    Text {
                        Layout.fillWidth: true
                        text: "Portal"
                        color: "#5c6b63"
                        font.pixelSize: 12 * app.unit
                    }
                    TextField {
                        id: portalField

                        Layout.fillWidth: true
                        objectName: "portalField"
                        text: portal.portalUrl
                        font.pixelSize: 14 * app.unit
                        selectByMouse: true
                        onEditingFinished: portal.portalUrl = text
                    }
                }
            }
        }
    }
}
