// The folder that is open, and what lies in it.
import QtQuick 2.15
import Zemrik.Tessaline 1.0

QtObject {
    id: album

    readonly property FileFolder folder: FileFolder {}
    property var folders: []       // names, as those of the pictures
    property var pictures: []
    readonly property var entries: folders.map(name => ({ name: name, isFolder: true }))
                                   .concat(pictures.map(name => ({ name: name, isFolder: false })))
    property string failure        // why another folder could not be opened

    // What this machine can read of these.
    readonly property var patterns: [ "jpg", "jpeg", "png", "gif", "bmp", "webp", "tif", "tiff" ]
                                    .filter(format => _formats.availableReadFormats.includes(format)).map(format => "*." + format)
    readonly property ImageObject _formats: ImageObject {}

    Component.onCompleted: {
        const start = Tessaline.standardPaths.writableLocation(StandardPaths.PicturesLocation);
        folder.path = Tessaline.fileInfo(start).isFolder ? start : "~";
        read();
    }

    // Asks the disk anew.
    function read() {
        folder.refresh();
        folders = folder.folderNames();
        pictures = folder.fileNames(patterns);
    }
    // A whole path, which may begin with "~".
    function open(path) {
        const info = Tessaline.fileInfo(path);
        if (!info.isFolder)
            failure = qsTr("There is no folder “%1”.").arg(path);
        else if (!info.isReadable)
            failure = qsTr("The folder “%1” can't be read.").arg(path);
        else
            failure = "";
        if (failure > "")
            return false;
        folder.path = path;
        read();
        return true;
    }
    function up() {
        return open(folder.filePath(".."));
    }

    // Whether the file begins as pictures do, and has an end where the format tells. Qt Quick would
    // find out as well, but with a warning for each file.
    function isPicture(name) {
        const path = folder.filePath(name);
        if (!Tessaline.fileInfo(path).isReadable)
            return false;
        const file = Tessaline.file(path);
        if (!file.open(File.OpenModeReadOnly))
            return false;
        const head = _latin1(file.read(12));
        const isPng = head.startsWith("\x89PNG\r\n\x1a\n");
        if (isPng)
            file.position = Math.max(0, Tessaline.fileInfo(path).size - 12);
        const isWhole = !isPng || _latin1(file.read(12)).includes("IEND");
        file.close();
        return isWhole && (isPng || /^(\xff\xd8\xff|GIF8|BM|RIFF[^]{4}WEBP|II\*\0|MM\0\*)/.test(head));
    }
    function _latin1(bytes) {
        return String.fromCharCode.apply(null, Array.from(new Uint8Array(bytes)));
    }
}
