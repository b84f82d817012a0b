/*
    What to send. The user's entries are in `preferences`, a Settings element, and in three lists;
    headers() and body() give them as a NetworkRequest takes them.
*/
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Dialogs 1.2
import QtQuick.Layouts 1.15
import Zemrik.Tessaline 1.0

Flickable {
    id: form

    property real unit: 1
    property var preferences
    property string uploadPrefix
    readonly property var methods: [ "GET", "POST", "PUT", "DELETE", "HEAD" ]
    readonly property bool takesBody: preferences.method === "POST" || preferences.method === "PUT"
    readonly property bool joinsQuery: preferences.bodyKind === 1 && !takesBody && fileModel.count === 0
                                       && preferences.url.indexOf("?") >= 0

    signal accepted()

    function headers() {
        const result = {};
        for (let i = 0; i < headerModel.count; ++i) {
            const entry = headerModel.get(i);
            if (entry.name > "")
                result[entry.name] = entry.value;
        }
        const hasType = Object.keys(result).some(name => name.toLowerCase() === "content-type");
        if (preferences.bodyKind === 2 && !hasType)
            result["Content-Type"] = looksLikeJson(preferences.bodyText) ? "application/json" : "text/plain";
        return result;
    }
    // What stands behind the address because the address has a query already: NetworkRequest would
    // begin a second one.
    function query() {
        if (!joinsQuery)
            return "";
        const entries = fields();
        return Object.keys(entries).map(name => "&" + encodeURIComponent(name) + "=" + encodeURIComponent(entries[name])).join("");
    }
    // Undefined, an object or a text.
    function body() {
        switch (preferences.bodyKind) {
        case 1:
            return joinsQuery ? undefined : fields();
        case 2:
            return preferences.bodyText;
        default:
            return undefined;
        }
    }
    function fields() {
        const result = {};
        for (let i = 0; i < fieldModel.count; ++i) {
            const entry = fieldModel.get(i);
            if (entry.name > "")
                result[entry.name] = entry.value;
        }
        for (let i = 0; i < fileModel.count; ++i) {
            const entry = fileModel.get(i);
            if (entry.name > "")
                result[entry.name] = uploadPrefix + Tessaline.resolvedPath(entry.value);
        }
        return result;
    }
    function looksLikeJson(text) {
        try {
            JSON.parse(text);
            return true;
        } catch (error) {
            return false;
        }
    }

    contentHeight: sections.height + 32 * unit
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: ScrollBar {}

    ListModel { id: headerModel }
    ListModel { id: fieldModel }
    ListModel { id: fileModel }

    // Made when it is first wanted.
    Loader {
        id: chooser

        property int row: 0

        function open(index) {
            row = index;
            active = true;
            item.open();
        }

        active: false
        sourceComponent: FileDialog {
            title: qsTr("Choose a file to upload")
            onAccepted: fileModel.setProperty(chooser.row, "value", Tessaline.resolvedPath(fileUrl))
        }
    }

    ColumnLayout {
        id: sections

        x: 16 * form.unit
        y: 16 * form.unit
        width: form.width - 32 * form.unit
        spacing: 22 * form.unit

        Section {
            Layout.fillWidth: true
            unit: form.unit
            title: qsTr("Request")

            Choice {
                Layout.fillWidth: true
                unit: form.unit
                names: form.methods
                index: form.methods.indexOf(form.preferences.method)
                onChosen: form.preferences.method = form.methods[index]
            }
            Field {
                Layout.fillWidth: true
                unit: form.unit
                label: qsTr("Address")
                placeholder: "http://127.0.0.1:8081/echo"
                inputName: "urlField"
                text: form.preferences.url
                onEdited: form.preferences.url = text
                onAccepted: form.accepted()
            }
            Switcher {
                Layout.fillWidth: true
                objectName: "followSwitcher"
                unit: form.unit
                text: qsTr("Follow redirects")
                checked: form.preferences.followRedirects
                onToggled: form.preferences.followRedirects = checked
            }
            Switcher {
                Layout.fillWidth: true
                objectName: "trustSwitcher"
                unit: form.unit
                text: qsTr("Go on with a bad certificate")
                checked: form.preferences.ignoreSslErrors
                onToggled: form.preferences.ignoreSslErrors = checked
            }
        }

        Section {
            Layout.fillWidth: true
            unit: form.unit
            title: qsTr("Headers")

            Repeater {
                model: headerModel

                PairRow {
                    Layout.fillWidth: true
                    unit: form.unit
                    kind: "header"
                    name: model.name
                    value: model.value
                    onNameEdited: model.name = text
                    onValueEdited: model.value = text
                    onRemoved: headerModel.remove(index)
                }
            }
            PlainButton {
                objectName: "addHeader"
                unit: form.unit
                text: qsTr("Add a header")
                onClicked: headerModel.append({ name: "", value: "" })
            }
        }

        Section {
            Layout.fillWidth: true
            unit: form.unit
            title: qsTr("Body")

            Choice {
                Layout.fillWidth: true
                unit: form.unit
                names: [ "None", "Form", "Text" ]
                index: form.preferences.bodyKind
                onChosen: form.preferences.bodyKind = index
            }
            Repeater {
                model: form.preferences.bodyKind === 1 ? fieldModel : null

                PairRow {
                    Layout.fillWidth: true
                    unit: form.unit
                    kind: "field"
                    name: model.name
                    value: model.value
                    onNameEdited: model.name = text
                    onValueEdited: model.value = text
                    onRemoved: fieldModel.remove(index)
                }
            }
            Repeater {
                model: form.preferences.bodyKind === 1 ? fileModel : null

                PairRow {
                    Layout.fillWidth: true
                    unit: form.unit
                    kind: "file"
                    name: model.name
                    value: model.value
                    onNameEdited: model.name = text
                    onValueEdited: model.value = text
                    onRemoved: fileModel.remove(index)
                    onChooseClicked: chooser.open(index)
                }
            }
            RowLayout {
                visible: form.preferences.bodyKind === 1
                spacing: 8 * form.unit

                PlainButton {
                    objectName: "addField"
                    unit: form.unit
                    text: qsTr("Add a field")
                    onClicked: fieldModel.append({ name: "", value: "" })
                }
                PlainButton {
                    objectName: "addFile"
                    unit: form.unit
                    text: qsTr("Add a file")
                    onClicked: fileModel.append({ name: "file", value: "" })
                }
            }
            Hint {
                visible: form.preferences.bodyKind === 1
                text: fileModel.count > 0 ? qsTr("A form with a file goes out in several parts, by PUT or else by POST.")
                    : form.takesBody ? qsTr("The fields are the body, encoded as a query.") : qsTr("The fields become the query of the address.")
            }
            ScrollView {
                Layout.fillWidth: true
                Layout.preferredHeight: 120 * form.unit
                visible: form.preferences.bodyKind === 2

                TextArea {
                    id: bodyText

                    objectName: "bodyField"
                    padding: 8 * form.unit
                    text: form.preferences.bodyText
                    placeholderText: "{ \"text\": \"JSON or anything else\" }"
                    placeholderTextColor: "#7f949d"
                    color: "#15272e"
                    font { family: "monospace"; pixelSize: 12 * form.unit }
                    selectByMouse: true
                    wrapMode: TextEdit.Wrap
                    background: Rectangle {
                        radius: 5 * form.unit
                        color: "white"
                        border { width: (bodyText.activeFocus ? 2 : 1) * form.unit; color: bodyText.activeFocus ? "#1c6478" : "#bcd0d8" }
                    }
                    onTextChanged: if (activeFocus) form.preferences.bodyText = text
                }
            }
            Hint {
                visible: form.preferences.bodyKind === 2 && !form.takesBody
                text: qsTr("Only POST and PUT send a text.")
            }
        }

        Section {
            Layout.fillWidth: true
            unit: form.unit
            title: qsTr("Answer")

            Switcher {
                Layout.fillWidth: true
                objectName: "saveSwitcher"
                unit: form.unit
                text: qsTr("Save to a file")
                checked: form.preferences.savesAnswer
                onToggled: form.preferences.savesAnswer = checked
            }
            Field {
                Layout.fillWidth: true
                visible: form.preferences.savesAnswer
                unit: form.unit
                label: qsTr("File")
                hint: qsTr("An answer of any size costs no memory here.")
                inputName: "saveField"
                text: form.preferences.answerPath
                onEdited: form.preferences.answerPath = text
            }
        }
    }

    component Hint: Text {
        Layout.fillWidth: true
        color: "#566c76"
        font.pixelSize: 11 * form.unit
        wrapMode: Text.Wrap
    }
}
