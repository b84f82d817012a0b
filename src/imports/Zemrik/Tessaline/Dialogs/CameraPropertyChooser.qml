// A setting with a few values: collapsed it shows the present one, expanded a grid of all.
import QtQuick 2.3
import Zemrik.Tessaline 1.0

Column {
    id: propertyItem

    property alias label: labelText.text
    property alias model: view.model      // rows with icon, value and label
    property variant value
    property variant currentItem: model.get(view.currentIndex)
    property int collapsedHeight: Tessaline.displayScaleFactor * 30
    property int itemWidth: width / columns
    property int itemHeight: itemWidth * 0.5
    property int columns: 2
    property bool expanded: false

    signal selected(var value)

    spacing: 5

    CameraPropertySection {
        id: labelText

        width: parent.width
        active: propertyItem.expanded

        MouseArea {
            anchors.fill: parent
            onClicked: propertyItem.expanded = !propertyItem.expanded
        }
    }

    Item {
        width: parent.width
        height: propertyItem.collapsedHeight
        visible: !propertyItem.expanded

        Row {
            anchors.fill: parent
            spacing: 8
            // The icon leads, on the side where the headline begins.
            LayoutMirroring.enabled: false
            layoutDirection: labelText.effectiveHorizontalAlignment === Text.AlignRight ? Qt.RightToLeft
                                                                                        : Qt.LeftToRight

            Image {
                id: currentIcon

                width: height
                height: parent.height
                source: propertyItem.currentItem ? propertyItem.currentItem.icon : ""
                fillMode: Image.PreserveAspectFit
                mipmap: true
            }

            Text {
                width: parent.width - currentIcon.width - parent.spacing
                height: parent.height
                text: propertyItem.currentItem ? propertyItem.currentItem.label : ""
                color: "white"
                style: Text.Sunken
                styleColor: "black"
                font.pointSize: 12
                elide: Text.ElideRight
                verticalAlignment: Text.AlignVCenter
            }
        }

        MouseArea {
            anchors.fill: parent
            onClicked: propertyItem.expanded = true
        }
    }

    GridView {
        id: view

        width: parent.width
        height: visible ? Math.ceil(model.count / propertyItem.columns) * propertyItem.itemHeight : 0
        visible: propertyItem.expanded
        interactive: false
        clip: true
        cellWidth: propertyItem.itemWidth
        cellHeight: propertyItem.itemHeight
        currentIndex: indexForValue(propertyItem.value)
        highlight: Rectangle {
            color: "#80000000"
            radius: 5
        }
        delegate: cellDelegate

        // From right to left a view keeps the place of its columns from before it knew its width.
        onVisibleChanged: positionViewAtBeginning()

        Behavior on height {
            NumberAnimation { duration: 200 }
        }
    }

    Component {
        id: cellDelegate

        Item {
            id: cell

            width: view.cellWidth
            height: view.cellHeight

            Column {
                anchors { fill: parent; margins: 4 }

                Image {
                    width: parent.width
                    height: parent.height - cellLabel.height
                    source: icon
                    fillMode: Image.PreserveAspectFit
                    mipmap: true
                }

                Text {
                    id: cellLabel

                    width: parent.width
                    text: label
                    color: "white"
                    font.pointSize: 10
                    fontSizeMode: Text.HorizontalFit
                    minimumPointSize: 7
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignHCenter
                    style: cell.GridView.isCurrentItem ? Text.Raised : Text.Sunken
                    styleColor: "black"
                }
            }

            MouseArea {
                anchors.fill: parent
                onClicked: propertyItem.selected(value)
                onDoubleClicked: {
                    propertyItem.selected(value);
                    propertyItem.expanded = false;
                }
            }
        }
    }

    function indexForValue(value) {
        for (var i = 0; i < model.count; i++) {
            if (model.get(i).value == value)
                return i;
        }
        return -1;
    }
}
