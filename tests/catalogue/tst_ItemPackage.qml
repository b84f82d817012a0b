import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Portal 1.0

TestCase {
    id: testCase

    name: "ItemPackage"

    readonly property string root: TestSupport.home + "/Zemrik/Halvora"

    Portal {
        id: thePortal

        property url url: portalUrl
    }

    Component {
        id: packageComponent

        ItemPackage {
            property bool busy: status === ItemPackage.Downloading
            property var log: []

            portal: thePortal
            onStatusChanged: log.push("status " + status)
            onItemIdChanged: log.push("itemId")
            onPortalChanged: log.push("portal")
            onDownloadStarted: log.push("started")
            onDownloadComplete: log.push("complete")
            onDownloadProgress: {
                if (percentage === 100)
                    log.push("100 of " + secondsRemainingEstimate);
            }
            onDownloadError: log.push("error " + error.message)
        }
    }

    function initTestCase() {
        TestSupport.addPortalItem("tiles", { title: "Tiles", type: "Tile Package", name: "t.tpk" },
                                  { "t.tpk": "tiles" });
        TestSupport.addPortalItem("data", { title: "Data", tags: ["data"] }, { "data/a.txt": "text" });
        thePortal.portalUrl = TestSupport.startPortal([]);
        verify(thePortal.portalUrl.toString() !== "");
    }

    function init() {
        TestSupport.remove(root);
    }

    function test_enumValues() {
        compare([ItemPackage.Null, ItemPackage.Ready, ItemPackage.Downloading, ItemPackage.Error],
                [0, 1, 2, 3]);
    }

    function test_defaults() {
        const item = createTemporaryObject(packageComponent, testCase);
        compare(item.status, ItemPackage.Null);
        compare(item.itemId, "");
        compare(item.portal, thePortal);
        compare(item.busy, false);
    }

    function test_itemIdIsStoredWithoutASignal() {
        const item = createTemporaryObject(packageComponent, testCase, { log: [] });
        item.itemId = "abc";
        compare(item.itemId, "abc");
        compare(item.log.indexOf("itemId"), -1);
    }

    function test_downloadOfTiles() {
        const item = createTemporaryObject(packageComponent, testCase, { log: [] });
        compare(item.exists("tiles"), false);
        item.log = [];
        item.download("tiles");
        compare(item.itemId, "tiles");
        compare(item.busy, true);
        tryCompare(item, "status", ItemPackage.Ready);
        compare(item.busy, false);
        compare(item.log, ["status 2", "100 of 0", "started", "100 of 0", "status 1", "complete"]);
        compare(TestSupport.readText(root + "/Data/tiles/t.tpk"), "tiles");
        compare(item.exists("tiles"), true);
    }

    function test_downloadOfAnArchive() {
        const item = createTemporaryObject(packageComponent, testCase);
        item.download("data");
        tryCompare(item, "status", ItemPackage.Ready);
        compare(TestSupport.readText(root + "/.cache/packages/data/a.txt"), "text");
        compare(item.exists("data"), false);
    }

    function test_errorLeavesTheStatus() {
        const item = createTemporaryObject(packageComponent, testCase, { log: [] });
        item.log = [];
        item.download("nowhere");
        tryVerify(function() {
            return item.log.indexOf("error Item does not exist or is inaccessible.") > 0;
        });
        compare(item.status, ItemPackage.Downloading);
    }

    function test_anotherPortalIsSignalled() {
        const item = createTemporaryObject(packageComponent, testCase, { log: [] });
        item.log = [];
        item.portal = thePortal;
        compare(item.log, []);
        item.portal = null;
        compare(item.log, ["portal"]);
        compare(item.portal, null);
    }
}
