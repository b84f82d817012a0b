import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase
    name: "NetworkRequest"

    property int count: 0   // of handlers that were called
    property url address: "http://a/"

    Component {
        id: requestComponent

        NetworkRequest {
            // Bindings that must follow.
            property int states: 0
            readonly property bool busy: readyState === NetworkRequest.ReadyStateSending
                                         || readyState === NetworkRequest.ReadyStateProcessing
            readonly property string summary: status + "|" + statusText
            readonly property int length: responseText.length
            readonly property int percent: Math.round(progress * 100)
            readonly property string problem: errorCode + "|" + errorText
            readonly property string type: responseHeaders["Content-Type"] || ""
            readonly property var answer: response
            readonly property string sent: requestBody === undefined ? "" : String(requestBody)

            onReadyStateChanged: ++states
        }
    }

    Component {
        id: declaredComponent

        NetworkRequest {
            url: TestSupport.serverUrl("/echo")
            method: "post"
            async: true
            followRedirects: false
            ignoreSslErrors: true
            uploadPrefix: "file:"
            responseType: "json"
            responsePath: "~/x"
            user: "user"
            password: "secret"
            realm: "realm"
            headers.userAgent: "Declared/1.0"
            headers.referrer: "http://referrer/"
        }
    }

    Component {
        id: handlersComponent

        NetworkRequest {
            onUrlChanged: ++testCase.count
            onMethodChanged: ++testCase.count
            onAsyncChanged: ++testCase.count
            onFollowRedirectsChanged: ++testCase.count
            onIgnoreSslErrorsChanged: ++testCase.count
            onUploadPrefixChanged: ++testCase.count
            onResponseTypeChanged: ++testCase.count
            onResponsePathChanged: ++testCase.count
            onUserChanged: ++testCase.count
            onPasswordChanged: ++testCase.count
            onRealmChanged: ++testCase.count
            onReadyStateChanged: ++testCase.count
        }
    }

    SignalSpy {
        id: errorSpy
        signalName: "error"
    }

    SignalSpy {
        id: sslSpy
    }

    function make(properties) {
        return createTemporaryObject(requestComponent, testCase, properties || {});
    }

    function finish(request) {
        tryCompare(request, "readyState", NetworkRequest.ReadyStateComplete);
    }

    function init() {
        TestSupport.clearLog();
        count = 0;
    }

    function test_constants() {
        compare([NetworkRequest.UNSENT, NetworkRequest.OPENED, NetworkRequest.HEADERS_RECEIVED,
                 NetworkRequest.LOADING, NetworkRequest.DONE], [0, 1, 2, 3, 4]);
        compare([NetworkRequest.ReadyStateUninitialized, NetworkRequest.ReadyStateInitialized,
                 NetworkRequest.ReadyStateSending, NetworkRequest.ReadyStateProcessing,
                 NetworkRequest.ReadyStateComplete], [0, 1, 2, 3, 4]);
        compare(NetworkRequest.StatusCodeOK, 200);
        compare(NetworkRequest.StatusCodeHTTPVersionNotSupported, 505);
    }

    function test_declaredValues() {
        const request = createTemporaryObject(declaredComponent, testCase);
        compare(request.url, TestSupport.serverUrl("/echo"));
        compare(request.method, "POST");
        compare(request.async, true);
        compare(request.followRedirects, false);
        compare(request.ignoreSslErrors, true);
        compare(request.uploadPrefix, "file:");
        compare(request.responseType, "json");
        compare(request.responsePath, "~/x");
        compare(request.user, "user");
        compare(request.password, "secret");
        compare(request.realm, "realm");
        compare(request.headers.userAgent, "Declared/1.0");
        compare(request.headers.referer, "http://referrer/");
        compare(request.readyState, NetworkRequest.OPENED);
        compare(request.headers["User-Agent"], "Declared/1.0");
    }

    function test_writesNotify() {
        const request = createTemporaryObject(handlersComponent, testCase);
        const values = { url: "http://a/", method: "PUT", async: true, followRedirects: false,
                         ignoreSslErrors: true, uploadPrefix: "", responseType: "text",
                         responsePath: "/x", user: "u", password: "p", realm: "r" };
        for (const name in values)
            request[name] = values[name];
        compare(count, Object.keys(values).length + 1);   // the URL leads to state 1
        request.readyState = 0;
        compare(count, Object.keys(values).length + 2);
        compare(request.readyState, NetworkRequest.UNSENT);
    }

    function test_bindingsFollowATransfer() {
        const request = make({ url: TestSupport.serverUrl("/text/hello") });
        compare(request.summary, "0|");
        request.send();
        verify(request.busy);
        finish(request);
        verify(!request.busy);
        compare(request.summary, "200|200 OK");
        compare(request.length, 5);
        compare(request.percent, 100);
        compare(request.problem, "0|");
        compare(request.type, "text/plain");
        compare(request.answer, "hello");
        compare(request.states, 4);   // 1 to 4

        request.url = TestSupport.serverUrl("/status/500");
        request.send("text");
        compare(request.summary, "0|");
        compare(request.length, 0);
        compare(request.type, "");
        compare(request.answer, undefined);
        compare(request.sent, "text");
        finish(request);
        compare(request.summary, "500|500 Internal Server Error");
        verify(/^401\|.+/.test(request.problem), request.problem);
    }

    function test_openOverloads() {
        const request = make();
        request.open("put", TestSupport.serverUrl("/echo"));
        compare(request.method, "PUT");
        compare(request.async, true);
        request.open("delete", TestSupport.serverUrl("/echo"), false);
        compare(request.method, "DELETE");
        compare(request.async, false);
    }

    function test_sendIsRefusedWithoutAUrl() {
        const request = make();
        request.send();
        compare(request.errorText, "UNEXPECTED");
        compare(request.readyState, NetworkRequest.UNSENT);
        compare(TestSupport.logCount("warning", "Zemrik.Tessaline.Network", "readyState error"), 1);
    }

    function test_bodies_data() {
        return [
            { tag: "nothing", send: request => request.send(), body: "" },
            { tag: "undefined", send: request => request.send(undefined), body: "" },
            { tag: "null", send: request => request.send(null), body: "" },
            { tag: "empty text", send: request => request.send(""), body: "" },
            { tag: "text", send: request => request.send("aü日"), body: "aü日" },
            { tag: "JSON text", send: request => request.send(JSON.stringify({ a: [1] })),
              body: "{\"a\":[1]}" },
            { tag: "object", send: request => request.send({ b: 1, a: "x&y", c: true }),
              body: "a=x%26y&b=1&c=true" },
            { tag: "numbers", send: request => request.send({ a: 1.5, b: -3, c: 1e21 }),
              body: "a=1.5&b=-3&c=1e+21" },
            { tag: "empty object", send: request => request.send({}), body: "" },
            { tag: "object with nothing in it", send: request => request.send({ a: undefined,
              b: null, c: "" }), body: "a&b&c" },
            { tag: "list, as the object it is", send: request => request.send([1, "b"]),
              body: "0=1&1=b&length=2" },
            { tag: "values that have no text", send: request => request.send({
                  a: [1], b: { c: 1 }, d: testCase, e: /x/, f: Qt.point(1, 2) }),
              body: "a&b&d&e&f" },
            { tag: "address and date", send: request => request.send({
                  a: testCase.address, b: new Date(2020, 0, 2) }),
              body: "a=http://a/&b=2020-01-02T00:00:00.000" },
            { tag: "what a property holds", send: request => {
                  request.headers["X-A"] = "a";
                  request.send(request.headers.json);
              }, body: "X-A=a" },
        ];
    }

    function test_bodies(data) {
        const request = make({ url: TestSupport.serverUrl("/echo"), method: "POST" });
        data.send(request);
        finish(request);
        compare(TestSupport.lastServerRequest().method, "POST");
        compare(TestSupport.lastServerRequest().body, data.body);
    }

    function test_valuesThatSendNothing_data() {
        return [
            { tag: "number", value: 1 },
            { tag: "bool", value: true },
            { tag: "byte array", value: new ArrayBuffer(3) },
            { tag: "date", value: new Date() },
            { tag: "url", value: testCase.address },
            { tag: "point", value: Qt.point(1, 2) },
            { tag: "object of a type", value: testCase },
        ];
    }

    function test_valuesThatSendNothing(data) {
        const request = make({ url: TestSupport.serverUrl("/echo"), method: "POST" });
        const before = TestSupport.serverRequestCount();
        request.send(data.value);
        compare(request.readyState, NetworkRequest.OPENED);
        compare(TestSupport.logCount("warning", "Zemrik.Tessaline.Network", "TODO"), 1);
        compare(TestSupport.logCount("warning", "Zemrik.Tessaline.Network", "body:"), 1);
        compare(TestSupport.serverRequestCount(), before);
    }

    function test_bodyIsKeptAsItWasGiven() {
        const request = make({ url: TestSupport.serverUrl("/echo") });
        const body = { a: 1 };
        request.send(body);
        compare(request.requestBody.a, 1);
        finish(request);
    }

    function test_objectBecomesAQuery() {
        const request = make({ url: TestSupport.serverUrl("/echo") });
        request.send({ f: "pjson", q: "a b" });
        finish(request);
        compare(TestSupport.lastServerRequest().method, "GET");
        compare(TestSupport.lastServerRequest().target, "/echo?f=pjson&q=a%20b");
    }

    function test_headersAreSent() {
        const request = make({ url: TestSupport.serverUrl("/echo"), method: "POST" });
        request.headers.userAgent = "Script/1.0";
        request.headers["X-Token"] = "token";
        request.headers["Content-Type"] = "application/json";
        compare(request.headers["X-Unknown"], undefined);   // reading doesn't make a header
        request.send("{}");
        finish(request);
        const headers = TestSupport.lastServerRequest().headers;
        compare(headers["user-agent"], "Script/1.0");
        compare(headers["x-token"], "token");
        compare(headers["content-type"], "application/json");
        compare(headers["x-unknown"], undefined);
    }

    function test_headerWithALineBreakIsNotSent() {
        const request = make({ url: TestSupport.serverUrl("/text/hello") });
        request.headers["X-Bad"] = "a\r\nX-Evil: b";
        request.send();
        finish(request);
        compare(request.status, 200);
        const headers = TestSupport.lastServerRequest().headers;
        compare(headers["x-bad"], undefined);
        compare(headers["x-evil"], undefined);
        compare(TestSupport.logCount("warning", "Zemrik.Tessaline.Network",
                                     "Header can't be sent"), 1);
    }

    function test_formWithAFile() {
        const path = TestSupport.makeFolder() + "/note.txt";
        TestSupport.writeText(path, "hello from a file");
        const request = make({ url: TestSupport.serverUrl("/echo") });
        request.send({ title: "x", file: "@" + path + ";filename=q.txt;offset=6;size=4" });
        finish(request);
        compare(request.errorText, "");
        const sent = TestSupport.lastServerRequest();
        compare(sent.method, "POST");
        compare(sent.parts.title.content, "x");
        compare(sent.parts.file.content, "from");
        compare(sent.parts.file.fileName, "q.txt");
        compare(sent.parts.file.contentType, "text/plain");
    }

    function test_missingFile() {
        const request = make({ url: TestSupport.serverUrl("/echo") });
        errorSpy.target = request;
        errorSpy.clear();
        request.send({ file: "@/no/such/file" });
        compare(request.readyState, NetworkRequest.DONE);
        compare(request.problem, "-1|Cannot open /no/such/file");
        compare(errorSpy.count, 1);
    }

    function test_jsonAnswers() {
        const request = make({ url: TestSupport.serverUrl("/echo"), method: "POST",
                               responseType: "JSON" });
        request.send("{\"a\": null, \"b\": [1, {\"c\": null}], \"d\": \"x\"}");
        finish(request);
        compare(request.response.a, null);
        compare(request.response.b[0], 1);
        compare(request.response.b[1].c, null);
        compare(request.response.d, "x");
        compare(request.response.e, undefined);

        request.send("[1, 2, 3]");
        finish(request);
        compare(request.response.length, 3);

        request.send("no JSON");
        finish(request);
        compare(Object.keys(request.response).length, 0);
    }

    function test_otherAnswerTypes() {
        const request = make({ url: TestSupport.serverUrl("/echo"), method: "POST",
                               responseType: "base64" });
        request.send("abc");
        finish(request);
        compare(request.response, "YWJj");
        request.responseType = "xml";
        request.send("abc");
        finish(request);
        compare(request.response, undefined);
        compare(request.responseText, "abc");
    }

    function test_answerToAFile() {
        const path = TestSupport.makeFolder() + "/answer";
        const request = make({ url: TestSupport.serverUrl("/text/hello"), responsePath: path });
        request.send();
        finish(request);
        compare(TestSupport.readText(path), "hello");
        compare(request.responseText, "");
        compare(request.response, undefined);
    }

    function test_redirect() {
        const request = make({ url: TestSupport.serverUrl(
                                   "/redirect/302?" + TestSupport.serverUrl("/text/there")) });
        request.send();
        finish(request);
        compare(request.response, "there");
        request.followRedirects = false;
        request.send();
        finish(request);
        compare(request.status, NetworkRequest.StatusCodeFound);
    }

    function test_tlsErrorsAreLists() {
        const request = make({ url: TestSupport.secureServerUrl("/text/hello") });
        sslSpy.signalName = "";
        sslSpy.target = request;
        sslSpy.signalName = "sslErrors";
        sslSpy.clear();
        request.send();
        finish(request);
        verify(request.errorCode !== 0);
        compare(sslSpy.count, 1);
        const errors = sslSpy.signalArguments[0][0];
        verify(errors.length >= 1);
        verify(errors[0].errorString !== "");
        compare(errors[0].certificate.isSelfSigned, true);
        compare(errors[0].certificate.subject.CN[0], "127.0.0.1");
        compare(errors[0].certificate.issuer.L[0], "Munich");
        verify(errors[0].certificate.expiryDate.getTime() > Date.now());

        sslSpy.signalName = "sslErrorsIgnored";
        sslSpy.clear();
        request.ignoreSslErrors = true;
        request.send();
        finish(request);
        compare(request.response, "hello");
        compare(sslSpy.count, 1);
    }

    function test_requestsOfAnEngineShareTheirConnections() {
        const first = make({ url: TestSupport.serverUrl("/text/a") });
        first.send();
        finish(first);
        const connection = TestSupport.lastServerRequest().connection;
        const second = make({ url: TestSupport.serverUrl("/text/b") });
        second.send();
        finish(second);
        compare(TestSupport.lastServerRequest().connection, connection);
    }

    function test_abortDropsTheAnswer() {
        const request = make({ url: TestSupport.serverUrl("/text/hello") });
        request.send();
        request.abort();
        finish(request);
        compare(request.errorCode, 5);
        compare(request.response, undefined);
    }

    function test_destroyedRequestEndsQuietly() {
        const before = TestSupport.serverRequestCount();
        const request = requestComponent.createObject(testCase,
                                                      { url: TestSupport.serverUrl("/bytes/9000") });
        request.send();
        TestSupport.watch(request);
        request.destroy();
        tryVerify(() => TestSupport.watchedIsGone());
        tryVerify(() => TestSupport.serverRequestCount() === before + 1);
    }

    function test_headersAreReachableAsAType() {
        const request = make();
        compare(Tessaline.typeOf(request.headers), "NetworkRequestHeaders");
    }
}
