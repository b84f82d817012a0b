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
}
