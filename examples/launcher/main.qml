/*
    Launcher: finds, downloads and starts apps.

    The apps of this machine and those that a portal offers are in one list (Catalogue). An app's page
    downloads it with what it depends on (Downloads) and starts it in place (RunPage). The portal is
    declared inline with the property "url", by which the native classes know it.

    The environment may give a portal and more: LAUNCHER_PORTAL is its address, LAUNCHER_USER and
    LAUNCHER_PASSWORD are filled in when signing in, LAUNCHER_APPS holds further folders of apps, with
    ";" between them. LAUNCHER_TOUR makes the launcher show itself (Tour).
*/
import QtQuick 2.15
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Portal 1.0

App {
    id: app

    readonly property real unit: Tessaline.displayScaleFactor
    property alias portal: hostedPortal
    property alias catalogue: appCatalogue
    property alias downloads: appDownloads
    property alias signIn: portalSignIn
    property alias gridPage: grid
    property alias detailsPage: details
    property alias runPage: run
    property int timeLimit: 20000   // milliseconds for a search or a sign-in, or without progress of a download
    property string page: "grid"    // or "details", "run"
    property string selectedKey     // of the app on the details page
    readonly property var selected: appCatalogue.revision >= 0 && selectedKey > "" ? appCatalogue.find(selectedKey) : null
    property var newApps: ({})      // item ids that were downloaded since they were started last

    width: Math.min(1000 * unit, 0.95 * Qt.application.screens[0].desktopAvailableWidth)
    height: Math.min(720 * unit, 0.9 * Qt.application.screens[0].desktopAvailableHeight)

    Component.onCompleted: {
        portalSignIn.prepare();
        appCatalogue.list.refresh();
        grid.focusGrid();
        if (setting("LAUNCHER_TOUR") > "")
            tour.setSource("Tour.qml", { launcher: app, folder: setting("LAUNCHER_TOUR") });
    }
    // A hosted app is gone after the sign-out.
    onSelectedChanged: {
        if (!selected && page === "details")
            showGrid();
    }

    function setting(name) {
        return Tessaline.environment.value(name, "");
    }

    function showGrid() {
        page = "grid";
        grid.focusGrid();
    }
    function showDetails(info) {
        selectedKey = appCatalogue.keyOf(info);
        page = "details";
        details.begin();
    }
    function start(info) {
        page = "run";
        run.start(info, newApps[info.itemId] === true);
        delete newApps[info.itemId];
    }
    function comeBack() {
        run.stop();
        if (!selected) {   // after a sign-out, or the app has removed itself
            showGrid();
            return;
        }
        page = "details";
        details.focusAction();
    }

    Portal {
        id: hostedPortal

        property url url: portalUrl   // what the native classes read
    }

    Catalogue {
        id: appCatalogue

        portal: hostedPortal
        settings: app.settings
        ownId: app.info.itemId
        morePaths: app.setting("LAUNCHER_APPS").split(";").filter(path => path > "")
        timeLimit: app.timeLimit
    }

    Downloads {
        id: appDownloads

        portal: hostedPortal
        timeLimit: app.timeLimit
        onCompleted: {
            app.newApps[itemId] = true;
            appCatalogue.rememberDownload(itemId);
            if (app.selectedKey === itemId && app.selected)
                app.selectedKey = appCatalogue.keyOf(app.selected);
        }
    }

    SignIn {
        id: portalSignIn

        portal: hostedPortal
        settings: app.settings
        address: app.setting("LAUNCHER_PORTAL").replace(/\/+$/, "")
        username: app.setting("LAUNCHER_USER")
        password: app.setting("LAUNCHER_PASSWORD")
        timeLimit: app.timeLimit
    }

    GridPage {
        id: grid

        anchors.fill: parent
        visible: app.page === "grid"
        focus: visible
        unit: app.unit
        catalogue: appCatalogue
        downloads: appDownloads
        portal: hostedPortal
        onOpened: app.showDetails(info)
        onSignInWanted: portalSignIn.show()
    }

    DetailsPage {
        id: details

        anchors.fill: parent
        visible: app.page === "details"
        focus: visible
        unit: app.unit
        info: app.selected
        catalogue: appCatalogue
        downloads: appDownloads
        portal: hostedPortal
        onBack: app.showGrid()
        onStartWanted: app.start(info)
        onSignInWanted: portalSignIn.show()
    }

    RunPage {
        id: run

        anchors.fill: parent
        visible: app.page === "run"
        focus: visible
        unit: app.unit
        onBack: app.comeBack()
    }

    Loader { id: tour }
}
