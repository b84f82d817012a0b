import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Portal 1.0

TestCase {
    id: testCase

    name: "Portal"

    property string server          // a portal with lasting tokens
    property string hastyServer     // tokens of six seconds: out for the component after one
    property string secureServer

    Component {
        id: portalComponent

        Portal {}
    }

    Component {
        id: spyComponent

        SignalSpy {}
    }

    function initTestCase() {
        server = TestSupport.startPortal([]);
        hastyServer = TestSupport.startPortal(["--token-minutes", "0.1"]);
        secureServer = TestSupport.startPortal(["--https"]);
        verify(server && hastyServer && secureServer);
    }

    function makePortal(properties) {
        return createTemporaryObject(portalComponent, testCase, properties);
    }

    function makeSpy(target, signalName) {
        return createTemporaryObject(spyComponent, testCase, { target: target, signalName: signalName });
    }

    // The requests, in the order of their declaration: info, token, self, user.
    function requests(portal) {
        const list = [];
        for (let i = 0; i < portal.resources.length; ++i) {
            if (portal.resources[i].uploadPrefix !== undefined)
                list.push(portal.resources[i]);
        }
        return list;
    }

    function sorted(object) {
        return Object.keys(object).sort().map(function(key) { return key + ": " + object[key]; });
    }

    function lastForm() {
        const form = {};
        TestSupport.lastServerRequest().body.split("&").forEach(function(pair) {
            const parts = pair.split("=").map(decodeURIComponent);
            form[parts[0]] = parts[1] || "";
        });
        return sorted(form);
    }

    function test_defaults() {
        const portal = makePortal({});
        compare(portal.name, "Zemrik Online");
        verify(portal.portalUrl.toString().startsWith("http://"));
        compare(portal.tokenServicesUrl.toString(), "");
        compare(portal.owningSystemUrl, portal.portalUrl);
        compare(portal.restUrl.toString(), portal.portalUrl + "/sharing/rest");
        compare([portal.username, portal.password, portal.token], ["", "", ""]);
        compare([portal.ssl, portal.ignoreSslErrors, portal.signedIn, portal.isPortal],
                [false, false, false, false]);
        verify(isNaN(portal.expires.getTime()));
        compare(portal.expiryMode, portal.expiryModeSignOut);
        compare([portal.expiryModeSignal, portal.expiryModeSignOut, portal.expiryModeSignIn], [0, 1, 2]);
        compare(portal.info, undefined);
        compare(portal.user, undefined);
        compare(portal.userThumbnailUrl.toString(), "");
        compare([portal.width, portal.height], [0, 0]);
    }

    function test_requests() {
        const portal = makePortal({ portalUrl: "http://here", tokenServicesUrl: "http://there/token",
                                    username: "jo" });
        const list = requests(portal);
        compare(list.map(function(r) { return r.url.toString(); }),
                ["http://here/sharing/rest/info?f=json", "http://there/token",
                 "http://here/sharing/rest/portals/self", "http://here/sharing/rest/community/users/jo"]);
        compare(list.map(function(r) { return r.method; }), ["GET", "POST", "POST", "POST"]);
        compare(list.map(function(r) { return r.responseType; }), ["json", "json", "json", "json"]);
        compare(list.map(function(r) { return r.uploadPrefix; }), ["", "", "", ""]);
        portal.ignoreSslErrors = true;
        compare(list.map(function(r) { return r.ignoreSslErrors; }), [true, true, true, true]);
    }

    function test_slashesAreTakenAsTheyAre() {
        compare(makePortal({ portalUrl: "http://here/" }).restUrl.toString(), "http://here//sharing/rest");
    }

    function test_signIn() {
        const portal = makePortal({ portalUrl: server });
        let atSignIn = null;
        portal.signedInChanged.connect(function() {
            atSignIn = { expires: portal.expires.getTime(), info: portal.info };
        });
        portal.signIn("demo", "demo");
        compare([portal.username, portal.password, portal.signedIn], ["demo", "demo", false]);
        tryCompare(portal, "signedIn", true);
        verify(isNaN(atSignIn.expires));   // stored after the token
        compare(atSignIn.info, undefined);
        tryVerify(function() { return portal.info && portal.user; });
        compare(portal.info.portalName, "Tessaline development portal");
        compare(portal.user.username, "demo");
        // A user without a picture: the text of a missing value.
        compare(portal.userThumbnailUrl.toString(),
                portal.restUrl + "/community/users/demo/info/undefined?token=" + portal.token);
        portal.signOut();
        compare(portal.signedIn, false);
        compare(portal.user, null);
        verify(portal.info);
        verify(portal.tokenServicesUrl.toString() !== "");
        compare(portal.userThumbnailUrl.toString(), "");
    }

    function test_signInOverHttps() {
        const portal = makePortal({ portalUrl: secureServer, ignoreSslErrors: true });
        portal.signIn("demo", "demo");
        tryVerify(function() { return portal.info && portal.user; });
        compare(portal.ssl, true);
        compare(portal.user.username, "demo");
    }

    function test_knownTokenServiceIsNotAskedFor() {
        const portal = makePortal({ portalUrl: "http://127.0.0.1:1" });
        portal.tokenServicesUrl = server + "/sharing/rest/generateToken";
        portal.signIn("demo", "demo");
        tryCompare(portal, "signedIn", true);
        compare(requests(portal)[0].readyState, NetworkRequest.ReadyStateInitialized);
    }

    function test_tokenRequest_data() {
        return [
            { tag: "defaults", password: "pw", more: [],
              form: { expiration: "120", f: "json", referer: "http://here", username: "jo", password: "pw" } },
            { tag: "given", password: "pw", more: [60, "me"],
              form: { expiration: "60", f: "json", referer: "me", username: "jo", password: "pw" } },
            { tag: "zero and empty are none", password: "pw", more: [0, ""],
              form: { expiration: "120", f: "json", referer: "http://here", username: "jo", password: "pw" } },
            { tag: "@", password: "@/etc/hostname", more: [],
              form: { expiration: "120", f: "json", referer: "http://here", username: "jo",
                      "#password": "@/etc/hostname" } },
            { tag: "@ later", password: "p@w", more: [],
              form: { expiration: "120", f: "json", referer: "http://here", username: "jo", password: "p@w" } },
            { tag: "empty password", password: "", more: [],
              form: { expiration: "120", f: "json", referer: "http://here", username: "jo", password: "" } },
            { tag: "signs", password: "a&b=c+d é%", more: [],
              form: { expiration: "120", f: "json", referer: "http://here", username: "jo",
                      password: "a&b=c+d é%" } }
        ];
    }

    function test_tokenRequest(row) {
        const portal = makePortal({ portalUrl: "http://here", tokenServicesUrl: TestSupport.serverUrl("/echo") });
        const request = requests(portal)[1];
        const before = TestSupport.serverRequestCount();
        request.generateToken.apply(request, ["jo", row.password].concat(row.more));
        tryCompare(request, "readyState", NetworkRequest.ReadyStateComplete);
        compare(TestSupport.serverRequestCount(), before + 1);
        compare(lastForm(), sorted(row.form));
    }

    function test_expirySignsOutByDefault() {
        const portal = makePortal({ portalUrl: hastyServer });
        const expired = makeSpy(portal, "expired");
        portal.signIn("demo", "demo");
        tryCompare(portal, "signedIn", true);
        tryCompare(portal, "signedIn", false);
        const left = portal.expires.getTime() - Date.now();
        verify(left <= 5000 && left > 3000, left);   // five seconds before the token's end
        compare(expired.count, 0);
        compare(portal.user, null);
        compare(portal.username, "demo");
    }

    function test_expiryRaisesTheSignal() {
        const portal = makePortal({ portalUrl: hastyServer });
        portal.expiryMode = portal.expiryModeSignal;
        const expired = makeSpy(portal, "expired");
        portal.signIn("demo", "demo");
        tryVerify(function() { return portal.user; });
        const token = portal.token;
        expired.wait(5000);
        compare(expired.count, 1);
        compare(portal.token, token);
        compare(portal.signedIn, true);
        requests(portal).forEach(function(request) {
            compare(request.readyState, NetworkRequest.ReadyStateComplete);   // no new one
        });
    }

    function test_expiryThatSignsInStopsAtItsMissingArguments() {
        const portal = makePortal({ portalUrl: hastyServer });
        portal.expiryMode = portal.expiryModeSignIn;
        const expired = makeSpy(portal, "expired");
        portal.signIn("demo", "demo");
        tryVerify(function() { return portal.user; });
        const token = portal.token;
        ignoreWarning(/Cannot assign \[undefined\] to QString/);
        TestSupport.clearLog();
        tryVerify(function() {
            return TestSupport.logCount("warning", "", "Cannot assign [undefined] to QString") === 1;
        });
        compare(portal.token, token);
        compare([portal.username, portal.password], ["demo", "demo"]);
        compare(expired.count, 0);
        requests(portal).forEach(function(request) {
            compare(request.readyState, NetworkRequest.ReadyStateComplete);
        });
    }

    function test_expiryComesAfterASignOutToo() {
        const portal = makePortal({ portalUrl: hastyServer });
        portal.expiryMode = portal.expiryModeSignal;
        const expired = makeSpy(portal, "expired");
        portal.signIn("demo", "demo");
        tryCompare(portal, "signedIn", true);
        portal.signOut();
        expired.wait(5000);
        compare(expired.count, 1);
        compare(portal.signedIn, false);
    }

    function test_expiryInterval() {
        const longer = TestSupport.startPortal(["--token-minutes", "30"]);
        const portal = makePortal({ portalUrl: longer });
        portal.signIn("demo", "demo");
        tryVerify(function() { return portal.info; });
        let timer = null;
        for (let i = 0; i < portal.resources.length; ++i) {
            if (portal.resources[i].interval !== undefined)
                timer = portal.resources[i];
        }
        verify(timer.running && !timer.repeat);
        verify(timer.interval <= 1795000 && timer.interval > 1785000, timer.interval);
    }

    function test_newPortalUrlSignsOut() {
        const portal = makePortal({ portalUrl: server });
        portal.signIn("demo", "demo");
        tryVerify(function() { return portal.user; });
        const owner = portal.owningSystemUrl;
        portal.portalUrl = "http://127.0.0.1:1";
        compare(portal.signedIn, false);
        compare(portal.user, null);
        compare(portal.tokenServicesUrl.toString(), "");
        compare([portal.username, portal.password], ["demo", "demo"]);
        compare(portal.owningSystemUrl, owner);   // the answer has replaced the binding
    }

    function test_errorOfTheService() {
        const portal = makePortal({ portalUrl: server });
        const error = makeSpy(portal, "error");
        portal.signIn("demo", "wrong");
        error.wait();
        compare(error.signalArguments[0][0].code, 400);
        compare(error.signalArguments[0][0].message, "Unable to generate token.");
        compare(error.signalArguments[0][0].details, ["Invalid username or password."]);
        compare(portal.signedIn, false);
    }

    function test_errorOfTheTransport() {
        const portal = makePortal({ portalUrl: server, tokenServicesUrl: "http://127.0.0.1:1/token" });
        const error = makeSpy(portal, "error");
        TestSupport.clearLog();
        portal.signIn("demo", "demo");
        error.wait();
        const argument = error.signalArguments[0][0];
        compare(Object.keys(argument).sort(), ["details", "message"]);
        compare(argument.details, "");
        verify(argument.message !== "");
        tryVerify(function() {
            return TestSupport.logCount("debug", "qml", "generateToken error " + argument.message) === 1;
        });
    }

    function test_signInIsLogged() {
        const portal = makePortal({ portalUrl: server });
        TestSupport.clearLog();
        portal.signIn("demo", "demo");
        tryCompare(portal, "signedIn", true);
        tryVerify(function() { return portal.info && portal.user; });
        compare(TestSupport.logCount("debug", "qml", "info: {"), 1);
        compare(TestSupport.logCount("debug", "qml", "username demo generateToken: {"), 1);
        compare(TestSupport.logCount("debug", "qml", "expires "), 1);
        compare(TestSupport.logCount("debug", "qml", " hours"), 1);
    }

    function test_authorizedUrlGivesNothing() {
        const portal = makePortal({});
        compare(portal.authorizedUrl("x"), undefined);
        compare(portal.authorizedUrl(), undefined);
    }
}
