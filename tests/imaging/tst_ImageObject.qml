import QtQuick 2.15
import QtTest 1.15
import Zemrik.Tessaline 1.0

Item {
    id: root

    width: 200
    height: 200

    Component {
        id: objectComponent

        ImageObject {
            readonly property string summary: empty ? "empty" : width + " x " + height
            readonly property string titles: textKeys.join()
            property int contentChanges: 0

            onImageContentChanged: contentChanges++
        }
    }

    ImageObject {
        id: shown
    }

    Image {
        id: view

        width: 100
        height: 100
        cache: false
        source: shown.url
    }

    Image {
        id: asynchronousView

        x: 100
        width: 100
        height: 100
        asynchronous: true
        cache: false
        source: shown.url
    }

    // Holds a url, which a script's string is not.
    QtObject {
        id: location

        property url value
    }

    SignalSpy {
        id: imageSpy

        signalName: "imageChanged"
    }

    SignalSpy {
        id: contentSpy

        signalName: "imageContentChanged"
    }

    SignalSpy {
        id: textSpy

        signalName: "textChanged"
    }

    TestCase {
        id: testCase

        name: "ImageObject"
        when: windowShown

        function makeObject(width, height, color) {
            const object = createTemporaryObject(objectComponent, root)
            if (width > 0) {
                object.clear(width, height)
                object.fill(color || "red")
            }
            imageSpy.target = contentSpy.target = textSpy.target = object
            clearSpies()
            return object
        }

        function clearSpies() {
            imageSpy.clear()
            contentSpy.clear()
            textSpy.clear()
        }

        function compareSignals(image, content, text) {
            compare(imageSpy.count, image)
            compare(contentSpy.count, content)
            compare(textSpy.count, text)
            clearSpies()
        }

        function init() {
            TestSupport.clearLog()
        }

        function test_newObjectIsEmpty() {
            const object = makeObject()
            verify(object.empty)
            compare(object.width, 0)
            compare(object.height, 0)
            compare(object.depth, 0)
            compare(object.bitPlaneCount, 0)
            compare(object.byteCount, 0)
            compare(object.size, Qt.size(0, 0))
            verify(!object.hasAlphaChannel)
            compare(object.format, ImageObject.ImageFormatInvalid)
            compare(object.textKeys.length, 0)
            compare(Object.keys(object.textValues).length, 0)
            compare(object.url.toString(), "")
            verify(object.availableReadFormats.indexOf("png") >= 0)
            verify(object.availableWriteFormats.indexOf("jpg") >= 0)
        }

        function test_bindingsFollowTheImage() {
            const object = makeObject()
            compare(object.summary, "empty")
            object.clear(20, 10)
            compare(object.summary, "20 x 10")
            compareSignals(1, 1, 1)
            compare(object.format, ImageObject.ImageFormatARGB32)
            compare(object.depth, 32)
            compare(object.bitPlaneCount, 32)
            compare(object.byteCount, 800)
            compare(object.size, Qt.size(20, 10))
            verify(object.hasAlphaChannel)
            object.clear(4, 3, ImageObject.ImageFormatRGB888)
            compare(object.summary, "4 x 3")
            compare(object.format, 13)
            verify(!object.hasAlphaChannel)
            object.clear(10)
            compare(object.summary, "empty")
            compare(object.url.toString(), "")
            clearSpies()
            object.clear()
            compareSignals(0, 0, 0)
        }

        function test_propertiesAreReadOnly() {
            const object = makeObject(4, 4)
            for (const name of ["availableReadFormats", "empty", "width", "size", "format",
                                "textKeys", "textValues", "url"])
                verify(TestSupport.throws(() => object[name] = 1), name)
        }

        function test_imageIsHandedOn() {
            const first = makeObject(4, 4, "blue")
            const second = makeObject()
            second.image = first.image
            compareSignals(1, 1, 1)
            compare(second.size, first.size)
            verify(Qt.colorEqual(second.pixel(0, 0), "blue"))
            second.image = first.image
            compareSignals(0, 0, 0)
            second.setPixel(0, 0, "red")
            verify(Qt.colorEqual(first.pixel(0, 0), "blue"))
            verify(first.url.toString() !== second.url.toString())
        }

        function test_returnedObjectsBelongToTheScript_data() {
            return [
                { tag: "create", make: object => object.create(5, 4), size: Qt.size(5, 4) },
                { tag: "create with a format", size: Qt.size(5, 4),
                  make: object => object.create(5, 4, ImageObject.ImageFormatGrayscale8) },
                { tag: "create nothing", make: object => object.create(0, 4), size: Qt.size(0, 0) },
                { tag: "scaled", make: object => object.scaled(10, 10), size: Qt.size(10, 5) },
                { tag: "scaled exactly", size: Qt.size(10, 10),
                  make: object => object.scaled(10, 10, ImageObject.AspectRatioIgnore,
                                                ImageObject.TransformationModeSmooth) },
                { tag: "scaledToWidth", make: object => object.scaledToWidth(10),
                  size: Qt.size(10, 5) },
                { tag: "scaledToHeight", size: Qt.size(10, 5),
                  make: object => object.scaledToHeight(5, ImageObject.TransformationModeSmooth) },
                { tag: "convertedToFormat", size: Qt.size(20, 10),
                  make: object => object.convertedToFormat(ImageObject.ImageFormatMono) },
                { tag: "convertedToFormat with flags", size: Qt.size(20, 10),
                  make: object => object.convertedToFormat(ImageObject.ImageFormatMono,
                                                           Qt.ThresholdDither) },
                { tag: "mirrored", make: object => object.mirrored(true, false),
                  size: Qt.size(20, 10) },
                { tag: "copy", make: object => object.copy(1, 1, 3, 2), size: Qt.size(3, 2) },
                { tag: "copy rectangle", make: object => object.copy(Qt.rect(1, 1, 3, 2)),
                  size: Qt.size(3, 2) },
                { tag: "rotated", make: object => object.rotated(90), size: Qt.size(10, 20) },
                { tag: "rotated about a point", size: Qt.size(10, 20),
                  make: object => object.rotated(90, 3, 4, ImageObject.TransformationModeSmooth) },
            ]
        }

        function test_returnedObjectsBelongToTheScript(data) {
            const object = makeObject(20, 10)
            let made = data.make(object)
            compare(made.size, data.size)
            compare(made.empty, data.size.width === 0)
            compare(TestSupport.ownership(made), "script")
            compare(object.size, Qt.size(20, 10))
            compareSignals(0, 0, 0)
            TestSupport.watch(made)
            made = null
            TestSupport.collectGarbage()
            tryVerify(() => TestSupport.watchedIsGone())
        }

        function test_verbsChangeTheObject_data() {
            return [
                { tag: "scale", change: object => object.scale(100, 100), size: Qt.size(100, 50) },
                { tag: "scale exactly", size: Qt.size(100, 100),
                  change: object => object.scale(100, 100, ImageObject.AspectRatioIgnore) },
                { tag: "scale to cover", size: Qt.size(200, 100),
                  change: object => object.scale(100, 100,
                                                 ImageObject.AspectRatioKeepByExpanding) },
                { tag: "scaleToWidth", change: object => object.scaleToWidth(50),
                  size: Qt.size(50, 25) },
                { tag: "scaleToHeight", change: object => object.scaleToHeight(50),
                  size: Qt.size(100, 50) },
                { tag: "convertToFormat", size: Qt.size(200, 100),
                  change: object => object.convertToFormat(ImageObject.ImageFormatGrayscale8) },
                { tag: "clip", change: object => object.clip(1, 2, 30, 40), size: Qt.size(30, 40) },
                { tag: "clip rectangle", change: object => object.clip(Qt.rect(1, 2, 30, 40)),
                  size: Qt.size(30, 40) },
                { tag: "rotate", change: object => object.rotate(90), size: Qt.size(100, 200) },
            ]
        }

        function test_verbsChangeTheObject(data) {
            const object = makeObject(200, 100)
            data.change(object)
            compare(object.size, data.size)
            // To cover 100 x 100 the picture needs 200 x 100, which it has.
            const changes = data.tag === "scale to cover" ? 0 : 1
            compareSignals(changes, changes, changes)
        }

        function test_mirrorMovesThePixels() {
            const object = makeObject(20, 10, "red")
            object.setPixel(0, 0, "blue")
            object.mirror(true, false)
            compareSignals(1, 1, 1)
            verify(Qt.colorEqual(object.pixel(19, 0), "blue"))
            object.mirror(false, true)
            verify(Qt.colorEqual(object.pixel(19, 9), "blue"))
            verify(TestSupport.throws(() => object.mirror(true))) // both are required
        }

        function test_pixelsWaitForSync() {
            const object = makeObject(4, 4)
            const url = object.url.toString()
            object.setPixel(1, 1, Qt.rgba(0, 1, 0, 0.5))
            verify(Qt.colorEqual(object.pixel(1, 1), "#00ff00"))
            compareSignals(0, 0, 0)
            verify(object.url.toString() !== url)
            object.fill("#102030")
            verify(Qt.colorEqual(object.pixel(3, 3), "#102030"))
            compareSignals(0, 0, 0)
            object.sync()
            compareSignals(0, 1, 0)
        }

        function test_invertPixels() {
            const object = makeObject(4, 4, "#102030")
            object.invertPixels()
            verify(Qt.colorEqual(object.pixel(0, 0), "#efdfcf"))
            object.invertPixels(ImageObject.InvertRgb)
            verify(Qt.colorEqual(object.pixel(0, 0), "#102030"))
            compareSignals(0, 2, 0)
        }

        function test_textsAreKept() {
            const object = makeObject(4, 4)
            object.setText("Title", "a text")
            compareSignals(0, 0, 1)
            compare(object.titles, "Title")
            compare(object.textValues.Title, "a text")
            compare(object.text("Title"), "a text")
            compare(object.text(), "Title: a text")
            compare(object.text("other"), "")
        }

        function test_saveAndLoad() {
            const folder = TestSupport.makeFolder()
            const object = makeObject(20, 10, "blue")
            verify(object.save(folder + "/a.png"))
            verify(object.save(folder + "/b.data", "bmp"))
            verify(object.save(folder + "/c.jpg", "jpg", 90))
            verify(!object.save(folder + "/nowhere/a.png"))
            verify(!object.save(folder + "/a.xyz"))
            compareSignals(0, 0, 0)
            compare(TestSupport.image(folder + "/a.png").first, "#ff0000ff")

            const other = makeObject()
            verify(other.load(folder + "/a.png"))
            compareSignals(1, 1, 1)
            compare(other.summary, "20 x 10")
            verify(other.load(folder + "/b.data", "bmp"))
            verify(!other.load(folder + "/missing.png"))
            compareSignals(2, 2, 2)
            compare(other.summary, "empty")

            location.value = "file://" + folder + "/c.jpg"
            verify(other.load(location.value))
            compare(other.summary, "20 x 10")
            location.value = "file://" + folder + "/d.png"
            verify(other.save(location.value))
            verify(other.save(location.value, "png", 50))
            verify(TestSupport.exists(folder + "/d.png"))
            location.value = "qrc:/images/defaultThumbnail.png"
            verify(other.load(location.value))
            verify(other.load(":/images/defaultThumbnail.png"))
        }

        function test_loadFromAnObjectsUrl() {
            const source = makeObject(20, 10, "blue")
            const target = makeObject()
            verify(target.load(source.url))
            compareSignals(1, 1, 1)
            compare(target.size, source.size)
            compare(TestSupport.logCount("debug", "Zemrik.Tessaline.Image",
                                         source.url.toString()), 1)
            location.value = source.url.toString().replace("image:", "IMAGE:")
            source.fill("red")
            verify(target.load(location.value))
            verify(Qt.colorEqual(target.pixel(0, 0), "red"))
        }

        // Qt.resolvedUrl() gives a string too.
        function test_stringOfAUrlIsAPath() {
            const source = makeObject(4, 4)
            const object = makeObject(2, 2)
            verify(!object.load(source.url.toString()))
            verify(object.empty)
            compareSignals(1, 1, 1)
            compare(TestSupport.logCount("debug", "Zemrik.Tessaline.Image", "loadImageProvider"), 0)
            verify(!object.load(Qt.resolvedUrl("data/quadrant.jpg")))
            location.value = Qt.resolvedUrl("data/quadrant.jpg")
            verify(object.load(location.value))
            compare(object.summary, "16 x 8")
        }

        function test_onlyImagesAreAssigned() {
            const object = makeObject(4, 4)
            for (const value of [null, undefined, "picture.png", 1, {}])
                verify(TestSupport.throws(() => object.image = value))
            compareSignals(0, 0, 0)
            compare(object.summary, "4 x 4")
            object.image = makeObject().image
            verify(object.empty)
        }

        function test_loadFromProvidersFails() {
            const object = makeObject(4, 4)
            location.value = "image://nobody/x"
            verify(!object.load(location.value))
            compare(TestSupport.logCount("warning", "Zemrik.Tessaline.Image",
                                         "No image provider: \"nobody\""), 1)
            location.value = "image://imageobject/0:1"
            verify(!object.load(location.value))
            compare(TestSupport.logCount("warning", "Zemrik.Tessaline.Image",
                                         "No live image: \"0:1\""), 1)
            compare(TestSupport.logCount("warning", "Zemrik.Tessaline.Image",
                                         "No image retrieved: \"0:1\""), 1)
            compareSignals(0, 0, 0)

            const made = object.create(2, 2) // has no context, and so no engine
            verify(!made.load(object.url))
            compare(TestSupport.logCount("critical", "Zemrik.Tessaline.Image", "No QML engine"), 1)
        }

        function test_imagesInAnArrayMakeAnUndo() {
            const object = makeObject(20, 10, "red")
            const undo = []
            undo.push(object.image)
            object.setPixel(0, 0, "blue")
            undo.push(object.image)
            object.rotate(90)
            object.image = undo.pop()
            compare(object.summary, "20 x 10")
            verify(Qt.colorEqual(object.pixel(0, 0), "blue"))
            object.image = undo.pop()
            verify(Qt.colorEqual(object.pixel(0, 0), "red"))
        }

        function test_emptyRectangleCopiesAll() {
            compare(makeObject(20, 10).copy(Qt.rect(0, 0, 0, 0)).size, Qt.size(20, 10))
        }

        function test_enumsReachTheScript() {
            compare(ImageObject.AspectRatioIgnore, 0)
            compare(ImageObject.AspectRatioKeep, 1)
            compare(ImageObject.AspectRatioKeepByExpanding, 2)
            compare(ImageObject.TransformationModeFast, 0)
            compare(ImageObject.TransformationModeSmooth, 1)
            compare(ImageObject.InvertRgb, 0)
            compare(ImageObject.InvertRgba, 1)
            compare(ImageObject.ImageFormatARGB32_Premultiplied, 6)
            compare(ImageObject.ImageFormatGrayscale8, 24)
        }

        function test_absurdNumbersAreHarmless() {
            const object = makeObject(4, 4)
            object.convertToFormat(4711)
            verify(object.empty)
            object.clear(4, 4, -3)
            verify(object.empty)
            object.clear(4, 4)
            object.fill("red")
            object.scale(2, 2, 99, 99)
            object.invertPixels(99)
            object.rotate(NaN)
            object.rotate(Infinity)
            object.clear(4, 4) // whatever came of it, the object still works
            compare(object.summary, "4 x 4")
        }

        function colorAt(item) {
            return grabImage(item).pixel(50, 50)
        }

        function test_elementsShowTheObject() {
            shown.clear(100, 100)
            shown.fill("red")
            shown.sync()
            for (const item of [view, asynchronousView]) {
                tryCompare(item, "status", Image.Ready)
                tryVerify(() => Qt.colorEqual(colorAt(item), "#ff0000"))
            }
            shown.fill("blue")
            verify(Qt.colorEqual(colorAt(view), "#ff0000")) // not before sync()
            shown.sync()
            for (const item of [view, asynchronousView])
                tryVerify(() => Qt.colorEqual(colorAt(item), "#0000ff"))
            shown.invertPixels()
            for (const item of [view, asynchronousView])
                tryVerify(() => Qt.colorEqual(colorAt(item), "#ffff00"))
            shown.clear()
            for (const item of [view, asynchronousView])
                tryCompare(item, "status", Image.Null)
        }
    }
}
