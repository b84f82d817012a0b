import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase
    name: "Settings"

    property int aliasedNumber: 7
    property Settings typedProperty

    QtObject {
        id: other
        property string text: "initial"
    }

    // Aliases reach objects of their own document only, so this one is an element of the test case.
    Settings {
        id: withAliases
        property alias number: testCase.aliasedNumber
        property alias text: other.text
    }

    Component {
        id: plain
        Settings {}
    }

    Component {
        id: declaring
        Settings {
            property int count: 1
            property real ratio: 0.5
            property bool flag: true
            property string text: "initial"
            property url link: "http://initial/"
            property color tint: "#010203"
            property date day: new Date(2020, 1, 2)
            property var list: [1, "two", { three: 3 }]
            property var map: ({ a: 1 })
            property var number: 5
            property var nothing
            property var nil: null
            property string blank: "  "
            readonly property int fixed: 4
        }
    }

    Component {
        id: bound
        Settings {
            property int source: 1
            property int doubled: source * 2
        }
    }

    Component {
        id: holder
        Settings {
            property QtObject object: QtObject { objectName: "declared" }
            property list<QtObject> objects: [ QtObject {}, QtObject {} ]
            property var variable: QtObject { objectName: "variable" }
        }
    }

    Component {
        id: functionsOnly
        Settings {
            signal happened()
            function twice(x) { return 2 * x; }
        }
    }

    Component {
        id: intercepted
        Settings {
            Behavior on fallbacksEnabled { PropertyAnimation {} }
        }
    }

    SignalSpy {
        id: valueSpy
        signalName: "valueChanged"
    }

    function init() {
        var settings = store();
        settings.remove("");
        settings.synchronize();
        TestSupport.clearLog();
    }

    function store() {
        return createTemporaryObject(plain, testCase);
    }

    function createError(text) {
        try {
            Qt.createQmlObject(text, testCase);
        } catch (error) {
            return error.qmlErrors[0].message;
        }
        return "";
    }

    // The name is registered twice; documents get the class that they can create.

    function test_nameMeansTheCreatableClass() {
        var settings = store();
        verify(settings);
        compare(settings.toString().indexOf("Settings("), 0);
        compare(typeof settings.setColorValue, "function");
        typedProperty = settings;
        compare(typedProperty, settings);
        verify(settings instanceof Settings);
        typedProperty = null;
    }

    function test_elementUsesTheApplicationsStore() {
        compare(store().path, Tessaline.settings.path);
        verify(store().path.indexOf(TestSupport.home) === 0);
    }

    function test_pathIsReadOnly() {
        verify(createError('import Zemrik.Tessaline 1.0; Settings { path: "/x" }') !== "");
    }

    function test_fallbacksEnabledCanBeSet() {
        var settings = store();
        compare(settings.fallbacksEnabled, true);
        settings.fallbacksEnabled = false;
        compare(settings.fallbacksEnabled, false);
    }

    // Methods

    function test_valueReadsDefaults_data() {
        return [
            { tag: "text", given: "x", expected: "x" },
            { tag: "text with blanks around it", given: " x ", expected: " x " },
            { tag: "zero", given: 0, expected: 0 },
            { tag: "false", given: false, expected: false },
            { tag: "empty text", given: "", expected: "default" },
            { tag: "blank text", given: "   ", expected: "default" },
            { tag: "null", given: null, expected: "default" },
            { tag: "undefined", given: undefined, expected: "default" },
            { tag: "array", given: [1, [2], { a: 3 }], expected: [1, [2], { a: 3 }] },
            { tag: "empty array", given: [], expected: [] },
            { tag: "object", given: { a: 1, b: { c: [2] } }, expected: { a: 1, b: { c: [2] } } },
            { tag: "function", given: function() {}, expected: "default" },
        ];
    }

    function test_valueReadsDefaults(data) {
        var settings = store();
        settings.setValue("k", data.given);
        compare(settings.value("k", "default"), data.expected);
        compare(settings.contains("k"), data.expected !== "default");
    }

    function test_missingValueIsTheGivenDefault() {
        var settings = store();
        var object = { a: 1 };
        compare(settings.value("missing"), undefined);
        compare(settings.value("missing", null), null);
        compare(settings.value("missing", object), object);
        verify(settings.value("missing", object) === object);
    }

    function test_setValueEqualToItsDefaultRemoves_data() {
        return [
            { tag: "number", value: 5, defaultValue: 5, stored: false },
            { tag: "other number", value: 5, defaultValue: 6, stored: true },
            { tag: "object", value: { a: [1] }, defaultValue: { a: [1] }, stored: false },
            { tag: "other object", value: { a: [1] }, defaultValue: { a: [2] }, stored: true },
            { tag: "array", value: [1, 2], defaultValue: [1, 2], stored: false },
            { tag: "zero and undefined", value: 0, defaultValue: undefined, stored: true },
            { tag: "zero and null", value: 0, defaultValue: null, stored: true },
        ];
    }

    function test_setValueEqualToItsDefaultRemoves(data) {
        var settings = store();
        settings.setValue("k", "former");
        settings.setValue("k", data.value, data.defaultValue);
        compare(settings.contains("k"), data.stored);
    }

    function test_valueChangedOnlyForWhatIsStored() {
        var settings = store();
        valueSpy.target = settings;
        valueSpy.clear();

        settings.setValue("k", 1);
        compare(valueSpy.count, 1);
        compare(valueSpy.signalArguments[0][0], "k");
        settings.setValue("k", 1);
        compare(valueSpy.count, 2);
        settings.setColorValue("color", "red");
        compare(valueSpy.count, 3);

        settings.setValue("k", "  ");
        settings.setValue("k", 5, 5);
        settings.setValue("k", undefined);
        settings.remove("color");
        compare(valueSpy.count, 3);
        valueSpy.target = null;
    }

    function test_colors() {
        var settings = store();
        settings.setColorValue("opaque", "steelblue");
        compare(settings.value("opaque"), "#4682b4");
        settings.setColorValue("half", Qt.rgba(1, 0, 0, 0.5));
        compare(settings.value("half"), "#80ff0000");

        verify(Qt.colorEqual(settings.colorValue("opaque"), "steelblue"));
        verify(Qt.colorEqual(settings.colorValue("half"), "#80ff0000"));
        verify(Qt.colorEqual(settings.colorValue("missing", "red"), "red"));
        settings.setValue("text", "no color");
        compare(settings.colorValue("text", "red").valid, false);
        compare(settings.colorValue("missing").valid, false);
    }

    function test_boolAndNumberValues() {
        var settings = store();
        settings.setValue("bool", "false");
        settings.setValue("number", "2.5");
        compare(settings.boolValue("bool"), false);
        compare(settings.boolValue("bool", true), false);
        compare(settings.numberValue("number"), 2.5);
        compare(settings.boolValue("missing"), false);
        compare(settings.boolValue("missing", true), true);
        compare(settings.numberValue("missing"), 0);
        compare(settings.numberValue("missing", 1.5), 1.5);
    }

    function test_bytesRoundTrip() {
        var settings = store();
        settings.setValue("k", new Uint8Array([1, 0, 255]).buffer);
        compare(Array.from(new Uint8Array(settings.value("k"))), [1, 0, 255]);
    }

    function test_synchronizeWritesTheFile() {
        var settings = store();
        settings.setValue("group/key", "on disk");
        settings.synchronize();
        compare(TestSupport.readText(settings.path), "[group]\nkey=on disk\n");
    }

    function test_objectsAreNotStored() {
        var settings = store();
        settings.setValue("k", "former");
        settings.setValue("k", other);
        verify(!settings.contains("k"));
        settings.setValue("list", testCase.children);
        verify(!settings.contains("list"));
        settings.setValue("map", { object: other, number: 1 });
        compare(settings.value("map").number, 1);
        verify(!settings.value("map").object);
    }

    function test_cyclicObjectIsNoEndlessLoop() {
        var settings = store();
        var cycle = { a: 1 };
        cycle.self = cycle;
        settings.setValue("k", cycle);
        compare(settings.value("k").a, 1);
    }

    // Declared properties

    function test_firstRunStoresTheDeclaredValues() {
        var settings = createTemporaryObject(declaring, testCase);
        compare(settings.value("count"), 1);
        compare(settings.value("ratio"), 0.5);
        compare(settings.value("flag"), true);
        compare(settings.value("text"), "initial");
        compare(settings.value("link").toString(), "http://initial/");
        verify(Qt.colorEqual(settings.value("tint"), "#010203"));
        compare(settings.value("day"), new Date(2020, 1, 2));
        compare(settings.value("list"), [1, "two", { three: 3 }]);
        compare(settings.value("map"), { a: 1 });
        compare(settings.value("number"), 5);
        compare(settings.value("fixed"), 4);
        verify(!settings.contains("nothing"));
        verify(!settings.contains("nil"));
        verify(!settings.contains("blank"));
    }

    function test_changesAreStoredAtOnce() {
        var settings = createTemporaryObject(declaring, testCase);
        valueSpy.target = settings;
        valueSpy.clear();

        settings.count = 2;
        compare(settings.value("count"), 2);
        compare(valueSpy.count, 1);
        compare(valueSpy.signalArguments[0][0], "count");
        settings.list = [9];
        compare(settings.value("list"), [9]);
        settings.map = { b: { c: 1 } };
        compare(settings.value("map"), { b: { c: 1 } });
        settings.nothing = "something";
        compare(settings.value("nothing"), "something");
        compare(valueSpy.count, 4);

        settings.text = " ";
        verify(!settings.contains("text"));
        settings.number = undefined;
        verify(!settings.contains("number"));
        compare(valueSpy.count, 4);
        valueSpy.target = null;
    }

    function test_storedValuesAreReadIntoTheProperties() {
        var before = store();
        before.setValue("count", 9);
        before.setValue("flag", false);
        before.setValue("text", " stored ");
        before.setValue("link", "http://stored/");
        before.setValue("tint", "#0a0b0c");
        before.setValue("list", ["stored"]);
        before.setValue("map", { stored: true });
        before.setValue("nothing", "stored");

        var settings = createTemporaryObject(declaring, testCase);
        compare(settings.count, 9);
        compare(settings.flag, false);
        compare(settings.text, " stored ");
        compare(settings.link.toString(), "http://stored/");
        verify(Qt.colorEqual(settings.tint, "#0a0b0c"));
        compare(settings.list, ["stored"]);
        compare(settings.map, { stored: true });
        compare(settings.nothing, "stored");
        compare(settings.ratio, 0.5);
    }

    function test_textsConvertToThePropertysType() {
        var before = store();
        before.setValue("count", "12");
        before.setValue("ratio", "1.25");
        before.setValue("flag", "false");
        var settings = createTemporaryObject(declaring, testCase);
        verify(settings.count === 12);
        verify(settings.ratio === 1.25);
        verify(settings.flag === false);
    }

    function test_valueThatDoesNotConvertLeavesPropertyAndStoreAlone_data() {
        return [
            { tag: "no conversion between the types", stored: { a: 1 } },
            { tag: "a text that is no number", stored: "many" },
        ];
    }

    function test_valueThatDoesNotConvertLeavesPropertyAndStoreAlone(data) {
        store().setValue("count", data.stored);
        var settings = createTemporaryObject(declaring, testCase);
        compare(settings.count, 1);
        compare(settings.value("count"), data.stored);
        settings.count = 2;
        compare(settings.value("count"), 2);
    }

    function test_blankStoredTextKeepsTheDeclaredValue() {
        var path = store().path;
        verify(TestSupport.writeText(path, "[General]\ntext=\"  \"\n"));
        var settings = store();
        settings.synchronize();
        verify(settings.contains("text"));
        compare(createTemporaryObject(declaring, testCase).text, "initial");
    }

    function test_readOnlyPropertyIsStoredButKeepsItsValue() {
        var before = store();
        before.setValue("fixed", 9);
        var settings = createTemporaryObject(declaring, testCase);
        compare(settings.fixed, 4);
        compare(settings.value("fixed"), 9);
    }

    function test_bindingsFollowRestoredAndChangedValues() {
        var settings = createTemporaryObject(bound, testCase);
        compare(settings.value("doubled"), 2);
        settings.source = 5;
        compare(settings.doubled, 10);
        compare(settings.value("source"), 5);
        compare(settings.value("doubled"), 10);

        var again = createTemporaryObject(bound, testCase);
        compare(again.source, 5);
        compare(again.doubled, 10);
    }

    function test_aliasesPersistUnderTheirOwnNames() {
        aliasedNumber = 8;
        other.text = "changed";
        compare(withAliases.value("number"), 8);
        compare(withAliases.value("text"), "changed");
        withAliases.number = 9;
        compare(aliasedNumber, 9);
        compare(withAliases.value("number"), 9);
    }

    function test_objectPropertiesAreLeftAlone() {
        var first = createTemporaryObject(holder, testCase);
        verify(!first.contains("object"));
        verify(!first.contains("objects"));
        verify(!first.contains("variable"));
        first.destroy();
        wait(0);
        TestSupport.collectGarbage();

        store().setValue("variable", "a text of that name");
        var second = createTemporaryObject(holder, testCase);
        compare(second.object.objectName, "declared");
        compare(second.objects.length, 2);
        compare(second.variable.objectName, "variable");
    }

    function test_classesOwnPropertiesDoNotPersist_data() {
        return [
            { tag: "element without declarations", component: plain },
            { tag: "element with functions only", component: functionsOnly },
            { tag: "element with a behavior", component: intercepted },
            { tag: "element with declarations", component: declaring },
        ];
    }

    function test_classesOwnPropertiesDoNotPersist(data) {
        var settings = createTemporaryObject(data.component, testCase);
        settings.fallbacksEnabled = false;
        verify(!settings.contains("path"));
        verify(!settings.contains("fallbacksEnabled"));
        verify(!settings.contains("objectName"));
    }

    function test_storesMadeFromCodePersistNothing() {
        TestSupport.clearLog();
        var settings = Tessaline.settings;
        verify(settings);
        compare(TestSupport.logCount("debug", "Zemrik.Tessaline.File", "componentComplete()"), 0);
        verify(!settings.contains("path"));
    }

    function test_lifecycleIsLogged() {
        var settings = createTemporaryObject(bound, testCase);
        var lines = TestSupport.logLines().filter(function(line) {
            return line.indexOf("debug|Zemrik.Tessaline.File|") === 0;
        }).map(function(line) { return line.split("|")[2]; });
        compare(lines.length, 5);
        compare(lines[0], "virtual void Settings::classBegin()");
        compare(lines[1], "virtual void Settings::componentComplete()");
        var expected = /^void Settings::connectProperties\(\) (\d+) (\w+) (\d+)$/;
        var source = expected.exec(lines[2]);
        var doubled = expected.exec(lines[3]);
        compare(source[2], "source");
        compare(doubled[2], "doubled");
        compare(Number(doubled[1]), Number(source[1]) + 1);
        compare(doubled[3], source[3]);
        compare(lines[4], "void Settings::readProperties()");
    }

    function test_restoringIsAChangeLikeAnyOther() {
        store().setValue("source", "3");   // as text, the way another process left it
        var settings = createTemporaryObject(bound, testCase);
        verify(settings.value("source") === 3);
    }
}
