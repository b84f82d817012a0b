// One download of an app with what it depends on.
//
// AppPackage tells of a failure only what the portal itself reports; everything else (a portal that
// doesn't answer, a damaged archive) just leaves it waiting. So nothing happening for timeLimit counts
// as failed here, and each attempt has an AppPackage of its own.
import QtQuick 2.15
import Zemrik.Tessaline 1.0

QtObject {
    id: job

    property var info                    // AppInfo of what is downloaded
    property var portal
    property int timeLimit: 20000        // milliseconds without any progress
    property string state: "waiting"     // then "running", "failed" or "done"
    property int percentage: 0           // of the step that runs; it begins anew with each
    property string message              // what is being done, if there is something to say
    property string failure
    property AppPackage attempt: null

    readonly property string itemId: info ? info.itemId : ""
    readonly property string title: info ? info.title : ""

    signal ended()

    property Component attemptComponent: Component {
        AppPackage {
            onProgress: {
                job.percentage = percentage;
                timer.restart();
            }
            onStatusMessageChanged: {
                job.message = statusMessage;
                timer.restart();
            }
            onStatusChanged: {
                if (status === ItemPackage.Ready)
                    job.end("done", "");
                else if (status === ItemPackage.Error)
                    job.end("failed", error.message || qsTr("The portal refused the download."));
            }
        }
    }
    property Timer timer: Timer {
        interval: job.timeLimit
        onTriggered: job.end("failed", qsTr("The download came to a halt: the portal doesn't answer, or what it sent can't be unpacked."))
    }

    function start() {
        state = "running";
        percentage = 0;
        message = "";
        failure = "";
        timer.restart();
        attempt = attemptComponent.createObject(job, { portal: portal, appInfo: info });
        attempt.download();
    }

    function end(newState, text) {
        if (state !== "running")
            return;
        timer.stop();
        attempt.destroy();
        attempt = null;
        failure = text;
        state = newState;
        ended();
    }
}
