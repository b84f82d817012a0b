import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase

    name: "UrlInfo"

    Component {
        id: infoComponent
        UrlInfo {
            property string summary: scheme + "|" + host + "|" + port + "|" + queryParameters.page
            url: "https://example.com/search?text=bridge&page=2"
        }
    }

    SignalSpy {
        id: spy
        signalName: "urlChanged"
    }

    function makeInfo() {
        spy.target = createTemporaryObject(infoComponent, testCase);
        spy.clear();
        return spy.target;
    }

    function test_bindingsFollowEveryComponent() {
        const info = makeInfo();
        compare(info.summary, "https|example.com|-1|2");
        info.host = "example.org";
        info.port = 81;
        info.query = "page=3";
        compare(info.summary, "https|example.org|81|3");
        compare(spy.count, 3);
        compare(info.url.toString(), "https://example.org:81/search?page=3");
    }

    function test_queryParametersAreAnObject() {
        const info = makeInfo();
        compare(info.queryParameters, { text: "bridge", page: "2" });
        info.queryParameters = { text: "a b", page: 1 };
        compare(info.url.toString(), "https://example.com/search?page=1&text=a b");
        info.queryParameters = {};
        compare(info.query, "");
        compare(info.hasQuery, false);
        compare(spy.count, 2);
    }

    function test_delimitersAreTexts() {
        const info = makeInfo();
        info.query = "a=1;b=2";
        info.queryPairDelimiter = ";";
        compare(info.queryParameters, { a: "1", b: "2" });
        compare(info.query, "a=1;b=2");
        info.queryPairDelimiter = "";
        compare(info.queryPairDelimiter, "&");
        compare(info.queryValueDelimiter, "=");
    }

    function test_unchangedValuesAreSilent() {
        const info = makeInfo();
        info.scheme = "https";
        info.host = "example.com";
        compare(spy.count, 0);
        verify(info.fromString("https://example.com/search?text=bridge&page=2"));
        compare(spy.count, 1);
    }

    function test_userInputTakesOneOrTwoTexts() {
        const info = makeInfo();
        verify(info.fromUserInput("example.net"));
        compare(info.url.toString(), "http://example.net");
        verify(TestSupport.writeText(TestSupport.home + "/note.txt", "x"));
        verify(info.fromUserInput("note.txt", TestSupport.home));
        verify(info.isLocalFile);
        compare(info.localFile, TestSupport.home + "/note.txt");
        compare(info.fileName, "note.txt");
    }

    function test_localFileWithABlankIsEncoded() {
        const info = makeInfo();
        info.localFile = "/tmp/a b";
        compare(info.url.toString().indexOf("file:///tmp/a"), 0);
        verify(info.isParentOf("file:///tmp/a%20b/c"));
        verify(!info.isParentOf("file:///tmp/a%20bc"));
    }
}
