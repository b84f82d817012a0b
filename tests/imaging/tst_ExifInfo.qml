import QtQuick 2.15
import QtTest 1.15
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase

    name: "ExifInfo"

    Component {
        id: infoComponent

        ExifInfo {
            readonly property string make: isExifValid ? imageValue(271)[0] : "none"
        }
    }

    SignalSpy {
        id: spy

        signalName: "exifChanged"
    }

    function test_newInfoIsEmpty() {
        const info = createTemporaryObject(infoComponent, testCase)
        verify(!info.isExifValid)
        compare(info.imageTags.length, 0)
        compare(info.extendedTags.length, 0)
        compare(info.gpsTags.length, 0)
        verify(isNaN(info.gpsLongitude))
        verify(isNaN(info.gpsLatitude))
        verify(isNaN(info.gpsAltitude))
        compare(info.imageValue(271), undefined)
        compare(info.extendedValue(33434), undefined)
        compare(info.gpsValue(2), undefined)
    }

    function test_pictureGivesItsTags() {
        const info = createTemporaryObject(infoComponent, testCase)
        spy.target = info
        spy.clear()
        info.url = Qt.resolvedUrl("data/quadrant.jpg")
        compare(spy.count, 1)
        verify(info.isExifValid)
        compare(info.make, "Maker")
        compare(info.imageValue(271).length, 1)
        compare(info.imageValue(274), 6)
        verify(info.imageTags.indexOf(271) >= 0)
        compare(info.gpsLatitude, -10.5)
        compare(info.gpsLongitude, -20.25)
        compare(info.gpsAltitude, 12.5)
        compare(info.gpsValue(5), 1)

        info.filePath = ""
        compare(spy.count, 2)
        compare(info.make, "none")
        verify(isNaN(info.gpsLatitude))
    }

    FileFolder {
        id: folder
    }

    // One Undefined byte, and two of them.
    readonly property var undefinedBytes: [
        0xff, 0xd8, 0xff, 0xe1, 0, 46, 0x45, 0x78, 0x69, 0x66, 0, 0,
        0x49, 0x49, 42, 0, 8, 0, 0, 0, 2, 0,
        0x0f, 1, 7, 0, 1, 0, 0, 0, 0x61, 0, 0, 0,
        0x10, 1, 7, 0, 2, 0, 0, 0, 0x61, 0x62, 0, 0,
        0, 0, 0, 0]

    function test_undefinedBytesAreArrayBuffers() {
        folder.path = TestSupport.makeFolder()
        verify(folder.writeFile("undefined.jpg", new Uint8Array(undefinedBytes).buffer))
        const info = createTemporaryObject(infoComponent, testCase,
                                           { filePath: folder.filePath("undefined.jpg") })
        verify(info.isExifValid)
        compare(info.imageTags, [271, 272])
        const one = info.imageValue(271)
        verify(one instanceof ArrayBuffer)
        compare(Array.from(new Uint8Array(one)), [0x61])
        const two = info.imageValue(272)
        verify(Array.isArray(two))
        compare(two.length, 1)
        compare(Array.from(new Uint8Array(two[0])), [0x61, 0x62])
    }

    function test_sameFileSignalsOnce() {
        const info = createTemporaryObject(infoComponent, testCase)
        spy.target = info
        spy.clear()
        info.url = Qt.resolvedUrl("data/quadrant.jpg")
        info.url = Qt.resolvedUrl("data/quadrant.jpg")
        info.filePath = info.filePath
        compare(spy.count, 1)
        compare(info.gpsValue(0), [2, 3, 0, 0])
        compare(info.imageTags.length, 6)
    }
}
