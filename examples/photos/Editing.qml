// A picture that is being edited. Each step makes a new ImageObject out of the one before, which is
// kept: undoing is going back to it.
import QtQuick 2.15
import Zemrik.Tessaline 1.0

QtObject {
    id: editing

    property var picture: null         // the ImageObject as it is now
    property var earlier: []           // those before, the oldest first
    property var saved: null           // the one that the file holds
    readonly property bool changed: picture !== saved
    readonly property int memoryLimit: 512 * 1024 * 1024   // bytes of earlier pictures that are kept
    readonly property ImageObject _file: ImageObject {}

    // `orientation` is the EXIF tag of that name.
    function load(path, orientation) {
        close();
        if (!_file.load(path))
            return false;
        _setUpright(orientation);
        // Inverting would change the numbers of a table of colours, not the colours.
        if (_file.depth < 32)
            _file.convertToFormat(_file.hasAlphaChannel ? ImageObject.ImageFormatARGB32 : ImageObject.ImageFormatRGB32);
        picture = _file.copy(0, 0, _file.width, _file.height);
        saved = picture;
        _file.clear();
        return true;
    }
    function close() {
        picture = null;
        saved = null;
        earlier = [];
    }
    function undo() {
        if (earlier.length === 0)
            return;
        picture = earlier[earlier.length - 1];
        earlier = earlier.slice(0, -1);
    }

    function rotate(angle) {
        return _step(picture.rotated(angle));
    }
    function mirror(horizontal, vertical) {
        return _step(picture.mirrored(horizontal, vertical));
    }
    function crop(area) {
        return _step(picture.copy(area.x, area.y, area.width, area.height));
    }
    function scale(width, height) {
        return _step(picture.scaled(width, height, ImageObject.AspectRatioIgnore, ImageObject.TransformationModeSmooth));
    }
    // This operation has no form that returns a new object.
    function invert() {
        const copy = picture.copy(0, 0, picture.width, picture.height);
        copy.invertPixels();
        return _step(copy);
    }

    // Writes beside the file and then takes its place, so that a full disk doesn't cost the picture
    // that was there.
    function save(folder, name) {
        const format = name.replace(/^.*\./, "").toLowerCase();
        const part = ".part-" + Date.now() + "." + format;
        const quality = format === "jpg" || format === "jpeg" ? 92 : -1;
        const written = picture.save(folder.filePath(part), format, quality)
            && folder.removeFile(name) && folder.renameFile(part, name);
        if (written)
            saved = picture;
        else if (folder.fileExists(part))
            folder.removeFile(part);
        return written;
    }
    function canWrite(name) {
        return _file.availableWriteFormats.includes(name.replace(/^.*\./, "").toLowerCase());
    }

    function _step(next) {
        if (next.empty)
            return false;
        const kept = earlier.concat([ picture ]);
        let bytes = kept.reduce((sum, image) => sum + image.byteCount, 0);
        while (kept.length > 1 && bytes > memoryLimit)
            bytes -= kept.shift().byteCount;
        earlier = kept;
        picture = next;
        return true;
    }
    function _setUpright(orientation) {
        switch (orientation) {
        case 2: _file.mirror(true, false); break;
        case 3: _file.rotate(180); break;
        case 4: _file.mirror(false, true); break;
        case 5: _file.mirror(true, false); _file.rotate(270); break;
        case 6: _file.rotate(90); break;
        case 7: _file.mirror(true, false); _file.rotate(90); break;
        case 8: _file.rotate(270); break;
        }
    }
}
