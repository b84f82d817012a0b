import QtQuick 2.2
import QtQuick.Controls 1.1
import QtQuick.Controls.Styles 1.1
import Zemrik.Tessaline 1.0

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
Item {
    id: fader

    /*! What is dimmed: any object with an opacity. The parent by default. */
    property QtObject target: parent
    /*! False stops, with the target at \l maximumOpacity. True by default. */
    property bool enabled: true
    /*! Milliseconds until the target dims. 3000 by default. */
    property int timeoutDuration: 3000
    /*! Milliseconds that dimming takes. 3000 by default. */
    property int animationDuration: 3000
    /*! Where dimming ends. 0.35 by default. The name is spelt like this. */
    property real minumumOpacity: 0.35
    /*! Where the target begins. 1.0 by default. */
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

    /*! \internal */
    function followEnabled() {
        if (enabled)
            start();
        else
            stop();
    }

    /*! The target is at \l maximumOpacity at once, and the delay begins anew. Nothing while disabled. */
    function start() {
        if (enabled) {
            stop();
            fadeTimer.start();
        }
    }

    /*! The target stays at \l maximumOpacity. */
    function stop() {
        fadeTimer.stop();
        fadeAnimation.stop();
        target.opacity = maximumOpacity;
    }
}
