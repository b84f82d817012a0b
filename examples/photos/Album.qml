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

    // Whether the file is laid out as a picture. Qt Quick would find out as well, but with a warning for
    // each file that is none.
    function isPicture(name) {
        const path = folder.filePath(name);
        if (!Tessaline.fileInfo(path).isReadable)
            return false;
        const file = Tessaline.file(path);
        if (!file.open(File.OpenModeReadOnly))
            return false;
        const head = _bytesAt(file, 0, 12);
        const known = head.startsWith("\x89PNG\r\n\x1a\n") ? _bytesAt(file, Math.max(0, Tessaline.fileInfo(path).size - 12), 12).includes("IEND")
                    : head.startsWith("\xff\xd8\xff") ? _hasScan(file)
                    : /^(GIF8|BM|RIFF[^]{4}WEBP|II\*\0|MM\0\*)/.test(head);
        file.close();
        return known;
    }
    // As a text of one character for each byte.
    function _bytesAt(file, position, count) {
        file.position = position;
        return String.fromCharCode.apply(null, Array.from(new Uint8Array(file.read(count))));
    }
    // Whether a JPEG's segments, each with its length, lead to the pixels.
    function _hasScan(file) {
        for (let position = 2, count = 0; count < 1000; ++count) {
            const segment = _bytesAt(file, position, 4);
            if (segment.length < 4 || segment[0] !== "\xff")
                return false;
            if (segment[1] === "\xda")
                return true;
            position += segment[1] === "\xff" ? 1 : 2 + segment.charCodeAt(2) * 256 + segment.charCodeAt(3);
        }
        return false;
    }
}
