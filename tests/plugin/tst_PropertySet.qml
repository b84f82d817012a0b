import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase

    name: "PropertySet"

    Component {
        id: setComponent
        PropertySet {}
    }

    Component {
        id: boundComponent
        Item {
            property PropertySet set: PropertySet {}
            property string greeting: "Hello " + set.name
        }
    }

    SignalSpy {
        id: spy
        signalName: "valueChanged"
    }

    function makeSet(values) {
        const set = createTemporaryObject(setComponent, testCase);
        set.json = values;
        return set;
    }

    // The spy asks its target for "onValueChanged", and so adds that key.
    function makeWatchedSet(values) {
        spy.target = makeSet(values);
        spy.clear();
        return spy.target;
    }

    function test_scriptsAddKeysAsProperties() {
        const set = makeWatchedSet({});
        set.name = "Ada";
        set["home town"] = "London";
        compare(set.json, { name: "Ada", "home town": "London" });
        compare(set.keys(), ["name", "home town"]);
        compare(spy.count, 2);
        compare(spy.signalArguments[1][0], "home town");
        compare(spy.signalArguments[1][1], "London");
    }

    function test_bindingsFollowAKey() {
        const item = createTemporaryObject(boundComponent, testCase);
        item.set.name = "Ada";
        compare(item.greeting, "Hello Ada");
        item.set.json = { name: "Grace" };
        compare(item.greeting, "Hello Grace");
        item.set.clear();
        compare(item.greeting, "Hello undefined");
    }

    function test_readingAnUnknownKeyMakesIt() {
        const set = makeSet({});
        verify(!set.containsKey("ghost"));
        compare(set.ghost, undefined);
        compare(set.value("ghost", "default"), "default");
        compare(set.replaceVariables("[@ghost@]"), set.containsKey("ghost") ? "[]" : "[@ghost@]");
    }

    function test_jsonHoldsNestedSets() {
        const inner = makeSet({ city: "London" });
        const set = makeSet({ name: "Ada" });
        set.address = inner;
        compare(set.json, { name: "Ada", address: { city: "London" } });
        compare(JSON.stringify(set.json), '{"address":{"city":"London"},"name":"Ada"}');
    }

    function test_jsonHoldsObjectsAndArraysOfScripts() {
        const set = makeSet({});
        set.list = [1, "two", { three: 3 }];
        set.object = { a: { b: true } };
        compare(set.json, { list: [1, "two", { three: 3 }], object: { a: { b: true } } });
        compare(set.containsValue([1, "two", { three: 3 }]), ["list"]);
    }

    function test_assigningJsonMerges() {
        const set = makeWatchedSet({ a: 1, b: 2 });
        set.json = { b: 3 };
        compare(set.json, { a: 1, b: 3 });
        compare(spy.count, 1);
        set.json = { a: 1 };
        compare(spy.count, 1);
    }

    function test_clearResetsTheValues() {
        const set = makeWatchedSet({ a: 1, b: 2 });
        set.clear();
        compare(spy.count, 2);
        compare(spy.signalArguments[0][1], undefined);
        verify(set.containsKey("a"));
        compare(set.value("a", "default"), "default");
        compare(set.a, undefined);
    }

    function test_containsValueGivesTheKeys() {
        const set = makeSet({ z: "same", m: "other" });
        set.a = "same";
        compare(set.containsValue("same"), ["z", "a"]);
        compare(set.containsValue("none"), []);
    }

    function test_replaceVariables() {
        const set = makeSet({ name: "Ada" });
        compare(set.replaceVariables("@name@ @NAME@"), "Ada Ada");
        compare(set.replaceVariables("@name@ @NAME@", true), "Ada @NAME@");
        compare(set.replaceVariables("${name} @name@", false, "${key}"), "Ada @name@");
        compare(set.replaceVariables("${NAME} ${name}", true, "${key}"), "${NAME} Ada");
    }
}
