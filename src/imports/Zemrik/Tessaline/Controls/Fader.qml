/*!
    \qmltype Fader
    \inqmlmodule Zemrik.Tessaline.Controls
    \brief Dims an item after a delay.

    \qml
    Rectangle {
        id: toolbar
        MouseArea {
            anchors.fill: parent
            onPressed: fader.start()   // back to full opacity, and the delay begins anew
        }
        Fader { id: fader }
    }
    \endqml
*/
import QtQuick 2.2
import QtQuick.Controls 1.1
import QtQuick.Controls.Styles 1.1
import Zemrik.Tessaline 1.0

Item {
    id: fader

    property QtObject target: parent       // what is dimmed
    property bool enabled: true
    property int timeoutDuration: 3000     // milliseconds at full opacity
    property int animationDuration: 3000   // milliseconds of dimming
    property real minumumOpacity: 0.35     // the name is the interface
    property real maximumOpacity: 1.0

    Component.onCompleted: {
        if (enabled)
            start();
        // Not before: a first value of false is no change, and leaves the target as it is.
        enabledChanged.connect(followEnabled);
    }

    PropertyAnimation {
        id: fadeAnimation

        target: fader.target
        property: "opacity"
        to: fader.minumumOpacity
        duration: fader.animationDuration
        easing.type: Easing.OutCubic
    }

    Timer {
        id: fadeTimer

        interval: fader.timeoutDuration
        repeat: false
        onTriggered: fadeAnimation.restart()
    }

    function followEnabled() {
        if (enabled)
            start();
        else
            stop();
    }

    function start() {
        if (enabled) {
            stop();
            fadeTimer.start();
        }
    }

    function stop() {
        fadeTimer.stop();
        fadeAnimation.stop();
        target.opacity = maximumOpacity;
    }
}
