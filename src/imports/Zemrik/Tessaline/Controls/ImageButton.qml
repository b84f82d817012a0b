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
import QtQuick 2.2
import QtGraphicalEffects 1.0

Rectangle {
    id: button

    property alias source: buttonImage.source
    property alias image: buttonImage
    property alias glow: buttonGlow
    property bool checked: false
    property color checkedColor: "#00b2ff"
    property color pressedColor: "lightgrey"
    property color hoverColor: "grey"
    property color glowColor: "transparent"
    property bool enabled: true

    signal clicked()
    signal doubleClicked()
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
