// The apps of this machine and of the portal in one list, as the search box and the filters have it.
//
// AppInfoList says nothing of a search that failed, and refuses every later one: a search has a time
// limit here, the portal is asked at the same time whether it is there and knows the user, and after a
// failure the list is replaced by a new one.
import QtQuick 2.15
import Zemrik.Tessaline 1.0

Item {
    id: catalogue

    property var portal
    property var morePaths: []          // folders of apps besides the usual one
    property string ownId               // the app that shows this list isn't in it
    property string text                // searched for: part of a title, #tag, @owner
    property string show: "all"         // or "local", "hosted", "updates", "changed"
    property string order: "name"       // or "nameDown", "newest", "oldest"
    property Settings settings          // remembers what was downloaded when
    property int timeLimit: 20000       // milliseconds for a search, with all its pages

    property var apps: []               // AppInfo, the pinned ones first
    property int updateCount: 0
    property int revision: 0            // grows with each change of the list
    property string failure             // why the portal's apps are missing; empty: they aren't
    property bool refused: false        // because the user has to sign in again
    readonly property bool refreshing: list !== null && list.isRefreshing && failure === ""
    readonly property AppInfoList list: loader.item

    visible: false
    onOrderChanged: list.refresh()

    Loader {
        id: loader

        sourceComponent: AppInfoList {
            id: appList

            portal: catalogue.portal
            filter.text: catalogue.text
            filter.local: catalogue.show === "local"
            filter.onlineOnly: catalogue.show === "hosted"
            filter.updateAvailable: catalogue.show === "updates"
            filter.updatedLocally: catalogue.show === "changed"

            onRefreshStart: catalogue.sort(appList)
            onFilteredAppsChanged: Qt.callLater(catalogue.rebuild)
            onIsRefreshingChanged: {
                if (isRefreshing) {
                    limit.restart();
                } else {
                    limit.stop();
                    catalogue.failure = "";   // it may have come too late
                }
            }
            Component.onCompleted: {
                if (catalogue.morePaths.length > 0)
                    searchPaths = [ folderPath(AppInfoList.Apps) ].concat(catalogue.morePaths);
            }
        }
    }

    Connections {
        target: catalogue.portal

        function onSignedInChanged() {
            if (catalogue.failure > "")
                catalogue.refresh();
            else if (catalogue.portal.signedIn)
                probe.check();   // the list searches by itself
        }
    }

    Timer {
        id: limit

        interval: catalogue.timeLimit
        onTriggered: catalogue.fail(qsTr("The portal doesn't answer."))
    }

    Probe {
        id: probe

        portal: catalogue.portal
        onFailed: {
            if (catalogue.refreshing)
                catalogue.fail(qsTr("The portal can't be reached: %1").arg(reason));
        }
        onRefused: {
            if (catalogue.refreshing) {
                catalogue.fail(qsTr("The portal refuses to be searched. Sign in again. %1").arg(reason));
                catalogue.refused = true;
            }
        }
    }

    // Reads the disk and asks the portal, if somebody is signed in.
    function refresh() {
        if (refreshing)
            return;
        if (list.isRefreshing) {
            loader.active = false;
            loader.active = true;
        }
        failure = "";
        list.refresh(true);
        if (list.isRefreshing)
            probe.check();
    }

    // Two folders may hold the same item: an app of this machine is known by its path.
    function keyOf(info) {
        return info.isLocal ? info.path : info.itemId;
    }
    // By its key or its item id, which is the key until the app is downloaded.
    function find(key) {
        let found = null;
        for (let i = 0; list && i < list.apps.length; i++) {
            const info = list.apps[i];
            if (keyOf(info) === key)
                return info;
            if (!found && key > "" && info.itemId === key)
                found = info;
        }
        return found;
    }

    // What a download has written is newer than the portal's item, too: only files that are not as the
    // download left them are a change.
    function isChanged(info) {
        return info.isUpdatedLocally && settings.value("downloaded/" + info.itemId, "") !== stateOf(info);
    }
    function rememberDownload(itemId) {
        list.refresh();
        const info = find(itemId);
        if (info && info.isLocal) {
            settings.setValue("downloaded/" + itemId, stateOf(info));
            settings.synchronize();
            rebuild();
        }
    }
    function stateOf(info) {
        const folder = Tessaline.fileFolder(info.path);
        return folder.fileNames().filter(name => name.charAt(0) !== "." && !name.endsWith(".user")).map(name => {
            const file = folder.fileInfo(name);
            return name + " " + file.size + " " + file.lastModified.getTime();
        }).join("\n");
    }

    function fail(text) {
        limit.stop();
        refused = false;
        failure = text;
    }

    function sort(list) {
        const down = order === "nameDown" || order === "newest";
        const direction = down ? AppInfoList.Descending : AppInfoList.Ascending;
        if (order === "newest" || order === "oldest")
            list.sortByDate(direction);
        else
            list.sortByName(direction);
    }

    function rebuild() {
        const found = [];
        for (let i = 0; i < list.filteredApps.length; i++) {
            const info = list.filteredApps[i];
            if (info.itemId !== ownId && (show !== "changed" || isChanged(info)))
                found.push(info);
        }
        apps = found.filter(info => info.pinned).concat(found.filter(info => !info.pinned));
        updateCount = list.onlineUpdatesCount;
        revision++;
    }
}
