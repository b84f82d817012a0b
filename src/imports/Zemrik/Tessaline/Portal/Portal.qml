/*!
    \qmltype Portal
    \inqmlmodule Zemrik.Tessaline.Portal
    \brief One sign-in to a portal: where it is, who is signed in, and the token.

    \qml
    Portal {
        id: portal

        property url url: portalUrl   // how the native classes see the portal

        portalUrl: "http://localhost:8080"
        onSignedInChanged: console.log(signedIn ? "hello " + username : "signed out")
        onError: console.warn(error.message)
    }

    Button {
        text: "Sign in"
        onClicked: portal.signIn("user", "password")
    }
    \endqml

    Catalogue and package types read the property \c url, which this document doesn't declare: declare
    it inline as above. Don't make the component the root of a document with another name, since the
    native classes know a portal by the name of its document.

    The name and password live in memory only. A failed token request raises \c error(); what fails
    before or after it is only logged.
*/
import QtQuick 2.4
import Zemrik.Tessaline 1.0

Item {
    id: _portal

    property string name: "Zemrik Online"
    // No trailing slash; a new value signs out. The text of Endpoints.js stands here once more: a
    // binding would come after what a document sets, as a new value.
    property url portalUrl: "http://portal.zemrik.example"
    property url tokenServicesUrl                 // set it to skip asking the portal for it
    property url owningSystemUrl: portalUrl
    readonly property url restUrl: portalUrl + "/sharing/rest"
    property string username
    property string password
    property string token                         // empty: signed out
    property bool ssl: false
    property bool ignoreSslErrors: false
    property date expires
    readonly property bool signedIn: token > ""
    property int expiryMode: expiryModeSignOut    // what happens when the token runs out
    property bool isPortal: false
    property int expiryModeSignal: 0
    property int expiryModeSignOut: 1
    property int expiryModeSignIn: 2
    property var info                             // the portal about itself
    property var user                             // the portal about the user; null after signOut()
    property url userThumbnailUrl: user
                                   ? restUrl + "/community/users/" + username + "/info/"
                                     + user.thumbnail + "?token=" + token
                                   : ""

    signal expired()
    signal error(var error)

    onPortalUrlChanged: {
        tokenServicesUrl = "";
        signOut();
    }

    Timer {
        id: timer

        onTriggered: {
            if (_portal.expiryMode === _portal.expiryModeSignIn)
                signIn();   // without arguments: the engine stops here, and the user has to act
            else if (_portal.expiryMode === _portal.expiryModeSignOut)
                signOut();
            else
                expired();
        }
    }

    // No request to a portal may take a value that begins with "@" for the name of a file to upload:
    // all four have an empty uploadPrefix.
    NetworkRequest {
        id: infoRequest

        url: portalUrl + "/sharing/rest/info?f=json"
        responseType: "json"
        uploadPrefix: ""
        ignoreSslErrors: _portal.ignoreSslErrors

        onReadyStateChanged: {
            if (readyState === NetworkRequest.ReadyStateComplete) {
                console.log("info:", JSON.stringify(response, undefined, 2));
                tokenServicesUrl = response.authInfo.tokenServicesUrl;
                owningSystemUrl = response.owningSystemUrl;
                // By id: a request has a property "password" of its own.
                generateToken.generateToken(_portal.username, _portal.password);
            }
        }
        onErrorTextChanged: console.log("infoRequest error", errorText)
    }

    NetworkRequest {
        id: generateToken

        url: tokenServicesUrl
        method: "POST"
        responseType: "json"
        uploadPrefix: ""
        ignoreSslErrors: _portal.ignoreSslErrors

        onReadyStateChanged: {
            if (readyState === NetworkRequest.ReadyStateComplete)
                _portal.takeToken(response);
        }
        onErrorTextChanged: {
            _portal.error({ details: "", message: errorText });
            console.log("generateToken error", errorText);
        }

        function generateToken(username, password, expiration, referer) {
            if (!expiration)
                expiration = 120;
            if (!referer)
                referer = portalUrl;

            var formData = {
                "expiration": expiration,
                "f": "json",
                "referer": referer,
                "username": username
            };
            if (password.substr(0, 1) === "@")
                formData["#password"] = password;
            else
                formData["password"] = password;
            send(formData);
        }
    }

    NetworkRequest {
        id: selfRequest

        url: restUrl + "/portals/self"
        method: "POST"
        responseType: "json"
        uploadPrefix: ""
        ignoreSslErrors: _portal.ignoreSslErrors

        onReadyStateChanged: {
            if (readyState === NetworkRequest.ReadyStateComplete)
                _portal.info = response;
        }
        onErrorTextChanged: console.log("selfRequest error", errorText)

        function sendRequest() {
            send(_portal.tokenParameters());
        }
    }

    NetworkRequest {
        id: userRequest

        url: restUrl + "/community/users/" + username
        method: "POST"
        responseType: "json"
        uploadPrefix: ""
        ignoreSslErrors: _portal.ignoreSslErrors

        onReadyStateChanged: {
            if (readyState === NetworkRequest.ReadyStateComplete)
                _portal.user = response;
        }
        onErrorTextChanged: console.log("userRequest error", errorText)

        function sendRequest() {
            send(_portal.tokenParameters());
        }
    }

    function signIn(user, pass) {
        username = user;
        password = pass;
        if (tokenServicesUrl > "")
            generateToken.generateToken(username, password);
        else
            infoRequest.send();
    }

    function signOut() {
        token = "";
        user = null;
    }

    function authorizedUrl(url) {
    }

    function takeToken(response) {
        if (response.error) {
            _portal.error(response.error);
        } else if (response.token) {
            console.log("username", username, "generateToken:", JSON.stringify(response, undefined, 2));
            token = response.token;   // signedIn turns true here, before what follows is stored
            expires = new Date(response.expires);
            ssl = response.ssl;
            timer.interval = expires - Date.now() - 5000;
            timer.start();
            console.log("expires", expires, timer.interval / 3600000, "hours");
            selfRequest.sendRequest();
            userRequest.sendRequest();
        }
    }

    function tokenParameters() {
        var parameters = { "f": "pjson" };
        if (_portal.token > "")
            parameters.token = _portal.token;
        return parameters;
    }
}
