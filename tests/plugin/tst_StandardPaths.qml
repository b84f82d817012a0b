import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    name: "StandardPaths"

    readonly property StandardPaths paths: Tessaline.standardPaths

    function test_cannotBeCreated() {
        try {
            Qt.createQmlObject("import Zemrik.Tessaline 1.0; StandardPaths {}", this);
            fail("created");
        } catch (error) {
            compare(error.qmlErrors[0].message, "The Zemrik type StandardPaths is not creatable");
        }
    }

    function test_enumerationValues_data() {
        return [
            "DesktopLocation", "DocumentsLocation", "FontsLocation", "ApplicationsLocation",
            "MusicLocation", "MoviesLocation", "PicturesLocation", "TempLocation", "HomeLocation",
            "DataLocation", "CacheLocation", "GenericDataLocation", "RuntimeLocation",
            "ConfigLocation", "DownloadLocation", "GenericCacheLocation", "GenericConfigLocation",
            "AppDataLocation"
        ].map(function(name, value) {
            return { tag: name, value: value };
        }).concat([
            { tag: "AppLocalDataLocation", value: 9 },
            { tag: "LocateFile", value: 0 },
            { tag: "LocateDirectory", value: 1 },
        ]);
    }

    function test_enumerationValues(data) {
        compare(StandardPaths[data.tag], data.value);
    }

    function test_locations() {
        compare(paths.writableLocation(StandardPaths.HomeLocation), TestSupport.home);
        compare(paths.standardLocations(StandardPaths.HomeLocation), [TestSupport.home]);
        compare(paths.displayName(StandardPaths.HomeLocation), "Home");
        compare(paths.writableLocation(StandardPaths.GenericCacheLocation),
                TestSupport.home + "/.cache");
    }

    function test_locate() {
        var config = paths.writableLocation(StandardPaths.GenericConfigLocation);
        verify(TestSupport.mkpath(config + "/tst-folder"));
        verify(TestSupport.writeText(config + "/tst-file", "x"));
        compare(paths.locate(StandardPaths.GenericConfigLocation, "tst-file"), config + "/tst-file");
        compare(paths.locate(StandardPaths.GenericConfigLocation, "tst-folder"), "");
        compare(paths.locate(StandardPaths.GenericConfigLocation, "tst-folder",
                             StandardPaths.LocateDirectory), config + "/tst-folder");
        compare(paths.locateAll(StandardPaths.GenericConfigLocation, "tst-file"),
                [config + "/tst-file"]);
        compare(paths.locateAll(StandardPaths.GenericConfigLocation, "tst-folder",
                                StandardPaths.LocateDirectory), [config + "/tst-folder"]);
    }

    function test_folders() {
        var folder = paths.writableFolder(StandardPaths.HomeLocation);
        verify(folder instanceof FileFolder);
        compare(folder.path, TestSupport.home);
        verify(paths.writableFolder(StandardPaths.HomeLocation) !== folder);
        compare(paths.defaultFolder(StandardPaths.HomeLocation).path, TestSupport.home);
    }

    function test_noFolderIsNull() {
        compare(paths.writableFolder(99), null);
        compare(paths.defaultFolder(99), null);
    }

    function test_foldersLastAsLongAsAScriptHoldsThem() {
        var folder = paths.writableFolder(StandardPaths.HomeLocation);
        for (var i = 0; i < 100; ++i)
            paths.defaultFolder(StandardPaths.HomeLocation);
        TestSupport.collectGarbage();
        compare(folder.path, TestSupport.home);
    }
}
