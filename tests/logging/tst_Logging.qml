import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase

    name: "Logging"

    readonly property string path: TestSupport.home + "/qml test.log"
    property string seen: (Tessaline.logging.enabled ? "on" : "off") + " "
                          + Tessaline.logging.outputLocation + " " + Tessaline.logging.append + " "
                          + Tessaline.logging.messagePattern + " " + Tessaline.logging.name + " "
                          + Tessaline.logging.userData

    SignalSpy {
        id: enabledSpy
        target: Tessaline.logging
        signalName: "enabledChanged"
    }

    SignalSpy {
        id: locationSpy
        target: Tessaline.logging
        signalName: "outputLocationChanged"
    }

    function init() {
        enabledSpy.clear();
        locationSpy.clear();
    }

    function cleanup() {
        Tessaline.logging.enabled = false;
        Tessaline.logging.outputLocation = "";
        Tessaline.logging.append = false;
        Tessaline.logging.messagePattern = "%{if-category}%{category}: %{endif}%{message}";
        Tessaline.logging.name = "";
        Tessaline.logging.userData = "";
    }

    function records() {
        return TestSupport.readText(path).split("\n").filter(function(line) {
            return line !== "" && !/[-\]] \$ [A-Z]/.test(line);
        });
    }

    function test_theTypeIsNotCreatable() {
        let message = "";
        try {
            Qt.createQmlObject("import Zemrik.Tessaline 1.0; Logging {}", testCase);
        } catch (error) {
            message = error.qmlErrors[0].message;
        }
        compare(message, "The Zemrik type Logging is not creatable");
    }

    function test_bindingsSeeEveryProperty() {
        const standardPattern = "%{if-category}%{category}: %{endif}%{message}";
        compare(seen, "off  false " + standardPattern + "  ");
        Tessaline.logging.outputLocation = "file://" + path;
        Tessaline.logging.append = true;
        Tessaline.logging.messagePattern = "%{message}";
        Tessaline.logging.name = "My applet";
        Tessaline.logging.userData = "u@1";
        Tessaline.logging.enabled = true;
        compare(seen, "on file://" + path + " true %{message} My applet u@1");
    }

    function test_messagesOfScriptsReachTheFile() {
        Tessaline.logging.outputLocation = "file://" + path;
        Tessaline.logging.name = "My applet";
        Tessaline.logging.userData = "place@48213 at=\"%{filename}\"";
        Tessaline.logging.enabled = true;
        verify(Tessaline.logging.enabled);
        console.log("a log line");
        console.info("an info line");
        console.warn("a warning");
        console.error("an error");
        Tessaline.logging.enabled = false;
        console.log("not in the file");

        const lines = records();
        compare(lines.length, 4);
        const starts = ["<15>1 ", "<14>1 ", "<12>1 ", "<10>1 "];
        for (let i = 0; i < 4; ++i)
            compare(lines[i].substr(0, 6), starts[i]);
        verify(lines[0].indexOf(" My_applet ") > 0);
        verify(/ - \[Halvora@48213 category="qml" function="test_\w+" filename="tst_Logging\.qml" line="\d+"\]\[place@48213 at="tst_Logging\.qml"\] qml: a log line$/.test(lines[0]), lines[0]);
        // The handler from before gets them too.
        compare(TestSupport.logCount("warning", "qml", "a warning"), 1);
    }

    function test_anEmptyLocationIsChosen() {
        compare(Tessaline.logging.outputLocation.toString(), "");
        Tessaline.logging.append = true;
        Tessaline.logging.enabled = true;
        const folder = "file://" + TestSupport.home + "/Zemrik/Halvora/Logs/";
        compare(Tessaline.logging.outputLocation.toString(), folder + "Quick Tests.log");
        compare(locationSpy.count, 1);
        compare(enabledSpy.count, 1);
        verify(TestSupport.exists(TestSupport.home + "/Zemrik/Halvora/Logs/Quick Tests.log"));
    }

    function test_locationStaysWhileEnabled() {
        Tessaline.logging.outputLocation = "file://" + path;
        Tessaline.logging.enabled = true;
        locationSpy.clear();
        Tessaline.logging.outputLocation = "file:///elsewhere";
        compare(Tessaline.logging.outputLocation.toString(), "file://" + path);
        compare(locationSpy.count, 0);
    }

    function test_locationMayBeAResolvedPath() {
        Tessaline.logging.outputLocation = Tessaline.resolvedPathUrl("~/resolved.log");
        compare(Tessaline.logging.outputLocation.toString(),
                "file://" + TestSupport.home + "/resolved.log");
        Tessaline.logging.enabled = true;
        verify(TestSupport.exists(TestSupport.home + "/resolved.log"));
    }

    function test_aMerePathIsRelativeToTheDocument() {
        Tessaline.logging.outputLocation = "~/mere.log";
        compare(Tessaline.logging.outputLocation.toString(), Qt.resolvedUrl("~/mere.log"));
    }

    function test_aBadLocationLeavesItOff() {
        TestSupport.clearLog();
        Tessaline.logging.outputLocation = "syslog:///";
        Tessaline.logging.enabled = true;
        compare(Tessaline.logging.enabled, false);
        compare(enabledSpy.count, 0);
        compare(TestSupport.logCount("critical", "default", "Empty hostname:"), 1);
    }
}
