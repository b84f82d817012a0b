import QtQuick 2.3
import QtQuick.Controls 1.2
import QtQuick.Controls.Styles 1.2
import QtQuick.Window 2.2
import QtQuick.Dialogs 1.2
import QtQuick.Layouts 1.1
import QtGraphicalEffects 1.0
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Controls 1.0
import "Endpoints.js" as Endpoints

/*!
    \qmltype PortalDialog
    \inqmlmodule Zemrik.Tessaline.Portal
    \brief The sign-in dialog for a Portal, with a page to choose among portals.

    \qml
    PortalDialog {
        id: signInDialog
        portal: portal
        settings: app.settings
    }
    \endqml

    A button then calls \c {signInDialog.show("Please sign in to download apps")}.

    With \c settings the dialog remembers the list of portals, the one in use and, if the user wants it,
    the username; never the password. It closes by itself once the portal is signed in. While a sign-in
    runs neither a key nor its window's frame closes it; otherwise closing the window is a rejection.
*/
Dialog {
    id: portalSignInDialog

    /*! What is signed in. The dialog needs one. */
    property Portal portal
    /*! The line above the field of the name. */
    property alias usernameLabel: usernameText.text
    /*! The text in the field of the name. */
    property alias username: usernameField.text
    /*! The line above the field of the password. */
    property alias passwordLabel: passwordText.text
    /*! The text in the field of the password. */
    property alias password: passwordField.text
    /*! True from the click on the accept button to the end of the sign-in. */
    property bool busy: false
    /*! A line in red, until the first error takes the line over. */
    property string message: ""
    /*! The text of the check box. */
    property alias saveUserLabel: saveUserCheckBox.text
    /*! Whether to remember the user. */
    property alias saveUserChecked: saveUserCheckBox.checked
    /*! True by default where there are \l settings. */
    property alias saveUserVisible: saveUserCheckBox.visible
    /*! The text of the button that signs in. */
    property alias acceptLabel: acceptButton.text
    /*! The text of the button that cancels. */
    property alias rejectLabel: rejectButton.text
    /*! A picture in the banner. None by default. */
    property alias bannerImage: image.source
    /*! "#0079C1" by default. */
    property alias bannerColor: banner.color
    /*! "white" by default. The icons of the banner have it too. */
    property alias bannerTextColor: titleText.color
    /*! Where to remember. Without it nothing is read or stored. */
    property Settings settings
    /*! What all keys begin with, without the slash. "Portal" by default. */
    property string settingsGroup: "Portal"
    /*! The name in the title, by default the portal's. */
    property string portalName: portal ? portal.name : ""
    /*! A bold line above the fields. */
    property string prompt

    readonly property real _unit: Tessaline.displayScaleFactor

    title: (busy ? qsTr("Signing in to %1") : qsTr("Sign in to %1")).arg(portalName)
    standardButtons: StandardButton.NoButton
    width: Math.min(_unit * 400, _available(dialogItem.Screen.desktopAvailableWidth))
    height: Math.min(_unit * 400, _available(dialogItem.Screen.desktopAvailableHeight))

    Component.onCompleted: {
        portalsModel.appendPublicPortal();
        readSettings();
        readPortals();
    }

    // Qt's dialog accepts on Return and rejects on Escape: here Return only tries the sign-in, and no
    // key closes the dialog while a sign-in runs.
    onActionChosen: {
        if (action.key && (busy || action.button === StandardButton.Ok))
            action.accepted = false;
    }
    // Qt's dialog takes the focus for itself when it opens.
    onVisibleChanged: {
        if (visible)
            _takeFocus();
    }

    // Qt's dialog would vanish in silence, and come back busy.
    Connections {
        target: dialogItem.Window.window

        function onClosing(event) {
            // On some systems the dialog is a part of the applet's window.
            if (contentItem.parent !== dialogItem.Window.window.contentItem || !visible)
                return;
            if (busy)
                event.accepted = false;
            else
                reject();
        }
    }

    Connections {
        target: portal

        function onSignedInChanged() {
            busy = false;
            if (!portal.signedIn)
                return;
            if (settings) {
                if (saveUserChecked)
                    writeUserSettings();
                else
                    clearUserSettings();
                settings.setValue(settingsGroup + "/saveUsername", saveUserChecked);
            }
            close();
        }

        function onError(error) {
            busy = false;
            messageText.text = error.message + "\r\n" + error.details;
        }
    }

    ListModel {
        id: portalsModel

        // The first row. A ListElement could only hold the address as a literal, and a handler of its
        // own might run after the stored list has been read.
        function appendPublicPortal() {
            append({
                url: Endpoints.publicPortal,
                name: "Zemrik Online",
                ignoreSslErrors: false,
                isPortal: false
            });
        }
    }

    Item {
        anchors { fill: parent; margins: -12 }   // over the padding of Qt's dialog

        Rectangle {
            id: dialogItem

            anchors.fill: parent
            color: "white"
            LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
            LayoutMirroring.childrenInherit: true

            StackView {
                id: stackView

                anchors.fill: parent
                initialItem: signInPage
                onBusyChanged: {
                    if (!busy && portalSignInDialog.visible)
                        _takeFocus();
                }
            }
        }
    }

    // The sign-in page. It is always there: the dialog's aliases reach into it.
    Item {
        id: signInPage

        visible: false

        Rectangle {
            id: banner

            anchors { left: parent.left; right: parent.right; top: parent.top }
            height: 70 * portalSignInDialog._unit
            color: "#0079C1"

            RowLayout {
                anchors {
                    fill: parent
                    leftMargin: 12 * portalSignInDialog._unit; rightMargin: 8 * portalSignInDialog._unit
                    topMargin: 4 * portalSignInDialog._unit; bottomMargin: 4 * portalSignInDialog._unit
                }
                spacing: 8 * portalSignInDialog._unit

                Image {
                    id: image

                    Layout.preferredWidth: 48 * portalSignInDialog._unit
                    Layout.preferredHeight: 48 * portalSignInDialog._unit
                    visible: source > ""
                    fillMode: Image.PreserveAspectFit
                }

                Text {
                    id: titleText

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    text: portalSignInDialog.title
                    textFormat: Text.PlainText
                    color: "white"
                    font { pointSize: 22; bold: true }
                    fontSizeMode: Text.Fit
                    minimumPointSize: 9
                    wrapMode: Text.Wrap
                    elide: Text.ElideRight
                    verticalAlignment: Text.AlignVCenter
                }

                Column {
                    spacing: 4 * portalSignInDialog._unit

                    Item {
                        width: 22 * portalSignInDialog._unit
                        height: width
                        anchors.horizontalCenter: parent.horizontalCenter
                        visible: portal ? portal.ignoreSslErrors : false

                        Image {
                            id: padlock

                            anchors.fill: parent
                            source: "images/security_unlock.png"
                            fillMode: Image.PreserveAspectFit
                            sourceSize: _pixels(22)
                        }

                        ColorOverlay {
                            anchors.fill: padlock
                            source: padlock
                            color: portalSignInDialog.bannerTextColor
                        }
                    }

                    ImageButton {
                        id: portalsButton

                        width: 28 * portalSignInDialog._unit
                        height: width
                        source: "images/gear.png"
                        image.sourceSize: _pixels(28)
                        radius: 4 * portalSignInDialog._unit
                        border { width: activeFocus ? 1 : 0; color: portalSignInDialog.bannerTextColor }
                        enabled: !portalSignInDialog.busy
                        activeFocusOnTab: enabled
                        Keys.onPressed: _clickByKey(portalsButton, event)
                        onClicked: stackView.push(portalPage)

                        ColorOverlay {
                            anchors.fill: portalsButton.image
                            source: portalsButton.image
                            color: portalSignInDialog.bannerTextColor
                            opacity: portalsButton.enabled ? 1 : 0.4
                        }
                    }
                }
            }
        }

        ColumnLayout {
            anchors {
                left: parent.left; right: parent.right; top: banner.bottom; bottom: parent.bottom
                margins: 14 * portalSignInDialog._unit
            }
            spacing: 5 * portalSignInDialog._unit

            Text {
                Layout.fillWidth: true
                text: prompt
                textFormat: Text.PlainText
                visible: text > ""
                font { pointSize: 12; bold: true }
                wrapMode: Text.Wrap
            }

            Text {
                id: usernameText

                Layout.fillWidth: true
                text: qsTr("Username")
                font.pointSize: 12
                elide: Text.ElideRight
            }

            TextField {
                id: usernameField

                Layout.fillWidth: true
                Layout.preferredHeight: Math.max(implicitHeight, 28 * portalSignInDialog._unit)
                font.pointSize: 12
                inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText | Qt.ImhSensitiveData
                enabled: !portalSignInDialog.busy
                onAccepted: acceptButton.tryClick()
            }

            Text {
                id: passwordText

                Layout.fillWidth: true
                text: qsTr("Password")
                font.pointSize: 12
                elide: Text.ElideRight
            }

            TextField {
                id: passwordField

                Layout.fillWidth: true
                Layout.preferredHeight: Math.max(implicitHeight, 28 * portalSignInDialog._unit)
                font.pointSize: 12
                echoMode: TextInput.Password
                inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText | Qt.ImhSensitiveData
                enabled: !portalSignInDialog.busy
                onAccepted: acceptButton.tryClick()
            }

            CheckBox {
                id: saveUserCheckBox

                text: qsTr("Remember me")
                visible: settings ? true : false
            }

            Item {
                Layout.fillWidth: true
                Layout.fillHeight: true
            }

            Text {
                id: messageText

                Layout.fillWidth: true
                text: message
                textFormat: Text.PlainText
                visible: text > ""
                color: "red"
                font.pointSize: 11
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                maximumLineCount: 4
                elide: Text.ElideRight
            }

            RowLayout {
                Layout.fillWidth: true
                spacing: 8 * portalSignInDialog._unit

                Item { Layout.fillWidth: true }

                Button {
                    id: acceptButton

                    Layout.preferredWidth: Math.max(implicitWidth + 16 * portalSignInDialog._unit, 80 * portalSignInDialog._unit)
                    Layout.preferredHeight: 28 * portalSignInDialog._unit
                    text: busy ? qsTr("Signing In") : qsTr("Sign In")
                    isDefault: true
                    enabled: !busy && username.trim().length > 0 && password.trim().length > 0
                    onClicked: tryClick()

                    function tryClick() {
                        if (!enabled)
                            return;
                        busy = true;
                        message = "";
                        portal.signIn(username.trim(), password.trim());
                    }
                }

                Button {
                    id: rejectButton

                    Layout.preferredWidth: Math.max(implicitWidth + 16 * portalSignInDialog._unit, 80 * portalSignInDialog._unit)
                    Layout.preferredHeight: 28 * portalSignInDialog._unit
                    text: qsTr("Cancel")
                    enabled: !busy
                    onClicked: {
                        close();
                        rejected();
                    }
                }
            }
        }

        BusyIndicator {
            anchors.centerIn: parent
            running: portalSignInDialog.busy
            visible: running
        }
    }

    Component {
        id: portalPage

        FocusScope {
            Rectangle {
                id: portalBanner

                anchors { left: parent.left; right: parent.right; top: parent.top }
                height: 50 * portalSignInDialog._unit
                color: portalSignInDialog.bannerColor

                RowLayout {
                    anchors { fill: parent; leftMargin: 8 * portalSignInDialog._unit; rightMargin: 8 * portalSignInDialog._unit }
                    spacing: 8 * portalSignInDialog._unit

                    ImageButton {
                        id: backButton

                        Layout.preferredWidth: 28 * portalSignInDialog._unit
                        Layout.preferredHeight: 28 * portalSignInDialog._unit
                        source: "images/back.png"
                        image.mirror: Qt.application.layoutDirection === Qt.RightToLeft
                        image.sourceSize: _pixels(28)
                        radius: 4 * portalSignInDialog._unit
                        border { width: activeFocus ? 1 : 0; color: portalSignInDialog.bannerTextColor }
                        activeFocusOnTab: true
                        Keys.onPressed: _clickByKey(backButton, event)
                        onClicked: stackView.pop()

                        ColorOverlay {
                            anchors.fill: backButton.image
                            source: backButton.image
                            color: portalSignInDialog.bannerTextColor
                        }
                    }

                    Text {
                        Layout.fillWidth: true
                        text: qsTr("Portals")
                        color: portalSignInDialog.bannerTextColor
                        font { pointSize: 22; bold: true }
                        fontSizeMode: Text.HorizontalFit
                        minimumPointSize: 9
                        elide: Text.ElideRight
                    }
                }
            }

            ColumnLayout {
                anchors {
                    left: parent.left; right: parent.right; top: portalBanner.bottom; bottom: parent.bottom
                    margins: 12 * portalSignInDialog._unit
                }
                spacing: 5 * portalSignInDialog._unit

                Text {
                    Layout.fillWidth: true
                    text: qsTr("Select your active Zemrik Portal")
                    font.pointSize: 12
                    wrapMode: Text.Wrap
                }

                ListView {
                    id: portalsListView

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    clip: true
                    model: portalsModel
                    delegate: portalDelegate
                    highlight: highlightDelegate
                    highlightFollowsCurrentItem: false
                    focus: true
                    activeFocusOnTab: true
                    // The arrows select.
                    Keys.onPressed: {
                        if (!_isClick(event))
                            return;
                        event.accepted = true;
                        stackView.pop();
                    }
                    // Bound to undefined a view would keep its index: -1 selects nothing.
                    currentIndex: {
                        var current = findCurrent();
                        return current === undefined ? -1 : current;
                    }
                    onCurrentIndexChanged: {
                        if (currentIndex >= 0)
                            selectPortal(currentIndex);
                    }
                }

                TextField {
                    id: portalUrlField

                    Layout.fillWidth: true
                    Layout.preferredHeight: Math.max(implicitHeight, 28 * portalSignInDialog._unit)
                    font.pointSize: 12
                    horizontalAlignment: TextInput.AlignLeft
                    placeholderText: qsTr("URL of your Portal for Zemrik")
                    inputMethodHints: Qt.ImhUrlCharactersOnly | Qt.ImhNoAutoUppercase
                }

                RowLayout {
                    Layout.fillWidth: true

                    CheckBox {
                        id: ignoreSslCheckBox

                        text: qsTr("Ignore SSL Errors")
                    }

                    Item { Layout.fillWidth: true }

                    Button {
                        id: addPortalButton

                        Layout.preferredWidth: Math.max(implicitWidth + 16 * portalSignInDialog._unit, 80 * portalSignInDialog._unit)
                        Layout.preferredHeight: 28 * portalSignInDialog._unit
                        text: qsTr("Add Portal")
                        enabled: portalUrlField.text.substr(0, 4).toLowerCase() === "http"
                                 && !portalInfoRequest.isBusy
                        onClicked: {
                            addPortalError.text = "";
                            portalInfoRequest.sendRequest(portalUrlField.text);
                        }

                        NetworkRequest {
                            id: portalInfoRequest

                            property url portalUrl
                            property string text
                            property bool isBusy: readyState === NetworkRequest.ReadyStateProcessing
                                                  || readyState === NetworkRequest.ReadyStateSending

                            method: "POST"
                            responseType: "json"
                            uploadPrefix: ""
                            ignoreSslErrors: ignoreSslCheckBox.checked

                            onReadyStateChanged: {
                                if (readyState === NetworkRequest.ReadyStateComplete && status === 200)
                                    addPortal(response);
                            }
                            onErrorTextChanged: addPortalError.text = errorText

                            function sendRequest(u) {
                                portalUrl = u;
                                url = portalUrl + "/sharing/rest/portals/self";
                                send({ f: "pjson" });
                            }

                            function addPortal(response) {
                                infoRequest.send();
                                console.log("self", JSON.stringify(response, undefined, 2));
                                if (!_isPortal(response)) {
                                    var error = response ? response.error : undefined;
                                    addPortalError.text = error && _line(error.message)
                                                          || qsTr("There is no portal at this URL");
                                    return;
                                }
                                if (response.isPortal && !response.supportsSceneServices) {
                                    addPortalError.text = qsTr("Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store");
                                    return;
                                }
                                var name = _line(response.name);
                                if (!(name > ""))
                                    name = _fill(qsTr("%1 (%2)"), _line(response.portalName), portalUrl);
                                portalsModel.append({
                                    url: portalUrl.toString(),
                                    name: name,
                                    ignoreSslErrors: ignoreSslCheckBox.checked,
                                    isPortal: response.isPortal ? true : false
                                });
                                writePortals();
                                portalsListView.currentIndex = portalsModel.count - 1;
                                portalUrlField.text = "";
                                ignoreSslCheckBox.checked = false;
                            }
                        }

                        NetworkRequest {
                            id: infoRequest

                            url: portalInfoRequest.portalUrl + "/sharing/rest/info?f=json"
                            responseType: "json"
                            uploadPrefix: ""

                            onReadyStateChanged: {
                                if (readyState === NetworkRequest.ReadyStateComplete)
                                    console.log("info:", JSON.stringify(response, undefined, 2));
                            }
                            onErrorTextChanged: console.log("infoRequest error", errorText)
                        }
                    }
                }

                Text {
                    id: addPortalError

                    Layout.fillWidth: true
                    textFormat: Text.PlainText
                    visible: text > ""
                    color: "red"
                    font.pointSize: 11
                    wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                    maximumLineCount: 4
                    elide: Text.ElideRight
                }
            }

            BusyIndicator {
                anchors.centerIn: parent
                running: portalInfoRequest.isBusy
                visible: running
            }

            Component {
                id: highlightDelegate

                Rectangle {
                    width: portalsListView.width
                    height: portalsListView.currentItem ? portalsListView.currentItem.height : 0
                    y: portalsListView.currentItem ? portalsListView.currentItem.y : 0
                    color: "lightsteelblue"
                    radius: 5
                    border { width: portalsListView.activeFocus ? 1 : 0; color: portalSignInDialog.bannerColor }

                    Behavior on y {
                        SpringAnimation { spring: 3; damping: 0.2 }
                    }
                }
            }

            Component {
                id: portalDelegate

                Item {
                    id: portalItem

                    width: portalsListView.width
                    height: portalTexts.height + 12 * portalSignInDialog._unit

                    MouseArea {
                        anchors.fill: parent
                        onClicked: portalsListView.currentIndex = index
                        onDoubleClicked: {
                            portalsListView.currentIndex = index;
                            stackView.pop();
                        }
                        onPressAndHold: Qt.openUrlExternally(url)
                    }

                    Column {
                        id: portalTexts

                        anchors {
                            left: parent.left; right: removeButton.left; verticalCenter: parent.verticalCenter
                            margins: 8 * portalSignInDialog._unit
                        }
                        spacing: 2 * portalSignInDialog._unit

                        Text {
                            width: parent.width
                            text: name
                            textFormat: Text.PlainText
                            horizontalAlignment: Text.AlignLeft
                            font.pointSize: 12
                            maximumLineCount: 1
                            elide: Text.ElideRight
                        }

                        Row {
                            width: parent.width
                            visible: index > 0
                            spacing: 4 * portalSignInDialog._unit

                            Image {
                                id: rowPadlock

                                width: 14 * portalSignInDialog._unit
                                height: width
                                anchors.verticalCenter: parent.verticalCenter
                                source: "images/security_unlock.png"
                                sourceSize: _pixels(14)
                                visible: ignoreSslErrors
                                fillMode: Image.PreserveAspectFit
                            }

                            Text {
                                width: parent.width - (rowPadlock.visible ? rowPadlock.width + parent.spacing : 0)
                                text: url
                                textFormat: Text.PlainText
                                horizontalAlignment: Text.AlignLeft
                                font { pointSize: 10; italic: true }
                                maximumLineCount: 1
                                elide: Text.ElideMiddle
                            }
                        }
                    }

                    ImageButton {
                        id: removeButton

                        width: 24 * portalSignInDialog._unit
                        height: width
                        anchors {
                            right: parent.right; verticalCenter: parent.verticalCenter
                            rightMargin: 8 * portalSignInDialog._unit
                        }
                        source: "images/trash_bin.png"
                        image.sourceSize: _pixels(24)
                        radius: 4 * portalSignInDialog._unit
                        border { width: activeFocus ? 1 : 0; color: portalSignInDialog.bannerColor }
                        visible: index > 0 && portalItem.ListView.isCurrentItem
                        activeFocusOnTab: true
                        Keys.onPressed: _clickByKey(removeButton, event)
                        onClicked: {
                            var row = index;
                            // The removal must not make a neighbour the portal in use.
                            portalsListView.currentIndex = -1;
                            portalsModel.remove(row);
                            writePortals();
                        }
                    }
                }
            }
        }
    }

    /*! Opens the dialog on its first page, with \a prompt above the fields. */
    function show(prompt) {
        portalSignInDialog.prompt = prompt > "" ? prompt : "";
        stackView.pop({ item: null, immediate: true });
        open();
    }

    /*! Reads the list of portals from the \l settings. */
    function readPortals() {
        if (!settings)
            return;
        // Without a stored list the parse of "" ends the function here, and the first row stays.
        var portals = JSON.parse(settings.value(settingsGroup + "/portals", ""));
        if (!Array.isArray(portals)) {
            portals = [ {
                ignoreSslErrors: false,
                isPortal: false,
                name: "Zemrik Online",
                url: Endpoints.fallbackPortal
            } ];
        }
        portalsModel.clear();
        // A row of other types would end selectPortal() halfway, with the new address but the old flags.
        portals.forEach(function (element) {
            if (!element || typeof element.url !== "string")
                return;
            portalsModel.append({
                url: element.url,
                name: _line(element.name) || element.url,
                ignoreSslErrors: element.ignoreSslErrors === true,
                isPortal: element.isPortal === true
            });
        });
    }

    /*! Stores the list of portals. */
    function writePortals() {
        if (!settings)
            return;
        var portals = [];
        for (var i = 0; i < portalsModel.count; i++) {
            var row = portalsModel.get(i);
            portals.push({
                ignoreSslErrors: row.ignoreSslErrors,
                isPortal: row.isPortal,
                name: row.name,
                url: row.url
            });
        }
        settings.setValue(settingsGroup + "/portals", JSON.stringify(portals));
    }

    /*! The row of the portal in use, or undefined. */
    function findCurrent() {
        for (var i = 0; i < portalsModel.count; i++) {
            if (portalsModel.get(i).url == portal.portalUrl.toString())
                return i;
        }
    }

    /*! Makes the portal of row \a index the one in use, and stores that. */
    function selectPortal(index) {
        var row = portalsModel.get(index);
        portal.portalUrl = row.url;
        portal.name = row.name;
        portal.ignoreSslErrors = row.ignoreSslErrors;
        portal.isPortal = row.isPortal;
        writePortalSettings();
    }

    /*! Reads the user's name and the portal in use; false without \l settings. */
    function readSettings() {
        if (!settings)
            return false;
        // A store gives flags back as text in the next run: boolValue knows.
        saveUserChecked = settings.boolValue(settingsGroup + "/saveUsername", true);
        username = settings.value(settingsGroup + "/username", "");
        portal.portalUrl = settings.value(settingsGroup + "/url", Endpoints.publicPortal);
        portal.name = settings.value(settingsGroup + "/name", "Zemrik Online");
        portal.ignoreSslErrors = settings.boolValue(settingsGroup + "/ignoreSslErrors", false);
        portal.isPortal = settings.boolValue(settingsGroup + "/isPortal", false);
        return true;
    }

    /*! Stores the portal's user name; false without \l settings. */
    function writeUserSettings() {
        if (!settings)
            return false;
        settings.setValue(settingsGroup + "/username", portal.username);
        return true;
    }

    /*! Removes the stored user name; false without \l settings. */
    function clearUserSettings() {
        if (!settings)
            return false;
        settings.remove(settingsGroup + "/username");
        return true;
    }

    /*! Stores the portal in use; false without \l settings. */
    function writePortalSettings() {
        if (!settings)
            return false;
        settings.setValue(settingsGroup + "/url", portal.portalUrl.toString());
        settings.setValue(settingsGroup + "/name", portal.name);
        settings.setValue(settingsGroup + "/ignoreSslErrors", portal.ignoreSslErrors);
        settings.setValue(settingsGroup + "/isPortal", portal.isPortal);
        return true;
    }

    // Whether an answer is a portal's about itself. A server of another kind may answer anything.
    function _isPortal(response) {
        return typeof response === "object" && response !== null && !Array.isArray(response)
               && !response.error
               && (typeof response.name === "string" || typeof response.portalName === "string");
    }

    // A portal's text in one line; empty for what is no text.
    function _line(text) {
        return typeof text === "string" ? text.replace(/\s+/g, " ").trim() : "";
    }

    // In one pass: a portal's text may have a %2 of its own.
    function _fill(pattern, first, second) {
        return pattern.replace(/%[12]/g, function (place) {
            return place === "%1" ? first : second;
        });
    }

    // Where the user goes on: a filled-in name needs its password.
    function _takeFocus() {
        if (stackView.depth > 1)
            stackView.currentItem.forceActiveFocus();
        else
            (username.trim().length > 0 ? passwordField : usernameField).forceActiveFocus();
    }

    function _isClick(event) {
        return event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
    }

    function _clickByKey(button, event) {
        if (!_isClick(event) || !button.enabled)
            return;
        event.accepted = true;
        button.clicked();
    }

    // The size of an icon in the screen's pixels: a larger one scaled by the scene would be rough.
    function _pixels(length) {
        var pixels = Math.ceil(length * _unit * dialogItem.Screen.devicePixelRatio);
        return Qt.size(pixels, pixels);
    }

    // An item that is in no window yet knows no screen.
    function _available(length) {
        return length > 0 ? length * 0.95 : Infinity;
    }
}
