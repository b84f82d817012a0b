import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase

    name: "AppInfo"

    property string folder

    function init() {
        folder = TestSupport.makeFolder();
    }

    function write(name, json) {
        verify(TestSupport.writeText(folder + "/" + name, JSON.stringify(json)));
    }

    function read(name) {
        return JSON.parse(TestSupport.readText(folder + "/" + name));
    }

    function makeInfo() {
        return createTemporaryObject(infoComponent, testCase, { path: folder });
    }

    Component {
        id: infoComponent

        AppInfo {}
    }

    Component {
        id: boundComponent

        QtObject {
            property AppInfo info: AppInfo {}
            property string title: info.title
            property string version: info.version
            property string source: info.source
            property bool local: info.isLocal
            property bool valid: info.isValid
            property bool pinned: info.pinned
            property var item: info.itemInfo
            property var properties: info.properties
            property int count: info.dependencies.length
            property bool online: info.isOnlineRequired
        }
    }

    function test_emptyElementIsNoApp() {
        const info = createTemporaryObject(infoComponent, testCase);
        compare(info.path, "");
        compare(info.isValid, false);
        compare(info.isLocal, false);
        compare(info.version, "1.0.1");
        compare(info.type, AppInfo.App);
        compare(info.typeString, "App");
    }

    function test_enumValues() {
        compare([AppInfo.Unknown, AppInfo.App, AppInfo.Template, AppInfo.Tool], [0, 1, 2, 4]);
    }

    function test_bindingsFollowThePath() {
        write("appinfo.json", {
            version: { major: 2 }, properties: { a: 1 }, dependencies: ["x"], onlineRequired: true
        });
        write("iteminfo.json", { title: "Hello" });
        write(".info.json", { pinned: true });
        const bound = createTemporaryObject(boundComponent, testCase);
        compare(bound.local, false);

        bound.info.path = folder;

        compare(bound.title, "Hello");
        compare(bound.version, "2.0.1");
        compare(bound.source, "file://" + folder + "/main.qml");
        compare(bound.local, true);
        compare(bound.valid, true);
        compare(bound.item.title, "Hello");
        compare(bound.properties.a, 1);
        compare(bound.count, 1);
        compare(bound.online, true);
        compare(bound.info.pathUrl, "file://" + folder);

        bound.info.pathUrl = "file://" + TestSupport.makeFolder();
        compare(bound.local, false);
        compare(bound.title, "");
    }

    // The path signals nothing about the user's marks: a bound value stays until it is set.
    function test_pinnedIsOnlySignalledWhenSet() {
        write("appinfo.json", {});
        write(".info.json", { pinned: true });
        const bound = createTemporaryObject(boundComponent, testCase);
        bound.info.path = folder;
        compare(bound.pinned, false);
        compare(bound.info.pinned, true);

        bound.info.pinned = false;
        compare(bound.pinned, false);
        bound.info.pinned = true;
        compare(bound.pinned, true);
        compare(read(".info.json").pinned, true);
    }

    function test_bindingsFollowRefreshAndSetters() {
        write("appinfo.json", {});
        const bound = createTemporaryObject(boundComponent, testCase);
        bound.info.path = folder;

        write("iteminfo.json", { title: "From disk" });
        bound.info.refresh();
        compare(bound.title, "From disk");

        bound.info.title = "Set";
        compare(bound.title, "Set");
        compare(bound.item.title, "Set");
        bound.info.majorVersion = 7;
        compare(bound.version, "7.0.1");
        bound.info.dependencies = ["a", "b"];
        compare(bound.count, 2);
        bound.info.setValue("properties", { b: 2 });
        compare(bound.properties.b, 2);
    }

    function test_scriptValuesAreStoredAsJson_data() {
        return [
            { tag: "array", value: [1, "a", { b: [null, true] }] },
            { tag: "object", value: { a: { b: [1, 2] }, c: "x" } },
            { tag: "empty array", value: [] },
            { tag: "empty object", value: {} },
            { tag: "text", value: "text" },
            { tag: "number", value: 1.5 },
            { tag: "bool", value: true }
        ];
    }

    function test_scriptValuesAreStoredAsJson(row) {
        write("appinfo.json", {});
        const info = makeInfo();

        info.setValue("key", row.value);
        info.setValue("itemInfo/key", row.value);
        compare(JSON.stringify(info.value("key")), JSON.stringify(row.value));
        info.write();

        compare(JSON.stringify(read("appinfo.json").key), JSON.stringify(row.value));
        compare(JSON.stringify(read("iteminfo.json").key), JSON.stringify(row.value));
    }

    property var held

    function test_heldScriptValueIsStoredAsJson() {
        write("appinfo.json", {});
        const info = makeInfo();
        held = { list: [1, 2] };

        info.setValue("key", held);
        info.write();

        compare(read("appinfo.json").key.list, [1, 2]);
    }

    function test_dateIsStoredAsMilliseconds() {
        write("appinfo.json", {});
        const info = makeInfo();

        info.setValue("itemInfo/created", new Date(1500000000123));

        compare(info.itemInfo.created, 1500000000123);
        compare(info.created.getTime(), 1500000000123);
        info.write();
        compare(read("iteminfo.json").created, 1500000000123);
    }

    function test_valueAndItsDefaults() {
        write("appinfo.json", { a: 0, title: "app", properties: { p: false } });
        write("iteminfo.json", { title: "item" });
        const info = makeInfo();

        compare(info.value("a"), 0);
        compare(info.value("a", 5), 0);
        compare(info.value("missing"), undefined);
        compare(info.value("missing", 5), 5);
        compare(info.value("missing", { x: 1 }).x, 1);
        compare(info.value("itemInfo/title"), "item");
        compare(info.value("title"), "app");
        compare(info.value("itemInfo/", "default"), "default");
        compare(info.propertyValue("p"), false);
        compare(info.propertyValue("q"), undefined);
        compare(info.propertyValue("q", "d"), "d");
    }

    function test_dependenciesFromAScript() {
        write("appinfo.json", {});
        const info = makeInfo();

        info.dependencies = ["abc", { itemId: "def", name: "map" }, 5];

        compare(info.dependencies.length, 2);
        compare(info.dependencies[0], { itemId: "abc", name: "abc" });
        compare(info.dependencies[1], { itemId: "def", name: "map" });
        info.write();
        compare(read("appinfo.json").dependencies, ["abc", { itemId: "def", name: "map" }, 5]);
        compare(makeInfo().dependencies.length, 2);
    }

    function test_tagsAreTrimmed() {
        const info = makeInfo();
        info.tags = [" a ", "", "b"];
        compare(info.tags.length, 2);
        compare(info.tags[0], "a");
        compare(info.tags[1], "b");
    }

    function test_jsonShowsTheCompletedMap() {
        write("appinfo.json", { z: 1 });
        const info = makeInfo();
        compare(info.json.z, 1);
        compare(info.json.mainFile, "main.qml");
        compare(info.json.type, "App");
    }

    function test_writeOfNoAppIsLogged() {
        const info = makeInfo();
        TestSupport.clearLog();
        info.write();
        compare(TestSupport.logCount("critical", "Zemrik.Tessaline.Core", "Not a local app"), 1);
        verify(!TestSupport.exists(folder + "/appinfo.json"));
    }

    function test_readOnlyPropertiesRefuseAScript_data() {
        return ["isValid", "isEditable", "source", "helpFile", "json", "properties", "itemInfo",
                "version", "type", "typeString", "thumbnail", "created", "modified", "owner",
                "access", "avgRating", "numRatings", "isOnlineRequired", "isLocal", "isPublished",
                "isUpdateAvailable", "isUpdatedLocally"].map(name => ({ tag: name, name: name }));
    }

    function test_readOnlyPropertiesRefuseAScript(row) {
        const info = makeInfo();
        let refused = false;
        try {
            info[row.name] = info[row.name];
        } catch (error) {
            refused = /read-only/.test(error.message);
        }
        verify(refused);
    }

    function test_averageRatingIsAnInteger() {
        write("iteminfo.json", { avgRating: 3.2, numRatings: 11 });
        const info = makeInfo();
        compare(info.avgRating, 3);
        compare(info.numRatings, 11);
    }
}
