import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    name: "Environment"

    readonly property Environment environment: Tessaline.environment
    readonly property string variable: "TST_ENVIRONMENT_QML"

    SignalSpy {
        id: spy
        target: Tessaline.environment
        signalName: "valueChanged"
    }

    function init() {
        environment.remove(variable);
        spy.clear();
    }

    function test_cannotBeCreated() {
        try {
            Qt.createQmlObject("import Zemrik.Tessaline 1.0; Environment {}", this);
            fail("created");
        } catch (error) {
            compare(error.qmlErrors[0].message, "The Zemrik type Environment is not creatable");
        }
    }

    function test_setReadAndRemove() {
        compare(environment.value(variable), undefined);
        compare(environment.value(variable, "default"), "default");
        compare(environment.value(variable, null), null);
        compare(environment.isSet(variable), false);
        compare(environment.isEmpty(variable), true);

        compare(environment.setValue(variable, "text"), undefined);
        compare(TestSupport.environment(variable), "text");
        compare(environment.value(variable, "default"), "text");
        compare(environment.isSet(variable), true);
        compare(environment.isEmpty(variable), false);

        compare(environment.setValue(variable, 12), "text");
        compare(environment.value(variable), "12");
        compare(environment.remove(variable), "12");
        compare(environment.remove(variable), undefined);
        compare(environment.isSet(variable), false);
    }

    function test_undefinedRemovesAndReturnsTheOldValue() {
        environment.setValue(variable, "old");
        compare(environment.setValue(variable, undefined), "old");
        compare(environment.isSet(variable), false);
    }

    function test_emptyVariableIsAnEmptyText() {
        environment.setValue(variable, "");
        compare(environment.isSet(variable), true);
        compare(environment.isEmpty(variable), true);
        compare(environment.value(variable, "default"), "");
    }

    function test_signalCarriesNameAndText() {
        environment.setValue(variable, true);
        environment.setValue(variable, true);
        environment.setValue(variable, null);
        environment.setValue(variable, "again");
        environment.remove(variable);
        compare(spy.count, 4);
        compare(spy.signalArguments[0][0], variable);
        compare(spy.signalArguments[0][1], "true");
        compare(spy.signalArguments[1][1], "true");
        compare(spy.signalArguments[2][1], "");
        compare(spy.signalArguments[3][1], "again");
    }
}
