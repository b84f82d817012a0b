import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase
    name: "NetworkRequestHeaders"

    NetworkRequestHeaders {
        id: headers
        userAgent: "Declared/1.0"
    }

    QtObject {
        id: bound
        readonly property string agent: headers.userAgent
        readonly property string referer: headers.referer
        readonly property string referrer: headers.referrer
    }

    SignalSpy {
        id: refererSpy
        target: headers
        signalName: "refererChanged"
    }

    SignalSpy {
        id: agentSpy
        target: headers
        signalName: "userAgentChanged"
    }

    function init() {
        headers.clear();
        refererSpy.clear();
        agentSpy.clear();
    }

    function test_propertyAndKeyAreOne() {
        headers.userAgent = "A/1";
        compare(headers["User-Agent"], "A/1");
        headers["User-Agent"] = "B/2";
        compare(headers.userAgent, "B/2");
        headers.referrer = "http://a/";
        compare(headers["Referer"], "http://a/");
        compare(headers.referer, "http://a/");
        headers.referer = "http://b/";
        compare(headers.referrer, "http://b/");
    }

    function test_bindingsFollow() {
        headers.userAgent = "C/3";
        compare(bound.agent, "C/3");
        headers["User-Agent"] = "D/4";
        compare(bound.agent, "D/4");
        headers["Referer"] = "http://c/";
        compare(bound.referer, "http://c/");
        compare(bound.referrer, "http://c/");
        headers.json = { "User-Agent": "E/5" };
        compare(bound.agent, "E/5");
        headers.clear();
        compare(bound.agent, "");
        compare(bound.referer, "");
    }

    function test_signalsComeOncePerChange() {
        headers.userAgent = "F/6";
        compare(agentSpy.count, 1);
        compare(refererSpy.count, 0);
        headers.userAgent = "F/6";
        compare(agentSpy.count, 1);
        headers.referer = "http://d/";
        compare(refererSpy.count, 1);
        headers["X-Other"] = "x";
        compare(agentSpy.count + refererSpy.count, 2);
    }

    function test_keysInOtherCaseSignalToo() {
        headers["user-agent"] = "other";
        compare(agentSpy.count, 1);
        compare(headers.userAgent, "");   // the key is another one all the same
        headers["REFERER"] = "other";
        compare(refererSpy.count, 1);
    }

    function test_isAPropertySet() {
        headers["X-Token"] = "token";
        compare(headers.json["X-Token"], "token");
        compare(headers.value("X-Token", "none"), "token");
        compare(headers.value("X-None", "none"), "none");
        verify(headers.containsKey("X-Token"));
        compare(headers.containsValue("token"), ["X-Token"]);
    }

    function test_documentsCannotDeclareProperties() {
        let message = "";
        try {
            Qt.createQmlObject("import Zemrik.Tessaline 1.0\n"
                               + "NetworkRequestHeaders { property string a }", testCase);
        } catch (error) {
            message = error.qmlErrors[0].message;
        }
        compare(message, "Fully dynamic types cannot declare new properties.");
    }
}
