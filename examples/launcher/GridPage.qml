// The list of all apps with the search box, the filters and the sign-in.
//
// Keys: arrows choose, Return opens, Ctrl+F searches, F5 asks the portal again, P pins.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "Theme.js" as Theme

FocusScope {
    id: page

    property var catalogue
    property var downloads
    property var portal
    property real unit: 1
    property alias searchField: searchField
    readonly property bool narrow: width < 620 * unit
    readonly property real space: (narrow ? 12 : 20) * unit

    signal opened(var info)
    signal signInWanted()

    function focusGrid() {
        grid.forceActiveFocus();
    }
    function focusSearch() {
        searchField.forceActiveFocus();
        searchField.selectAll();
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }

    Rectangle {
        id: bar

        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: (page.narrow ? 106 : 58) * page.unit
        color: Theme.surface

        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: 1
            color: Theme.line
        }

        GridLayout {
            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; leftMargin: page.space; rightMargin: page.space }
            columns: page.narrow ? 2 : 3
            columnSpacing: 14 * page.unit
            rowSpacing: 10 * page.unit

            Text {
                Layout.row: 0
                Layout.column: 0
                Layout.fillWidth: page.narrow
                text: qsTr("Apps")
                color: Theme.text
                font { pixelSize: 22 * page.unit; bold: true }
            }
            TextField {
                id: searchField

                Layout.row: page.narrow ? 1 : 0
                Layout.column: page.narrow ? 0 : 1
                Layout.columnSpan: page.narrow ? 2 : 1
                Layout.fillWidth: true
                Layout.maximumWidth: page.narrow ? page.width : 460 * page.unit
                Layout.preferredWidth: 460 * page.unit
                objectName: "searchField"
                implicitHeight: 38 * page.unit
                leftPadding: 14 * page.unit
                rightPadding: clearButton.width
                placeholderText: qsTr("Search: a title, #tag or @owner")
                placeholderTextColor: Theme.secondaryText
                color: Theme.text
                font.pixelSize: 14 * page.unit
                selectByMouse: true
                Accessible.name: placeholderText
                inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
                onTextChanged: page.catalogue.text = text.trim()
                onAccepted: page.focusGrid()
                Keys.onDownPressed: page.focusGrid()
                Keys.onEscapePressed: {
                    text = "";
                    page.focusGrid();
                }

                background: Rectangle {
                    radius: height / 2
                    color: Theme.page
                    border { width: searchField.activeFocus ? 2 * page.unit : 1; color: searchField.activeFocus ? Theme.accent : Theme.line }
                }

                PushButton {
                    id: clearButton

                    anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                    visible: searchField.text > ""
                    focusPolicy: Qt.NoFocus
                    unit: page.unit
                    flat: true
                    text: "✕"
                    Accessible.name: qsTr("Clear the search")
                    onClicked: searchField.text = ""
                }
            }
            RowLayout {
                Layout.row: 0
                Layout.column: page.narrow ? 1 : 2
                Layout.fillWidth: !page.narrow
                spacing: 8 * page.unit

                Item { Layout.fillWidth: true }
                Text {
                    Layout.maximumWidth: 140 * page.unit
                    objectName: "userName"
                    visible: page.portal.signedIn
                    text: page.portal.username
                    textFormat: Text.PlainText
                    color: Theme.secondaryText
                    font.pixelSize: 14 * page.unit
                    elide: Text.ElideRight
                }
                PushButton {
                    objectName: "signInButton"
                    unit: page.unit
                    filled: !page.portal.signedIn
                    text: page.portal.signedIn ? qsTr("Sign out") : qsTr("Sign in")
                    onClicked: {
                        if (page.portal.signedIn)
                            page.portal.signOut();
                        else
                            page.signInWanted();
                    }
                }
            }
        }
    }

    ColumnLayout {
        id: controls

        anchors { left: parent.left; right: parent.right; top: bar.bottom; margins: page.space; bottomMargin: 0; topMargin: 12 * page.unit }
        spacing: 10 * page.unit

        GridLayout {
            Layout.fillWidth: true
            columns: page.width < 760 * page.unit ? 1 : 2
            rowSpacing: 10 * page.unit

            // Chips that don't fit can be flicked into sight.
            Flickable {
                id: chipFlickable

                Layout.fillWidth: true
                Layout.preferredHeight: chips.height
                contentWidth: chips.width
                boundsBehavior: Flickable.StopAtBounds
                flickableDirection: Flickable.HorizontalFlick
                clip: true

                Row {
                    id: chips

                    spacing: 8 * page.unit

                    Repeater {
                        model: [
                            { show: "all", text: qsTr("All") },
                            { show: "local", text: qsTr("On this device") },
                            { show: "hosted", text: qsTr("On the portal") },
                            { show: "updates", text: qsTr("Updates") },
                            { show: "changed", text: qsTr("Changed") }
                        ]

                        Chip {
                            objectName: "chip " + modelData.show
                            unit: page.unit
                            text: modelData.text
                            count: modelData.show === "updates" ? page.catalogue.updateCount : 0
                            checked: page.catalogue.show === modelData.show
                            onClicked: page.catalogue.show = modelData.show
                            onActiveFocusChanged: {
                                if (activeFocus)
                                    chipFlickable.contentX = Math.max(0, Math.min(x - 20 * page.unit, chips.width - chipFlickable.width));
                            }
                        }
                    }
                }
            }
            RowLayout {
                Layout.fillWidth: page.width < 760 * page.unit
                spacing: 8 * page.unit

                Text {
                    Layout.fillWidth: true
                    objectName: "summary"
                    text: page.catalogue.refreshing ? qsTr("Asking the portal…") : (page.catalogue.apps.length === 1 ? qsTr("1 app") : qsTr("%1 apps").arg(page.catalogue.apps.length))
                    color: Theme.secondaryText
                    font.pixelSize: 13 * page.unit
                    elide: Text.ElideRight
                }
                OrderBox {
                    objectName: "orderBox"
                    unit: page.unit
                    catalogue: page.catalogue
                }
                PushButton {
                    objectName: "refreshButton"
                    unit: page.unit
                    enabled: !page.catalogue.refreshing
                    text: "↻"
                    Accessible.name: qsTr("Ask the portal again")
                    onClicked: page.catalogue.refresh()

                    ToolTip.visible: hovered
                    ToolTip.delay: 600
                    ToolTip.text: qsTr("Ask the portal again (F5)")
                }
            }
        }

        Notice {
            Layout.fillWidth: true
            objectName: "failureNotice"
            visible: page.catalogue.failure > ""
            unit: page.unit
            failed: true
            text: page.catalogue.failure
            action: page.catalogue.refused ? qsTr("Sign in") : qsTr("Try again")
            onTriggered: {
                page.focusGrid();   // this button goes
                if (page.catalogue.refused) {
                    page.portal.signOut();
                    page.signInWanted();
                } else {
                    page.catalogue.refresh();
                }
            }
        }
        Notice {
            Layout.fillWidth: true
            objectName: "signInNotice"
            visible: !page.portal.signedIn && page.catalogue.failure === ""
            unit: page.unit
            text: qsTr("Sign in to %1 to see the apps that it offers.").arg(page.portal.name)
        }
    }

    GridView {
        id: grid

        readonly property int columns: Math.max(2, Math.floor(width / (206 * page.unit)))
        property string selectedKey

        anchors { left: parent.left; right: parent.right; top: controls.bottom; bottom: parent.bottom; leftMargin: page.space - 5 * page.unit; rightMargin: page.space - 5 * page.unit; topMargin: 8 * page.unit }
        objectName: "grid"
        focus: true
        activeFocusOnTab: true
        clip: true
        cellWidth: Math.floor(width / columns)
        cellHeight: (cellWidth - 26 * page.unit) * 2 / 3 + 118 * page.unit
        boundsBehavior: Flickable.StopAtBounds
        bottomMargin: 12 * page.unit
        keyNavigationEnabled: true
        highlightMoveDuration: 120
        ScrollBar.vertical: ScrollBar {}

        // The list is a new one after each change: what is chosen stays so, and the place too.
        Connections {
            target: page.catalogue

            function onAppsChanged() {
                const chosen = page.catalogue.find(grid.selectedKey), place = grid.contentY;
                grid.model = page.catalogue.apps;
                grid.currentIndex = Math.max(0, page.catalogue.apps.indexOf(chosen));
                grid.forceLayout();
                grid.contentY = Math.max(grid.originY, Math.min(place, grid.originY + grid.contentHeight - grid.height + grid.bottomMargin));
            }
        }
        onCurrentItemChanged: {
            if (currentItem && activeFocus)
                selectedKey = page.catalogue.keyOf(currentItem.info);
        }

        delegate: Item {
            property var info: modelData

            width: grid.cellWidth
            height: grid.cellHeight

            AppCard {
                anchors { fill: parent; margins: 5 * page.unit }
                objectName: "card " + (modelData.itemId || modelData.path)
                unit: page.unit
                info: modelData
                download: page.downloads.revision >= 0 ? page.downloads.of(modelData.itemId) : null
                changed: page.catalogue.isChanged(modelData)
                selected: grid.activeFocus && grid.currentIndex === index
                onClicked: {
                    grid.currentIndex = index;
                    grid.forceActiveFocus();
                    grid.selectedKey = page.catalogue.keyOf(modelData);
                    page.opened(modelData);
                }
                onPressAndHold: page.togglePin(modelData)
                onPinToggled: page.togglePin(modelData)
            }
        }

        Keys.onReturnPressed: openCurrent(event)
        Keys.onEnterPressed: openCurrent(event)
        Keys.onUpPressed: {
            if (currentIndex < columns)
                page.focusSearch();
            else
                event.accepted = false;   // the grid's own
        }
        Keys.onPressed: {
            if (event.key === Qt.Key_P && !event.isAutoRepeat && event.modifiers === Qt.NoModifier && currentItem) {
                page.togglePin(currentItem.info);
                event.accepted = true;
            } else if (event.key === Qt.Key_Home) {
                currentIndex = 0;
                event.accepted = true;
            } else if (event.key === Qt.Key_End) {
                currentIndex = count - 1;
                event.accepted = true;
            }
        }

        // A key that is held opens nothing more.
        function openCurrent(event) {
            if (currentItem && !event.isAutoRepeat)
                page.opened(currentItem.info);
        }

        Column {
            readonly property bool narrowed: page.catalogue.text > "" || page.catalogue.show !== "all"

            anchors.centerIn: parent
            width: Math.min(parent.width - 40 * page.unit, 360 * page.unit)
            visible: grid.count === 0 && !page.catalogue.refreshing
            spacing: 6 * page.unit

            Text {
                width: parent.width
                objectName: "emptyText"
                text: parent.narrowed ? qsTr("No app matches.")
                      : page.portal.signedIn && page.catalogue.failure === "" ? qsTr("No apps here or on the portal yet.") : qsTr("No apps on this device yet.")
                color: Theme.text
                font { pixelSize: 16 * page.unit; bold: true }
                horizontalAlignment: Text.AlignHCenter
            }
            Text {
                width: parent.width
                objectName: "emptyHint"
                text: parent.narrowed ? qsTr("Change the search or the filter to see others.")
                      : page.catalogue.failure > "" ? qsTr("The portal's apps come when it can be asked.")
                      : page.portal.signedIn ? qsTr("Copy one to the Apps folder, or publish one.") : qsTr("Sign in to download some.")
                color: Theme.secondaryText
                font.pixelSize: 14 * page.unit
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
            }
        }
    }

    Shortcut { sequence: StandardKey.Find; enabled: page.visible; onActivated: page.focusSearch() }
    Shortcut { sequence: StandardKey.Refresh; enabled: page.visible; onActivated: page.catalogue.refresh() }

    function togglePin(info) {
        if (!info.isLocal)
            return;
        info.pinned = !info.pinned;
        page.catalogue.rebuild();
    }
}
