// A button with round ends, filled or with an outline.
import QtQuick 2.15

Rectangle {
    id: button

    property string text
    property bool filled: false
    property real unit: 1

    signal clicked()

    width: 116 * unit
    height: 44 * unit
    radius: height / 2
    color: filled ? (area.pressed ? "#a63a22" : "#c8452a") : area.pressed ? "#f3d9d2" : "transparent"
    border { width: activeFocus ? 3 * unit : filled ? 0 : 2 * unit; color: activeFocus ? "#3a1f17" : "#c8452a" }
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onPressed: {
        if ([ Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter ].includes(event.key)) {
            event.accepted = true;
            if (!event.isAutoRepeat)
                clicked();
        }
    }

    Text {
        anchors.centerIn: parent
        text: button.text
        color: button.filled ? "white" : "#9c3520"
        font { pixelSize: 15 * button.unit; bold: true }
    }
    MouseArea {
        id: area

        anchors.fill: parent
        onClicked: button.clicked()
    }
}
