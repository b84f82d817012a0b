// A round button on a dark ground.
import QtQuick 2.15
import QtQuick.Controls 2.15
import "Theme.js" as Theme

AbstractButton {
    id: button

    property real unit: 1

    implicitWidth: 40 * unit
    implicitHeight: 40 * unit
    focusPolicy: Qt.NoFocus    // the page has keys for them

    contentItem: Text {
        text: button.text
        color: Theme.stageText
        font { pixelSize: 24 * button.unit; bold: true }
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        radius: width / 2
        color: button.down ? "#e6000000" : button.hovered ? "#cc000000" : "#8c000000"
    }
}
