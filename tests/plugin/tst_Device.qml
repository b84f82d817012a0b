import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    name: "Device"

    function test_cannotBeCreated() {
        try {
            Qt.createQmlObject("import Zemrik.Tessaline 1.0; Device {}", this);
            fail("created");
        } catch (error) {
            compare(error.qmlErrors[0].message, "The Zemrik type Device is not creatable");
        }
    }

    function test_positionSourcesAreAList() {
        verify(Tessaline.device instanceof Device);
        var sources = Tessaline.device.availablePositionSources;
        compare(typeof sources.length, "number");
        sources.forEach(function(source) { verify(source.length > 0); });
    }
}
