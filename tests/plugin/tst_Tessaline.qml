import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    name: "Tessaline"

    function test_versionIsTheLibrarys() {
        compare(Tessaline.version, "1.2.15");
    }
}
