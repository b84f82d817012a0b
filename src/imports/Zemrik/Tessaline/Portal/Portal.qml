import QtQuick 2.4
import Zemrik.Tessaline 1.0

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
    \endqml

    A button then calls \c {portal.signIn("user", "password")}.

    Catalogue and package types read the property \c url, which this document doesn't declare: declare
    it inline as above. Don't make the component the root of a document with another name, since the
    native classes know a portal by the name of its document.

    The name and password live in memory only. A failed token request raises \c error(); what fails
    before or after it is only logged.
*/
Item {
    id: _portal

    /*! What the portal is called. "Zemrik Online" by default. */
    property string name: "Zemrik Online"
    // The text of Endpoints.js stands here once more: a binding would come after what a document
    // sets, as a new value.
    /*! Where the portal is, without a trailing slash. A new value signs out. */
    property url portalUrl: "http://portal.zemrik.example"
    /*! Where tokens come from. Empty: the portal is asked. */
    property url tokenServicesUrl
    /*! What the portal says it belongs to; \l portalUrl until it has been asked. */
    property url owningSystemUrl: portalUrl
    /*! \l portalUrl with "/sharing/rest". */
    readonly property url restUrl: portalUrl + "/sharing/rest"
    /*! Set by \l signIn(). */
    property string username
    /*! Set by \l signIn(), kept in memory only, and not cleared by \l signOut(). */
    property string password
    /*! Empty: signed out. */
    property string token
    /*! What the token service says. */
    property bool ssl: false
    /*! Holds for all requests of this component. False by default. */
    property bool ignoreSslErrors: false
    /*! When the token runs out. Invalid before the first sign-in. */
    property date expires
    /*! Whether there is a token. Turns true before \l expires, \l info and \l user are there. */
    readonly property bool signedIn: token > ""
    /*! What happens 5 seconds before \l expires: one of the three values below. */
    property int expiryMode: expiryModeSignOut
    /*! True for an on-premises portal, which \l PortalDialog knows. */
    property bool isPortal: false
    /*! \l expired() is raised, and the token stays. */
    property int expiryModeSignal: 0
    /*! \l signOut(), the default. */
    property int expiryModeSignOut: 1
    /*! \l signIn() without arguments: a script error, and the token stays. */
    property int expiryModeSignIn: 2
    /*! What the portal says about itself, once signed in. */
    property var info
    /*! What the portal says about the user, once signed in; null after \l signOut(). */
    property var user
    /*! The user's picture, with the token in its query; empty without a \l user. */
    property url userThumbnailUrl: user
                                   ? restUrl + "/community/users/" + username + "/info/"
                                     + user.thumbnail + "?token=" + token
                                   : ""

    /*! The token has run out, and \l expiryMode says to tell. */
    signal expired()
    /*! The token service refused or can't be reached: an object with "message" and "details". */
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
            // A new attempt begins with an empty text, which is no failure.
            if (errorText > "")
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

    /*!
        Asks for a token for \a user and \a pass. \l signedIn turns true, or \l error() is raised, or
        only the log tells.
    */
    function signIn(user, pass) {
        username = user;
        password = pass;
        if (tokenServicesUrl > "")
            generateToken.generateToken(username, password);
        else
            infoRequest.send();
    }

    /*! Forgets the token and the user, nothing else. */
    function signOut() {
        token = "";
        user = null;
    }

    /*! Returns undefined, whatever the \a url. */
    function authorizedUrl(url) {
    }

    /*! \internal */
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

    /*! \internal */
    function tokenParameters() {
        var parameters = { "f": "pjson" };
        if (_portal.token > "")
            parameters.token = _portal.token;
        return parameters;
    }
}
