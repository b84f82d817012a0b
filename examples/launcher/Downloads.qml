// All downloads since the start, by item id. They run one after the other, since two apps may need
// the same item.
import QtQuick 2.15

QtObject {
    id: downloads

    property var portal
    property int timeLimit: 20000
    property var running: null
    property var byId: ({})
    property int revision: 0   // grows when a download is added: for bindings that use of()

    signal completed(string itemId)

    property Component component: Component {
        Download {
            id: entry

            portal: downloads.portal
            timeLimit: downloads.timeLimit
            onEnded: downloads.next(entry)
        }
    }

    // The download of an item, or null.
    function of(itemId) {
        return byId[itemId] || null;
    }

    function start(info) {
        let download = of(info.itemId);
        if (!download)
            download = component.createObject(downloads);
        else if (download.state === "running" || download.state === "waiting")
            return;
        download.info = info;
        download.state = "waiting";
        byId[info.itemId] = download;
        if (!running)
            run(download);
        revision++;
    }

    function run(download) {
        running = download;
        download.start();
    }

    function next(ended) {
        running = null;
        if (ended.state === "done")
            completed(ended.itemId);
        for (const id in byId) {
            if (byId[id].state === "waiting") {
                run(byId[id]);
                return;
            }
        }
    }
}
