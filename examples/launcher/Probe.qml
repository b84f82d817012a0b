// Asks whether a portal is there at all. What the portal answers doesn't matter.
import QtQuick 2.15
import Zemrik.Tessaline 1.0

QtObject {
    id: probe

    property var portal
    property NetworkRequest request: null

    signal failed(string reason)

    property Component component: Component {
        NetworkRequest {
            uploadPrefix: ""
            onErrorTextChanged: {
                if (errorText > "")
                    probe.failed(errorText);
            }
        }
    }

    // A request that is still on its way counts no more.
    function check() {
        if (request)
            request.destroy();
        request = component.createObject(probe, { url: portal.restUrl + "/info?f=json", ignoreSslErrors: portal.ignoreSslErrors });
        request.send();
    }
}
