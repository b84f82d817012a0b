// The launcher showing itself: signs in, finds, downloads and starts the Tide Table, and leaves a
// picture of each step in a folder. Prints what it does; the last line is "tour: done" only if every
// step came to its end. For scripts/run where there is no display.
import QtQuick 2.15
import QtQuick.Window 2.15

Item {
    id: tour

    property var launcher
    property string folder
    readonly property string wanted: "tide-table"
    property int step: 0
    property real deadline          // of the step, milliseconds since the epoch

    // Each step begins with "act", is over when "until" holds, and leaves a picture.
    readonly property var steps: [
        {
            text: "shows the apps of this machine",
            act: () => {},
            until: () => launcher.catalogue.revision > 0,
            picture: "1-this-machine"
        },
        {
            text: "asks for the user",
            act: () => launcher.signIn.show(),
            until: () => launcher.signIn.dialog.visible,
            picture: "2-sign-in",
            item: () => launcher.signIn.dialog.contentItem
        },
        {
            text: "signs in and lists the portal's apps",
            act: () => {
                launcher.signIn.dialog.busy = true;
                launcher.portal.signIn(launcher.signIn.username, launcher.signIn.password);
            },
            until: () => launcher.portal.signedIn && !launcher.catalogue.refreshing && launcher.catalogue.find(wanted) !== null,
            picture: "3-with-the-portal"
        },
        {
            text: "searches for #tide",
            act: () => launcher.gridPage.searchField.text = "#tide",
            until: () => launcher.catalogue.apps.length === 1,
            picture: "4-search"
        },
        {
            text: "opens the page of the Tide Table",
            act: () => launcher.showDetails(launcher.catalogue.find(wanted)),
            until: () => launcher.page === "details",
            picture: "5-details"
        },
        {
            text: "downloads it with the data that it needs",
            act: () => launcher.detailsPage.startDownload(),
            until: () => downloadState() === "done" && launcher.selected.isLocal,
            picture: "6-downloaded"
        },
        {
            text: "starts it in place",
            act: () => launcher.start(launcher.selected),
            until: () => launcher.runPage.app && launcher.runPage.app.harbours.length > 0,
            picture: "7-running"
        },
        {
            text: "comes back to the list",
            act: () => {
                launcher.comeBack();
                launcher.gridPage.searchField.text = "";
                launcher.showGrid();
            },
            until: () => launcher.page === "grid" && launcher.catalogue.apps.length > 1,
            picture: "8-back"
        }
    ]

    Timer {
        id: poll

        property bool acted: false

        interval: 50
        repeat: true
        running: true
        onTriggered: {
            const current = tour.steps[tour.step];
            if (!acted) {
                console.info("tour: " + current.text);
                acted = true;
                tour.deadline = Date.now() + 40000;
                current.act();
            } else if (current.until()) {
                stop();
                settle.start();
            } else if (Date.now() > tour.deadline || tour.downloadState() === "failed" || launcher.runPage.failure > "") {
                stop();
                tour.fail(current.text);
            }
        }
    }

    // Pictures that are still on their way arrive, and animations end.
    Timer {
        id: settle

        interval: 700
        onTriggered: tour.takePicture(tour.steps[tour.step])
    }

    function downloadState() {
        const download = launcher.downloads.of(wanted);
        return download ? download.state : "";
    }

    function takePicture(current) {
        const item = current.item ? current.item() : launcher;
        const ratio = Screen.devicePixelRatio;
        const grabbing = item.grabToImage(result => {
            const file = folder + "/launcher-" + current.picture + ".png";
            if (result.saveToFile(file))
                next(file);
            else
                fail("can't write " + file);
        }, Qt.size(item.width * ratio, item.height * ratio));
        if (!grabbing)
            fail("can't take a picture");
    }

    function next(file) {
        console.info("tour:   picture " + file);
        step++;
        poll.acted = false;
        if (step < steps.length) {
            poll.start();
        } else {
            console.info("tour: done");
            Qt.quit();
        }
    }

    function fail(text) {
        const download = launcher.downloads.of(wanted);
        console.warn("tour: failed: " + text, download ? download.failure : "", launcher.catalogue.failure, launcher.runPage.failure);
        Qt.quit();
    }
}
