/*
    The records of a log file as they come.

        LogView {
            path: Tessaline.logging.outputLocation   // a file URL; anything else shows nothing
            running: Tessaline.logging.enabled
        }

    The file is read from where the last look at it ended, a few times per second.
*/
import QtQuick 2.15
import QtQuick.Controls 2.15
import Zemrik.Tessaline 1.0

Rectangle {
    id: view

    property url path
    property bool running: false
    property real unit: 1
    property string emptyText
    readonly property bool readable: path.toString().startsWith("file:")
    readonly property int count: records.count
    readonly property int longest: 2000   // records; the oldest go first

    // From the beginning of the file, or of its last part if it is a long one.
    function restart() {
        const tail = 200000;
        records.clear();
        file.next = 0;
        if (readable) {
            const size = Tessaline.fileInfo(path).size;
            if (size > tail)
                file.next = size - tail;
            readMore();
        }
    }
    function clear() {
        records.clear();
    }
    function readMore() {
        file.url = view.path;
        if (!readable || !file.open(File.OpenModeReadOnly))
            return;
        file.position = file.next;
        while (!file.atEnd) {
            const line = file.readLine();
            if (!line.endsWith("\n"))
                break;   // not all there yet
            file.next = file.position;
            show(line.slice(0, -1));
        }
        file.close();
        if (records.count > longest)
            records.remove(0, records.count - longest);
    }
    function show(line) {
        const current = /^<(\d+)>\d+ \S+T(\S+?)Z? (\S+) (\S+) (\S+) - (-|(?:\[[^\]]*\])+) (.*)$/.exec(line);
        const old = /^<(\d+)>(?:\S+ \S+ (\S+)) (\S+) (.*?): (.*)$/.exec(line);
        if (current)
            records.append({
                severity: current[1] % 8,
                time: current[2],
                message: current[7],
                details: current[4] + " on " + current[3] + ", process " + current[5] + (current[6] === "-" ? "" : "\n" + current[6])
            });
        else if (old)
            records.append({ severity: old[1] % 8, time: old[2], message: old[5], details: old[4] + " on " + old[3] });
    }

    color: "#241f33"

    File {
        id: file

        property real next: 0   // where the next look begins
    }

    Timer {
        interval: 300
        repeat: true
        running: view.running && view.readable
        onTriggered: view.readMore()
        onRunningChanged: if (!running) view.readMore()   // the closing row
    }

    ListModel {
        id: records
    }

    ListView {
        id: list

        // Follows the newest record unless the user looks further up.
        property bool following: true

        anchors { fill: parent; topMargin: 6 * view.unit; bottomMargin: 6 * view.unit }
        objectName: "records"
        model: records
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}
        onMovementEnded: following = atYEnd
        onContentHeightChanged: follow()
        onHeightChanged: follow()
        onVisibleChanged: follow()

        function follow() {
            if (following)
                Qt.callLater(positionViewAtEnd);
        }

        delegate: RecordItem {
            objectName: "record"
            width: list.width
            unit: view.unit
            time: model.time
            severity: model.severity
            message: model.message
            details: model.details
        }
    }

    Text {
        anchors.centerIn: parent
        width: parent.width - 60 * view.unit
        visible: list.count === 0
        text: view.emptyText
        color: "#b9b3cc"
        font.pixelSize: 14 * view.unit
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }
}
