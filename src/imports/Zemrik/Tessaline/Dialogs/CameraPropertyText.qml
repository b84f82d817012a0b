// A line of information among the settings.
import QtQuick 2.3

Text {
    width: parent ? parent.width : implicitWidth
    color: "white"
    font.pointSize: 14
    wrapMode: Text.WrapAtWordBoundaryOrAnywhere
}
