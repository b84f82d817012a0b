/*
    Photos: the pictures of a folder, what the camera wrote into them, and an editor.

    The folder is a FileFolder (Album), its grid decodes what is in sight only. A picture's page reads
    the EXIF tags through ExifInfo and shows them as people read them (Tags.js). The editor makes a new
    ImageObject for each step and keeps the earlier ones for undo (Editing).
*/
import QtQuick 2.15
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Dialogs 1.0

App {
    id: app

    readonly property real unit: Tessaline.displayScaleFactor
    property string page: "grid"    // or "photo", "edit"

    width: Math.min(1000 * unit, 0.95 * Qt.application.screens[0].desktopAvailableWidth)
    height: Math.min(680 * unit, 0.9 * Qt.application.screens[0].desktopAvailableHeight)

    Component.onCompleted: gridPage.focusGrid()

    function openFolder(path) {
        return photoAlbum.open(path);
    }
    function showGrid() {
        page = "grid";
        gridPage.select(photoPage.name);
        gridPage.focusGrid();
    }
    function showPhoto(name) {
        photoPage.name = name;
        page = "photo";
        photoPage.forceActiveFocus();
    }
    function edit() {
        page = "edit";
        editPage.begin(photoPage.name);
    }

    Album { id: photoAlbum }

    ImageChooserDialog {
        id: chooser

        objectName: "chooserDialog"
        filter: photoAlbum.patterns
        onAccepted: {
            const info = Tessaline.fileInfo(imagePath);
            if (app.openFolder(info.path))
                app.showPhoto(info.fileName);
        }
    }

    GridPage {
        id: gridPage

        anchors.fill: parent
        visible: app.page === "grid"
        focus: visible
        album: photoAlbum
        unit: app.unit
        onOpened: app.showPhoto(name)
        onChooserWanted: chooser.open()
    }
    PhotoPage {
        id: photoPage

        objectName: "photoPage"
        anchors.fill: parent
        visible: app.page === "photo"
        focus: visible
        album: photoAlbum
        unit: app.unit
        onBack: app.showGrid()
        onMoved: app.showPhoto(name)
        onEditWanted: app.edit()
    }
    EditPage {
        id: editPage

        objectName: "editPage"
        anchors.fill: parent
        visible: app.page === "edit"
        focus: visible
        album: photoAlbum
        unit: app.unit
        onBack: app.showPhoto(photoPage.name)
        onSaved: {
            photoAlbum.read();
            photoPage.name = name;
        }
    }
}
