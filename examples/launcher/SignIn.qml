// The module's sign-in dialog, prepared for a portal that was given from outside.
//
// The dialog reads the portal in use from the settings when it is made, and stays busy for good if the
// portal doesn't answer before it is asked for a token: both are seen to here.
import QtQuick 2.15
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Portal 1.0
import "Theme.js" as Theme

Item {
    id: signIn

    property var portal
    property Settings settings
    property string address           // of a portal to begin with; empty: the one used last
    property string username          // filled in
    property string password
    property int timeLimit: 20000     // milliseconds for a sign-in
    property PortalDialog dialog: null

    visible: false

    Component {
        id: dialogComponent

        PortalDialog {
            portal: signIn.portal
            settings: signIn.settings
            settingsGroup: signIn.address > "" ? "GivenPortal" : "Portal"
            bannerColor: Theme.accent
        }
    }

    Connections {
        target: signIn.dialog

        function onBusyChanged() {
            if (signIn.dialog.busy) {
                limit.restart();
                probe.check();
            } else {
                limit.stop();
            }
        }
    }

    Timer {
        id: limit

        interval: signIn.timeLimit
        onTriggered: signIn.fail("")
    }

    // The dialog hears of a token that was refused; this hears of a portal that isn't there.
    Probe {
        id: probe

        portal: signIn.portal
        onFailed: signIn.fail(reason)
    }

    function prepare() {
        if (address > "") {
            const entry = { ignoreSslErrors: false, isPortal: true, name: qsTr("Development portal"), url: address };
            settings.setValue("GivenPortal/portals", JSON.stringify([ entry ]));
            for (const key in entry)
                settings.setValue("GivenPortal/" + key, entry[key]);
        }
        dialog = dialogComponent.createObject(signIn);
    }

    function show() {
        if (username > "")
            dialog.username = username;
        if (password > "")
            dialog.password = password;
        dialog.show(username > "" && password > "" ? qsTr("Press “Sign In”: the user %1 is filled in.").arg(username) : "");
    }

    function fail(details) {
        if (dialog.busy)
            portal.error({ message: qsTr("The portal doesn't answer."), details: details });
    }
}
