// Asks whether a portal is there at all and, once somebody is signed in, whether it knows the token.
import QtQuick 2.15
import Zemrik.Tessaline 1.0

QtObject {
    id: probe

    property var portal
    property NetworkRequest request: null

    signal failed(string reason)    // it isn't there
    signal refused(string reason)

    property Component component: Component {
        NetworkRequest {
            method: "POST"
            responseType: "json"
            uploadPrefix: ""   // a token is no file to send
            onErrorTextChanged: {
                if (errorText > "")
                    probe.failed(errorText);
            }
            onResponseChanged: {
                if (response && response.error)
                    probe.refused(response.error.message || "");
            }
        }
    }

    // A request that is still on its way counts no more.
    function check() {
        if (request)
            request.destroy();
        const known = portal.signedIn;
        request = component.createObject(probe, { url: portal.restUrl + (known ? "/portals/self" : "/info"), ignoreSslErrors: portal.ignoreSslErrors });
        request.send(known ? { f: "json", token: portal.token } : { f: "json" });
    }
}
