import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0
import "data"

Item {
    id: root

    width: 80
    height: 60

    readonly property string boundHome: Tessaline.userHomePath
    readonly property string boundHomeFolder: Tessaline.userHomeFolder.path
    readonly property string boundStorage: Tessaline.offlineStoragePath
    readonly property int boundScale: Math.round(Tessaline.displayScaleFactor * 1000)
    readonly property int boundImports: Tessaline.importPathList.length
    readonly property bool boundOnline: Tessaline.isOnline

    property url someUrl: "https://example.com/a"
    property var nothing
    property list<QtObject> objects: [QtObject {}]

    Rectangle { id: rectangle; width: 80; height: 60; color: "#00ff00" }
    Special { id: special; visible: false }
    Special { id: extendedSpecial; visible: false; property int extra }
    Item { id: extended; property int extra }
    Timer { id: timer }

    TestCase {
        id: testCase

        name: "Tessaline"
        when: windowShown

        SignalSpy { id: homeSpy; target: Tessaline; signalName: "userHomePathChanged" }
        SignalSpy { id: scaleSpy; target: Tessaline; signalName: "displayScaleFactorChanged" }
        SignalSpy { id: importSpy; target: Tessaline; signalName: "importPathListChanged" }
        SignalSpy { id: storageSpy; target: Tessaline; signalName: "offlineStoragePathChanged" }

        function init() {
            for (const spy of [homeSpy, scaleSpy, importSpy, storageSpy])
                spy.clear();
            TestSupport.clearLog();
        }

        function isLogged(level, category, words) {
            return TestSupport.logCount(level, "Zemrik.Tessaline." + category, words) > 0;
        }

        // System values

        function test_versionIsTheLibrarys() {
            compare(Tessaline.version, "1.2.15");
        }

        function test_systemTextsAreThere_data() {
            return ["osName", "osDisplayName", "osVersion", "kernelType", "kernelVersion",
                    "qtVersion", "sslLibraryVersion", "sslLibraryBuildVersion"]
                .map(name => ({ tag: name }));
        }

        function test_systemTextsAreThere(row) {
            compare(typeof Tessaline[row.tag], "string");
            verify(Tessaline[row.tag].length > 0);
            verify(TestSupport.throws(() => Tessaline[row.tag] = "x"));
        }

        function test_childrenKeepTheirIdentity_data() {
            return [{ tag: "settings", type: "Settings" }, { tag: "environment", type: "Environment" }, { tag: "logging", type: "Logging" },
                    { tag: "network", type: "Network" }, { tag: "device", type: "Device" },
                    { tag: "standardPaths", type: "StandardPaths" }];
        }

        function test_childrenKeepTheirIdentity(row) {
            compare(Tessaline.typeOf(Tessaline[row.tag]), row.type);
            verify(Tessaline[row.tag] === Tessaline[row.tag]);
        }

        function test_isOnlineComplainsAtEachRead() {
            compare(root.boundOnline, Tessaline.network.isOnline);
            TestSupport.clearLog();
            for (let reads = 1; reads <= 2; ++reads) {
                compare(Tessaline.isOnline, Tessaline.network.isOnline);
                compare(TestSupport.logCount("critical", "Zemrik.Tessaline.Network",
                                             "*** Deprectated function ***"), reads);
            }
        }

        function test_playerIsNullWithoutAHost() {
            compare(Tessaline.player, null);
            verify(isLogged("debug", "Core", "Empty player property"));
        }

        // Home, storage, scale, import paths

        function test_homePathBindingsUpdate() {
            const former = Tessaline.userHomePath;
            const folder = TestSupport.makeFolder();
            Tessaline.userHomePath = folder;
            compare(homeSpy.count, 1);
            compare(root.boundHome, folder);
            compare(root.boundHomeFolder, folder);
            compare(Tessaline.resolvedPath("~/a.txt"), folder + "/a.txt");
            compare(Tessaline.pathVariable("HOME"), folder);
            Tessaline.userHomePath = folder;
            compare(homeSpy.count, 1);
            Tessaline.userHomePath = former;
        }

        function test_folderPropertiesAreFreshObjects() {
            verify(Tessaline.userHomeFolder !== Tessaline.userHomeFolder);
            verify(Tessaline.temporaryFolder !== Tessaline.temporaryFolder);
            verify(Tessaline.temporaryFolder.exists);
        }

        function test_storagePathBindingUpdates() {
            const former = Tessaline.offlineStoragePath;
            const folder = TestSupport.makeFolder();
            Tessaline.offlineStoragePath = folder;
            compare(root.boundStorage, folder);
            compare(storageSpy.count, 1);
            Tessaline.offlineStoragePath = folder;
            compare(storageSpy.count, 1);
            Tessaline.offlineStoragePath = former;
        }

        function test_scaleFactorBindingUpdates() {
            const screen = Tessaline.displayScaleFactor;
            Tessaline.displayScaleFactor = 2.5;
            compare(root.boundScale, 2500);
            Tessaline.displayScaleFactor = 2.5;
            compare(scaleSpy.count, 2);
            Tessaline.displayScaleFactor = -1;
            compare(scaleSpy.count, 3);
            compare(Tessaline.displayScaleFactor, screen);
            compare(root.boundScale, Math.round(screen * 1000));
            verify(isLogged("debug", "Core", "Reset to default scale factor"));
        }

        function test_importPathBindingUpdates() {
            const former = Tessaline.importPathList.slice();   // the list itself is live
            const folder = TestSupport.makeFolder();
            Tessaline.addImportPath(folder);
            compare(importSpy.count, 1);
            compare(root.boundImports, former.length + 1);
            compare(Tessaline.importPathList[0], folder);
            Tessaline.removeImportPath(folder);
            compare(importSpy.count, 2);
            compare(Tessaline.importPathList, former);
            Tessaline.removeImportPath(folder);
            compare(importSpy.count, 2);
            Tessaline.importPathList = former;
            compare(importSpy.count, 3);
            compare(Tessaline.importPathList, former);
        }

        // Paths and URLs

        function test_pathsOverloadsByType() {
            compare(Tessaline.resolvedPath("/a b/c"), "/a b/c");
            const fileUrl = Tessaline.resolvedPathUrl("/a b/c");
            compare(Tessaline.typeOf(fileUrl), "url");
            compare(fileUrl.toString(), "file:///a b/c");
            compare(Tessaline.resolvedPath(fileUrl), "/a b/c");
        }

        function test_pathVariablesGoRoundTrip() {
            Tessaline.setPathVariable("MAPS", "/srv/maps");
            compare(Tessaline.pathVariable("MAPS"), "/srv/maps");
            compare(Tessaline.resolvedPath("$MAPS/a"), "/srv/maps/a");
            compare(Tessaline.resolvedPathUrl("$MAPS/a").toString(), "file:///srv/maps/a");
            Tessaline.setPathVariable("MAPS", "");
            compare(Tessaline.pathVariable("MAPS"), "");
        }

        function test_resolvedUrlChangesNothing_data() {
            return ["https://example.com/$HOME/~", "file:///~/a", "~/a", "mailto:a@example.com", ""]
                .map(url => ({ tag: url }));
        }

        function test_resolvedUrlChangesNothing(row) {
            root.someUrl = row.tag;
            const url = root.someUrl;
            compare(Tessaline.resolvedUrl(url).toString(), url.toString());
        }

        function test_objectsAreNewAndOwnedByTheScript_data() {
            return [{ tag: "file", type: "File", property: "path" },
                    { tag: "fileFolder", type: "FileFolder", property: "path" },
                    { tag: "fileInfo", type: "FileInfo", property: "filePath" }];
        }

        function test_objectsAreNewAndOwnedByTheScript(row) {
            const folder = TestSupport.makeFolder();
            const byPath = Tessaline[row.tag](folder + "/x");
            compare(Tessaline.typeOf(byPath), row.type);
            compare(byPath[row.property], folder + "/x");
            const byUrl = Tessaline[row.tag](Tessaline.resolvedPathUrl(folder + "/y"));
            compare(byUrl[row.property], folder + "/y");
            verify(byPath !== Tessaline[row.tag](folder + "/x"));
            compare(TestSupport.ownership(byPath), "script");
            Tessaline.setPathVariable("PLACE", folder);
            compare(Tessaline[row.tag]("$PLACE/z")[row.property], folder + "/z");
        }

        function test_urlInfoTakesAUrlApart() {
            const info = Tessaline.urlInfo("https://example.com/a?b=c");
            compare(info.host, "example.com");
            compare(info.queryParameters.b, "c");
            compare(TestSupport.ownership(info), "script");
        }

        // Colours and XML

        function test_contrastColor() {
            verify(Qt.colorEqual(Tessaline.contrastColor("white"), "black"));
            verify(Qt.colorEqual(Tessaline.contrastColor("black"), "white"));
            verify(Qt.colorEqual(Tessaline.contrastColor("black", "red"), "red"));
            verify(Qt.colorEqual(Tessaline.contrastColor("black", "transparent"), "white"));
        }

        function test_alphaColor() {
            const color = Tessaline.alphaColor("#102030", 0.5);
            fuzzyCompare(color.a, 0.5, 0.001);
            compare(color.r, Qt.rgba(16 / 255, 32 / 255, 48 / 255, 1).r);
        }

        function test_xmlToJson() {
            compare(Tessaline.xmlToJson("<a b='1'><c>text</c></a>")["@b"], "1");
            compare(Tessaline.xmlToJson("<a b='1'/>", { attributePrefix: "-" })["-b"], "1");
            compare(Tessaline.xmlToJson("<a"), {});
        }

        // Bytes

        function test_binaryData_data() {
            return [
                { tag: "text", value: "ab\u00e4", bytes: [97, 98, -61, -92] },
                { tag: "empty text", value: "", bytes: [] },
                { tag: "array buffer", value: new Uint8Array([1, 255]).buffer, bytes: [1, -1] },
                { tag: "bytes of another object", value: Tessaline.binaryData("xy").data,
                  bytes: [120, 121] },
                { tag: "number", value: 5, bytes: [] },
                { tag: "plain object", value: { a: 1 }, bytes: [] },
                { tag: "undefined", value: undefined, bytes: [] }
            ];
        }

        function test_binaryData(row) {
            const data = Tessaline.binaryData(row.value);
            compare(Tessaline.typeOf(data), "BinaryData");
            compare(TestSupport.ownership(data), "script");
            compare(data.size, row.bytes.length);
            for (let i = 0; i < row.bytes.length; ++i)
                compare(data.dataAt(i), row.bytes[i]);
        }

        function test_binaryDataWithoutAValueIsEmpty() {
            verify(Tessaline.binaryData().isEmpty);
            verify(Tessaline.binaryData() !== Tessaline.binaryData());
        }

        // Identifiers

        function test_createId() {
            const ids = [Tessaline.createId(), Tessaline.createId()];
            verify(ids[0] !== ids[1]);
            for (const id of ids)
                verify(/^[0-9a-f]{32}$/.test(id));
        }

        function test_createUuidString_data() {
            const digits = "[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}";
            return [{ tag: "-5", format: -5, pattern: "^\\{" + digits + "\\}$" },
                    { tag: "0", format: 0, pattern: "^\\{" + digits + "\\}$" },
                    { tag: "1", format: 1, pattern: "^" + digits + "$" },
                    { tag: "2", format: 2, pattern: "^[0-9a-f]{32}$" },
                    { tag: "99", format: 99, pattern: "^[0-9a-f]{32}$" }];
        }

        function test_createUuidString(row) {
            verify(new RegExp(row.pattern).test(Tessaline.createUuidString(row.format)));
        }

        function test_createUuidStringDefaultsToTheFullForm() {
            compare(Tessaline.createUuidString().length, 38);
        }

        // Types

        function test_typeOf_data() {
            return [
                { tag: "undefined", value: undefined, type: "undefined" },
                { tag: "null", value: null, type: "null" },
                { tag: "text", value: "a", type: "string" },
                { tag: "empty text", value: "", type: "string" },
                { tag: "object of a class", value: timer, type: "QQmlTimer" },
                { tag: "reference to a singleton", value: Tessaline, type: "QObject*" },
                { tag: "function", value: function() {}, type: "function" },
                { tag: "arrow function", value: () => 1, type: "function" },
                { tag: "method", value: Tessaline.createId, type: "function" },
                { tag: "bool", value: true, type: "bool" },
                { tag: "integer", value: 1, type: "int" },
                { tag: "fraction", value: 1.5, type: "double" },
                { tag: "integer over 32 bits", value: 4294967296, type: "double" },
                { tag: "not a number", value: NaN, type: "double" },
                { tag: "array", value: [1, "a"], type: "array" },
                { tag: "empty array", value: [], type: "array" },
                { tag: "list of strings", value: Tessaline.importPathList, type: "array" },
                { tag: "plain object", value: { a: 1 }, type: "object" },
                { tag: "empty object", value: {}, type: "object" },
                { tag: "date", value: new Date(), type: "date" },
                { tag: "url", value: root.someUrl, type: "url" },
                { tag: "rect", value: Qt.rect(0, 0, 1, 1), type: "rect" },
                { tag: "size", value: Qt.size(1, 1), type: "size" },
                { tag: "point", value: Qt.point(1, 1), type: "point" },
                { tag: "regular expression", value: /x/i, type: "regexp" },
                { tag: "font", value: Qt.font({ family: "Arial", pointSize: 8 }), type: "font" },
                { tag: "color", value: Qt.rgba(1, 0, 0, 1), type: "color" },
                { tag: "matrix", value: Qt.matrix4x4(), type: "matrix4x4" },
                { tag: "vector of 2", value: Qt.vector2d(1, 2), type: "vector2d" },
                { tag: "vector of 3", value: Qt.vector3d(1, 2, 3), type: "vector3d" },
                { tag: "vector of 4", value: Qt.vector4d(1, 2, 3, 4), type: "vector4d" },
                { tag: "quaternion", value: Qt.quaternion(1, 0, 0, 0), type: "quaternion" },
                { tag: "list of objects", value: root.objects, type: "list" },
                { tag: "list of an item", value: root.children, type: "list" },
                { tag: "bytes", value: new ArrayBuffer(2), type: "QByteArray" }
            ];
        }

        function test_typeOf(row) {
            compare(Tessaline.typeOf(row.value), row.type);
            compare(Tessaline.typeOf(row.value, false), row.type);
        }

        function test_typeOfLogsATypeItHasNoNameFor() {
            Tessaline.typeOf(new ArrayBuffer(2));
            verify(isLogged("debug", "Core", "QByteArray"));
            TestSupport.clearLog();
            Tessaline.typeOf([]);
            Tessaline.typeOf({});
            compare(TestSupport.logLines().length, 0);
        }

        function test_displayName_data() {
            return [
                { tag: "a class of Qt Quick", value: rectangle, name: "Rectangle", raw: /^QQuickRectangle$/ },
                { tag: "a class of QML", value: timer, name: "Timer", raw: /^QQmlTimer$/ },
                { tag: "a document's type", value: special, name: "Special", raw: /^Special_QMLTYPE_\d+$/ },
                { tag: "an extended element", value: extended, name: "Item", raw: /^QQuickItem_QML_\d+$/ },
                { tag: "a class of this module", value: Tessaline.network, name: "Network", raw: /^Network$/ },
                { tag: "no object", value: 1.5, name: "double", raw: /^double$/ }
            ];
        }

        function test_displayName(row) {
            verify(row.raw.test(Tessaline.typeOf(row.value)), Tessaline.typeOf(row.value));
            compare(Tessaline.typeOf(row.value, true), row.name);
        }

        function test_instanceOf_data() {
            return [
                { tag: "its own class", value: rectangle, type: "QQuickRectangle", result: true },
                { tag: "a base class", value: rectangle, type: "QQuickItem", result: true },
                { tag: "the root class", value: timer, type: "QObject", result: true },
                { tag: "an interface", value: rectangle, type: "QQmlParserStatus", result: true },
                { tag: "an interface's identifier", value: rectangle,
                  type: "org.qt-project.Qt.QQmlParserStatus", result: true },
                { tag: "another class", value: rectangle, type: "QQuickText", result: false },
                { tag: "the display name", value: rectangle, type: "Rectangle", result: false },
                { tag: "an object as type", value: special, type: rectangle, result: true },
                { tag: "a document's type as type", value: extendedSpecial, type: special, result: true },
                { tag: "the derived object as type", value: rectangle, type: special, result: false },
                { tag: "int", value: 1, type: "int", result: true },
                { tag: "int is no double", value: 1, type: "double", result: false },
                { tag: "int is no object", value: 1, type: "QObject", result: false },
                { tag: "a number as type", value: 1, type: 2, result: true },
                { tag: "an array as type", value: [1], type: [], result: true },
                { tag: "undefined as type", value: undefined, type: undefined, result: true },
                { tag: "null as type", value: null, type: null, result: true },
                { tag: "null is no object", value: null, type: "QObject", result: false },
                { tag: "no name", value: 1, type: "", result: false },
                { tag: "a text has the type string", value: "a", type: "string", result: true },
                { tag: "date", value: new Date(), type: "date", result: true }
            ];
        }

        function test_instanceOf(row) {
            compare(Tessaline.instanceOf(row.value, row.type), row.result);
        }

        // Dumps, garbage, caches

        function test_objectToString() {
            compare(Tessaline.objectToString(rectangle), "");
            verify(isLogged("debug", "Core", "static className QObject"));
            verify(isLogged("debug", "Core", "property radius typeName double isEnumType false"));
            verify(isLogged("debug", "Core", "metaObject className QQuickItem"));
            compare(Tessaline.objectToString(null), "null");
        }

        function watchNewObject() {
            TestSupport.watch(Tessaline.fileInfo("/x"));
        }

        function test_collectGarbageFreesObjectsOfInvokables() {
            watchNewObject();   // in a frame of its own, so that nothing here refers to it
            Tessaline.collectGarbage();
            tryVerify(() => TestSupport.watchedIsGone());
            verify(isLogged("debug", "Core", "collectGarbage"));
        }

        function test_componentCache() {
            const path = TestSupport.makeFolder() + "/Number.qml";
            const url = Tessaline.resolvedPathUrl(path);
            const source = value => "import QtQml 2.15\nQtObject { property int value: " + value + " }";
            const load = () => Qt.createComponent(url).createObject(testCase).value;
            verify(TestSupport.writeText(path, source(1)));
            compare(load(), 1);
            verify(TestSupport.writeText(path, source(2)));
            Tessaline.trimComponentCache();   // the first object still uses the document
            compare(load(), 1);
            Tessaline.clearComponentCache();
            compare(load(), 2);
        }

        // Grabs

        function test_grabWindowToFile() {
            const path = TestSupport.makeFolder() + "/grab.png";
            verify(Tessaline.grabWindowToFile(path));
            let image = TestSupport.image(path);
            verify(image.width >= 80 && image.height >= 60);
            compare(image.first, "#ff00ff00");
            verify(Tessaline.grabWindowToFile(path, Qt.rect(10, 10, 20, 30)));
            image = TestSupport.image(path);
            compare(image.width, 20);
            compare(image.height, 30);
            verify(!Tessaline.grabWindowToFile(TestSupport.home + "/missing/grab.png"));
        }

        function test_grabWindowToClipboard() {
            verify(Tessaline.grabWindowToClipboard());
            verify(Tessaline.grabWindowToClipboard(Qt.rect(0, 0, 5, 6)));
            const image = TestSupport.clipboardImage();
            compare(image.width, 5);
            compare(image.height, 6);
            compare(image.first, "#ff00ff00");
        }
    }
}
