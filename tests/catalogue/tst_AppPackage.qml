import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Portal 1.0

TestCase {
    id: testCase

    name: "AppPackage"

    readonly property string root: TestSupport.home + "/Zemrik/Halvora"

    Portal {
        id: thePortal

        property url url: portalUrl
    }

    AppInfoList {
        id: catalogue

        portal: thePortal
        signinRequired: false
    }

    Component {
        id: packageComponent

        AppPackage {
            property bool busy: status === ItemPackage.Downloading
            property string shown: error.message
            property string title: appInfo.title
            property var log: []

            portal: thePortal
            onStatusChanged: log.push("status " + status)
            onAppInfoChanged: log.push("appInfo")
            onPortalChanged: log.push("portal")
            onStatusMessageChanged: log.push(statusMessage.replace("\r\n", "|"))
            onErrorChanged: log.push("error " + error.message)
            onProgress: {
                if (percentage === 100)
                    log.push("100 of " + secondsRemainingEstimate);
            }
        }
    }

    function initTestCase() {
        const app = { "data/main.qml": "Item {}", "data/appinfo.json": "{}" };
        TestSupport.addPortalItem("simple", { title: "Simple" }, app);
        TestSupport.addPortalItem("template", { title: "Template", typeKeywords: ["Template"] }, app);
        TestSupport.addPortalItem("depends", { title: "Depends" },
                                  { "data/appinfo.json": '{"dependencies": ["tiles"]}' });
        TestSupport.addPortalItem("tiles", { title: "Tiles", type: "Tile Package", name: "t.tpk" },
                                  { "t.tpk": "tiles" });
        TestSupport.addPortalItem("lost", { title: "Lost" },
                                  { "data/appinfo.json": '{"dependencies": ["nowhere", "tiles"]}' });
        thePortal.portalUrl = TestSupport.startPortal([]);
        verify(thePortal.portalUrl.toString() !== "");
        catalogue.filter.types = AppInfo.App | AppInfo.Template;
    }

    function init() {
        TestSupport.remove(root);
        search();
    }

    function search() {
        catalogue.refresh(true);
        tryCompare(catalogue, "isRefreshing", false);
    }

    function app(id) {
        for (let i = 0; i < catalogue.apps.length; ++i) {
            if (catalogue.apps[i].itemId === id)
                return catalogue.apps[i];
        }
        return null;
    }

    function makePackage(id) {
        const item = createTemporaryObject(packageComponent, testCase, { log: [] });
        item.appInfo = app(id);
        item.log = [];
        return item;
    }

    function test_defaults() {
        const item = createTemporaryObject(packageComponent, testCase);
        compare(item.status, ItemPackage.Null);
        compare(item.statusMessage, "");
        compare(item.error.message, "");
        compare(item.appInfo.itemId, "");
        compare(item.portal, thePortal);
        compare([typeof item.status, item.status === 0], ["number", true]);
        compare(TestSupport.ownership(item.appInfo), "native");
        compare(TestSupport.ownership(item.error), "native");
        verify(TestSupport.throws(function() { item.status = ItemPackage.Ready; }));
        verify(TestSupport.throws(function() { item.appInfo = item; }));
        verify(TestSupport.throws(function() { item.appInfo = undefined; }));
    }

    function test_downloadMakesTheAppLocal() {
        const found = app("simple");
        compare(found.isLocal, false);
        const item = makePackage("simple");
        compare(item.title, "Simple");
        item.download();
        compare(item.busy, true);
        tryCompare(item, "status", ItemPackage.Ready);
        compare(item.log, ["status 2", "100 of 0", "100 of 0", "appInfo", "status 1"]);
        compare(item.appInfo.isLocal, true);
        compare(item.appInfo.path, root + "/Apps/simple");
        compare(TestSupport.readText(root + "/Apps/simple/main.qml"), "Item {}");
        search();
        compare(app("simple").isLocal, true);
    }

    function test_appInfoIsACopy() {
        const item = makePackage("simple");
        verify(item.appInfo !== app("simple"));
        compare(item.appInfo.itemId, "simple");
    }

    function test_templatesGoToTheirFolder() {
        const item = makePackage("template");
        item.download();
        tryCompare(item, "status", ItemPackage.Ready);
        verify(TestSupport.exists(root + "/Templates/template/main.qml"));
    }

    function test_dependenciesAreTold() {
        const item = makePackage("depends");
        item.download();
        tryCompare(item, "status", ItemPackage.Ready);
        compare(item.log, ["status 2", "100 of 0", "100 of 0", "appInfo", "100 of 0",
                           "Downloading dependency 1 of 1|Tiles", "100 of 0", "status 1"]);
        compare(TestSupport.readText(root + "/Data/tiles/t.tpk"), "tiles");
        item.log = [];
        item.download();   // the dependency is there now
        tryCompare(item, "status", ItemPackage.Ready);
        // A request that is sent again tells its former progress first.
        compare(item.log, ["status 2", "100 of 0", "100 of 0", "100 of 0", "100 of 0", "appInfo",
                           "status 1"]);
        compare(item.statusMessage, "Downloading dependency 1 of 1\r\nTiles");   // never cleared
    }

    function test_errorIsToldAndRetriedAndCleared() {
        const item = makePackage("lost");
        item.download();
        tryCompare(item, "status", ItemPackage.Error);
        compare(item.log.slice(-2), ["error Item does not exist or is inaccessible.", "status 3"]);
        compare(item.shown, "Item does not exist or is inaccessible.");
        verify(!TestSupport.exists(root + "/Data/tiles"));   // what follows isn't tried
        TestSupport.mkpath(root + "/Data/nowhere");
        item.download();
        compare(item.error.message, "");
        tryCompare(item, "status", ItemPackage.Ready);
        item.appInfo = app("simple");
        compare(item.status, ItemPackage.Null);
    }

    function test_localAppIsOverwrittenInPlace() {
        let item = makePackage("simple");
        item.download();
        tryCompare(item, "status", ItemPackage.Ready);
        TestSupport.writeText(root + "/Apps/simple/main.qml", "changed");
        TestSupport.writeText(root + "/Apps/simple/mine.txt", "mine");
        search();
        compare(app("simple").isLocal, true);
        item = makePackage("simple");
        item.download();
        tryCompare(item, "status", ItemPackage.Ready);
        compare(TestSupport.readText(root + "/Apps/simple/main.qml"), "Item {}");
        compare(TestSupport.readText(root + "/Apps/simple/mine.txt"), "mine");
    }

    function test_folderNamedByItsIdIsEnough() {
        TestSupport.mkpath(root + "/Apps/simple");
        TestSupport.writeText(root + "/Apps/simple/appinfo.json", "{}");
        const item = createTemporaryObject(packageComponent, testCase);
        const local = createTemporaryQmlObject("import Zemrik.Tessaline 1.0; AppInfo {}", testCase);
        local.path = root + "/Apps/simple";
        compare(local.itemId, "");
        compare(local.isLocal, true);
        item.appInfo = local;
        item.download();
        tryCompare(item, "status", ItemPackage.Ready);
        compare(item.appInfo.title, "Simple");
    }

    function test_nullAppInfo() {
        const item = makePackage("simple");
        TestSupport.clearLog();
        item.appInfo = null;
        compare(item.log, ["appInfo"]);
        compare(item.appInfo.itemId, "");
        compare(TestSupport.logCount("debug", "Zemrik.Tessaline.Package", "Null app info"), 1);
    }
}
