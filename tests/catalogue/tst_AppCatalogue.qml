import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Portal 1.0

TestCase {
    id: testCase

    name: "AppCatalogue"

    readonly property string root: TestSupport.home + "/Zemrik/Halvora"

    Portal {
        id: thePortal

        property url url: portalUrl
    }

    Component {
        id: listComponent

        QtObject {
            property AppInfoList list: AppInfoList {
                onRefreshStart: parent.log.push("start")
                onRefreshComplete: parent.log.push("complete")
                property QtObject parent
            }
            property var log: []
            property int count: list.apps.length
            property int shown: list.filteredApps.length
            property string tags: list.tags.join("|")
            property string owners: list.owners.join("|")
            property bool busy: list.isRefreshing
            property int updates: list.onlineUpdatesCount

            Component.onCompleted: list.parent = this
        }
    }

    Component {
        id: spyComponent

        SignalSpy {}
    }

    function initTestCase() {
        for (let i = 0; i < 60; ++i)
            TestSupport.addPortalItem("app" + i, { title: "App " + i, tags: ["app", i % 2 ? "odd" : "even"],
                                                   modified: 4000000000000 }, {});
        TestSupport.addPortalItem("tool", { title: "Tool", typeKeywords: ["Tool"] }, {});
        thePortal.portalUrl = TestSupport.startPortal([]);
        verify(thePortal.portalUrl.toString() !== "");
    }

    function init() {
        thePortal.signOut();
        TestSupport.remove(root);
        writeApp("Apps/one", { id: "one", title: "One", owner: "jo", tags: ["local", "qml"] });
        writeApp("Apps/app7", { id: "app7", title: "Seven", owner: "al", tags: ["local"] });
    }

    function writeApp(folder, itemInfo) {
        verify(TestSupport.mkpath(root + "/" + folder));
        verify(TestSupport.writeText(root + "/" + folder + "/appinfo.json", "{}"));
        verify(TestSupport.writeText(root + "/" + folder + "/iteminfo.json", JSON.stringify(itemInfo)));
    }

    function makeList() {
        return createTemporaryObject(listComponent, testCase, { log: [] });
    }

    function titles(apps) {
        const list = [];
        for (let i = 0; i < apps.length; ++i)
            list.push(apps[i].title);
        return list;
    }

    function test_defaults() {
        const list = makeList().list;
        compare([list.signinRequired, list.autoRefresh, list.isRefreshing], [true, true, false]);
        compare([list.onlineUpdatesCount, list.localUpdatesCount], [0, 0]);
        compare([list.nullTitle, list.nullThumbnail.toString()], ["", ""]);
        compare(list.portal, null);
        verify(list.searchQuery.startsWith("((type:\"Native Application\" AND NOT type:"));
        const filter = list.filter;
        compare([filter.tags, filter.owners, filter.access], [[], [], []]);
        compare([filter.text, filter.owner, filter.types, filter.hidden], ["", "", AppInfo.App, true]);
        compare([filter.published, filter.updateAvailable, filter.updatedLocally, filter.local,
                 filter.onlineOnly], [false, false, false, false, false]);
    }

    function test_objectsOfTheListSurviveACollection() {
        const made = makeList();
        made.list.refresh();
        const first = made.list.apps[0];
        compare(TestSupport.ownership(first), "native");
        compare(TestSupport.ownership(made.list.filter), "native");
        made.list.filter.text = "One";
        made.list.refresh();   // other objects: the former ones live on
        TestSupport.collectGarbage();
        compare(first.title, "One");
        compare(made.list.filter.text, "One");
        compare(titles(made.list.filteredApps), ["One"]);
    }

    function test_emptyListMayBeReadInItsOwnHandlers() {
        TestSupport.remove(root);
        const made = makeList();
        let calls = 0;
        made.list.countsChanged.connect(function() {
            ++calls;
            compare(made.list.apps.length, 0);
        });
        made.list.refresh();
        verify(calls > 1);
    }

    function test_valuesOfOtherTypes() {
        const filter = makeList().list.filter;
        filter.text = "x";
        filter.text = null;
        compare(filter.text, "");
        filter.tags = "one";
        compare(filter.tags, ["one"]);
        verify(TestSupport.throws(function() { filter.tags = undefined; }));
        verify(TestSupport.throws(function() { filter.types = "App"; }));
        compare([filter.tags, filter.types], [["one"], AppInfo.App]);
    }

    function test_localApps() {
        const made = makeList();
        compare(made.count, 2);
        made.list.refresh();
        compare(made.log, ["start", "complete"]);
        compare(titles(made.list.apps), ["One", "Seven"]);
        compare(made.tags, "local");
        compare(made.owners, "al|jo");
        compare(made.busy, false);
        writeApp("Apps/two", { id: "two", title: "Two", owner: "zo" });
        compare(made.count, 2);
        made.list.refresh(false);
        compare(made.count, 3);
        compare(made.owners, "al|jo|zo");
    }

    function test_filterText_data() {
        return [
            { tag: "title", text: "sEv", shown: 1 },
            { tag: "tag", text: "#local", shown: 2 },
            { tag: "owner", text: "@JO", shown: 1 },
            { tag: "either", text: "@jo @al", shown: 2 },
            { tag: "nothing", text: "xyz", shown: 0 },
            { tag: "empty", text: "", shown: 2 }
        ];
    }

    function test_filterText(row) {
        const made = makeList();
        made.list.refresh();
        compare(made.shown, 2);
        made.list.filter.text = row.text;
        compare(made.shown, row.shown);
    }

    function test_filterProperties_data() {
        return [
            { tag: "tags", value: ["a"] }, { tag: "owners", value: ["a"] }, { tag: "access", value: ["a"] },
            { tag: "hidden", value: false }, { tag: "types", value: AppInfo.App | AppInfo.Tool },
            { tag: "text", value: "x" }, { tag: "published", value: true },
            { tag: "updateAvailable", value: true }, { tag: "updatedLocally", value: true },
            { tag: "local", value: true }, { tag: "onlineOnly", value: true }, { tag: "owner", value: "x" }
        ];
    }

    function test_filterProperties(row) {
        const filter = makeList().list.filter;
        const own = createTemporaryObject(spyComponent, testCase,
                                          { target: filter, signalName: row.tag + "Changed" });
        const any = createTemporaryObject(spyComponent, testCase,
                                          { target: filter, signalName: "filterChanged" });
        const before = filter[row.tag];
        filter[row.tag] = row.value;
        compare(filter[row.tag], row.value);
        compare([own.count, any.count], [1, 1]);
        filter[row.tag] = row.value;
        compare([own.count, any.count], [1, 1]);
        filter.clear();
        compare(filter[row.tag], before);
        compare([own.count, any.count], [2, 2]);
    }

    function test_sorting() {
        const made = makeList();
        made.list.refresh();
        made.list.sortByName(AppInfoList.Descending);
        compare(titles(made.list.apps), ["One", "Seven"]);   // shows at the next refresh
        made.list.refresh();
        compare(titles(made.list.apps), ["Seven", "One"]);
        made.list.clearSort();
        made.list.refresh();
        compare(titles(made.list.apps), ["One", "Seven"]);
    }

    function test_nullEntry() {
        const made = makeList();
        made.list.nullTitle = "None";
        made.list.nullThumbnail = "qrc:/images/defaultThumbnail.png";
        made.list.refresh();
        compare(titles(made.list.apps), ["None", "One", "Seven"]);
        compare(made.list.apps[0].isLocal, false);
        made.list.filter.local = true;
        compare(titles(made.list.filteredApps), ["One", "Seven"]);
    }

    function test_searchNeedsASignIn() {
        const made = makeList();
        made.list.portal = thePortal;
        made.list.refresh(true);
        compare(made.log, ["start", "complete"]);
        compare(made.count, 2);
        compare(made.list.signinRequired, true);
    }

    function test_search() {
        const made = makeList();
        made.list.portal = thePortal;
        made.list.signinRequired = false;
        made.list.refresh(true);
        compare(made.busy, true);
        tryCompare(made, "busy", false);
        compare(made.log, ["start", "complete"]);
        compare(made.count, 61);        // app7 once, no tool
        compare(made.tags, "even|local|odd");
        compare(made.updates, 1);
        made.list.filter.onlineOnly = true;
        compare(made.shown, 59);
        made.list.filter.onlineOnly = false;
        made.list.filter.updateAvailable = true;
        compare(titles(made.list.filteredApps), ["Seven"]);
    }

    function test_signInSearchesAndSignOutForgets() {
        const made = makeList();
        made.list.portal = thePortal;
        thePortal.signIn("demo", "demo");
        tryCompare(made, "count", 61);
        compare(made.updates, 1);
        thePortal.signOut();
        compare(made.count, 2);
        compare(made.updates, 0);
    }

    function test_portalItemsWithoutAPictureShowTheDefault() {
        const made = makeList();
        made.list.portal = thePortal;
        made.list.signinRequired = false;
        made.list.refresh(true);
        tryCompare(made, "busy", false);
        for (let i = 0; i < made.list.apps.length; ++i) {
            if (!made.list.apps[i].isLocal)
                verify(made.list.apps[i].thumbnail.toString().endsWith("/images/defaultThumbnail.png"));
        }
    }
}
