import QtQuick 2.2
import QtGraphicalEffects 1.0

/*!
    \qmltype ImageButton
    \inqmlmodule Zemrik.Tessaline.Controls
    \brief An image used as a button, with a glow.

    \qml
    ImageButton {
        width: 40; height: 40
        source: "images/gear.png"
        onClicked: settingsPage.open()
    }
    \endqml

    The glow shows while the button is pressed or hovered, while it is \c checked, and always where
    \c glowColor is set.
*/
Rectangle {
    id: button

    /*! The picture. */
    property alias source: buttonImage.source
    /*! The Image that shows it. */
    property alias image: buttonImage
    /*! The Glow around it. */
    property alias glow: buttonGlow
    /*! Glows in \l checkedColor; a click doesn't change it. False by default. */
    property bool checked: false
    /*! "#00b2ff" by default. */
    property color checkedColor: "#00b2ff"
    /*! "lightgrey" by default. */
    property color pressedColor: "lightgrey"
    /*! "grey" by default. */
    property color hoverColor: "grey"
    /*! A colour that isn't "transparent", the default, glows all the time. */
    property color glowColor: "transparent"
    /*! False: no glow and no signals. True by default. */
    property bool enabled: true

    /*! Pressed and released, but not held. */
    signal clicked()
    /*! The second click of two; the first one was \l clicked() too. */
    signal doubleClicked()
    /*! Held down for a while. */
    signal pressAndHold()

    color: "transparent"
    width: 32
    height: 32

    Glow {
        id: buttonGlow

        anchors.fill: buttonImage
        // A colour never equals its name as text.
        visible: button.enabled
                 && (mouseArea.pressed || mouseArea.hovering || button.checked
                     || !Qt.colorEqual(button.glowColor, "transparent"))
        color: mouseArea.pressed ? button.pressedColor
             : mouseArea.hovering ? button.hoverColor
             : button.checked ? button.checkedColor
             : button.glowColor
        radius: 12
        samples: 16
        spread: 0.75
        source: buttonImage
    }

    Image {
        id: buttonImage

        anchors.fill: parent
        fillMode: Image.PreserveAspectFit
    }

    MouseArea {
        id: mouseArea

        property bool hovering: false

        anchors.fill: parent
        hoverEnabled: true
        cursorShape: button.enabled && containsMouse ? Qt.PointingHandCursor : Qt.ArrowCursor

        onEntered: hovering = button.enabled
        onExited: hovering = false
        onClicked: {
            if (button.enabled)
                button.clicked();
        }
        onDoubleClicked: {
            if (button.enabled)
                button.doubleClicked();
        }
        onPressAndHold: {
            if (button.enabled)
                button.pressAndHold();
        }
    }
}
