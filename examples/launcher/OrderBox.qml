// In which order the apps are listed.
import QtQuick 2.15
import QtQuick.Controls 2.15
import "Theme.js" as Theme

ComboBox {
    id: box

    property var catalogue
    property real unit: 1

    implicitWidth: 128 * unit
    implicitHeight: 36 * unit
    font.pixelSize: 13 * unit
    Accessible.name: qsTr("Order")
    textRole: "text"
    valueRole: "order"
    model: [
        { order: "name", text: qsTr("Name A–Z") },
        { order: "nameDown", text: qsTr("Name Z–A") },
        { order: "newest", text: qsTr("Newest first") },
        { order: "oldest", text: qsTr("Oldest first") }
    ]
    onActivated: catalogue.order = currentValue
    Component.onCompleted: currentIndex = indexOfValue(catalogue.order)

    contentItem: Text {
        leftPadding: 12 * box.unit
        text: box.displayText
        color: Theme.text
        font: box.font
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    indicator: Text {
        anchors { right: parent.right; rightMargin: 10 * box.unit; verticalCenter: parent.verticalCenter }
        text: "▾"
        color: Theme.secondaryText
        font.pixelSize: 13 * box.unit
    }
    background: Rectangle {
        radius: 8 * box.unit
        color: box.down || box.hovered ? Theme.accentLight : Theme.surface
        border { width: box.visualFocus ? 2 * box.unit : 1; color: box.visualFocus ? Theme.text : "#b8c4dd" }
    }
    delegate: ItemDelegate {
        width: box.width
        height: 36 * box.unit
        highlighted: box.highlightedIndex === index

        contentItem: Text {
            leftPadding: 4 * box.unit
            text: modelData.text
            color: Theme.text
            font { pixelSize: 13 * box.unit; bold: box.currentIndex === index }
            verticalAlignment: Text.AlignVCenter
        }
        background: Rectangle {
            color: parent.highlighted ? Theme.accentLight : "transparent"
        }
    }
    popup: Popup {
        y: box.height + 4 * box.unit
        width: box.width
        padding: 4 * box.unit
        implicitHeight: contentItem.implicitHeight + 2 * padding

        contentItem: ListView {
            implicitHeight: contentHeight
            clip: true
            model: box.popup.visible ? box.delegateModel : null
            currentIndex: box.highlightedIndex
        }
        background: Rectangle {
            radius: 8 * box.unit
            color: Theme.surface
            border { width: 1; color: "#b8c4dd" }
        }
    }
}
