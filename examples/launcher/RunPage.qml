// An app, started in place, below a bar to come back.
import QtQuick 2.15
import Zemrik.Tessaline 1.0
import "Format.js" as Format
import "Theme.js" as Theme

FocusScope {
    id: page

    property string title
    property string failure
    property real unit: 1
    property var component: null
    readonly property bool waiting: component !== null && component.status === Component.Loading
    readonly property alias app: loader.item

    signal back()

    // An app that was downloaded anew needs the engine to forget what it has compiled.
    function start(info, isNew) {
        stop();
        if (isNew)
            Tessaline.clearComponentCache();
        title = Format.line(info.title);
        failure = "";
        component = Qt.createComponent(info.source, Component.PreferSynchronous, page);
        if (waiting)   // for what it imports from elsewhere
            component.statusChanged.connect(load);
        else
            load();
        loader.forceActiveFocus();
    }
    function load() {
        if (component.status === Component.Error) {
            failure = component.errorString();
            return;
        }
        loader.sourceComponent = component;
        if (!(loader.item instanceof Item)) {
            loader.sourceComponent = undefined;
            failure = qsTr("The app's main document is no item.");
        }
    }
    function leave(event) {
        if (!event.isAutoRepeat)
            back();
    }
    function stop() {
        loader.sourceComponent = undefined;
        if (component)
            component.destroy();
        component = null;
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }

    Loader {
        id: loader

        anchors { left: parent.left; right: parent.right; top: bar.bottom; bottom: parent.bottom }
        focus: true
        clip: true
    }

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 40 * page.unit, 560 * page.unit)
        visible: page.failure > "" || page.waiting
        spacing: 10 * page.unit

        Text {
            width: parent.width
            objectName: "startText"
            text: (page.waiting ? qsTr("%1 is being loaded") : qsTr("%1 can't be started")).arg(page.title)
            textFormat: Text.PlainText
            color: Theme.text
            font { pixelSize: 18 * page.unit; bold: true }
            wrapMode: Text.Wrap
        }
        Text {
            width: parent.width
            objectName: "startFailure"
            text: page.failure
            textFormat: Text.PlainText
            color: Theme.bad
            font.pixelSize: 13 * page.unit
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            maximumLineCount: 8
            elide: Text.ElideRight
        }
    }

    Rectangle {
        id: bar

        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: 44 * page.unit
        color: Theme.text

        Text {
            anchors { left: leaveButton.right; right: parent.right; leftMargin: 6 * page.unit; rightMargin: 12 * page.unit; verticalCenter: parent.verticalCenter }
            text: page.title
            textFormat: Text.PlainText
            color: "white"
            font { pixelSize: 15 * page.unit; bold: true }
            elide: Text.ElideRight
        }
        PushButton {
            id: leaveButton

            anchors { left: parent.left; leftMargin: 6 * page.unit; verticalCenter: parent.verticalCenter }
            objectName: "leaveButton"
            unit: page.unit
            flat: true
            dark: true
            text: qsTr("‹ Apps")
            onClicked: page.back()
        }
    }

    // Escape may be the app's own: what it doesn't take comes here.
    Keys.onEscapePressed: leave(event)
    Keys.onBackPressed: leave(event)
    Shortcut { sequence: StandardKey.Back; enabled: page.visible; onActivated: page.back() }
}
