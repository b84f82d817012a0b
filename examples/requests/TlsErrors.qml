/*
    What is wrong with a server's certificate, as a list of cards. `errors` is what the signals
    sslErrors() and sslErrorsIgnored() of a NetworkRequest bring.
*/
import QtQuick 2.15
import QtQuick.Controls 2.15

ListView {
    id: list

    property real unit: 1
    property var errors: []

    // The names in a map as exported for "subject" and "issuer", the most telling first.
    function names(map) {
        const order = [ "CN", "O", "OU", "L", "ST", "C", "EM", "SN", "DQ" ];
        return order.filter(key => map[key]).map(key => map[key].join(", ")).join(", ") || "nobody";
    }
    function day(date) {
        return Qt.formatDateTime(date, "yyyy-MM-dd hh:mm");
    }

    model: errors
    spacing: 10 * unit
    topMargin: 12 * unit
    bottomMargin: 12 * unit
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: ScrollBar {}

    delegate: Rectangle {
        readonly property var certificate: modelData.certificate

        x: 12 * list.unit
        width: list.width - 24 * list.unit
        height: layout.height + 24 * list.unit
        radius: 6 * list.unit
        color: "#203840"
        objectName: "tlsError"

        Rectangle {
            width: 4 * list.unit
            height: parent.height
            radius: 2 * list.unit
            color: "#ff7b72"
        }
        Column {
            id: layout

            x: 18 * list.unit
            y: 12 * list.unit
            width: parent.width - 32 * list.unit
            spacing: 5 * list.unit

            Text {
                width: parent.width
                bottomPadding: 3 * list.unit
                objectName: "tlsErrorText"
                text: modelData.errorString
                textFormat: Text.PlainText
                color: "#ffb4ae"
                font { pixelSize: 14 * list.unit; bold: true }
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            }
            Entry { name: qsTr("Issued to"); valueName: "tlsSubject"; value: list.names(certificate.subject) }
            Entry { name: qsTr("Issued by"); value: list.names(certificate.issuer) + (certificate.isSelfSigned ? " " + qsTr("(signed by itself)") : "") }
            Entry { name: qsTr("Valid"); value: qsTr("%1 to %2").arg(list.day(certificate.effectiveDate)).arg(list.day(certificate.expiryDate)) }
            Entry { visible: certificate.isBlacklisted; name: qsTr("Blacklisted"); value: qsTr("yes") }
        }
    }

    component Entry: Item {
        property alias name: nameText.text
        property alias value: valueText.text
        property alias valueName: valueText.objectName

        width: parent.width
        height: valueText.height

        Text {
            id: nameText

            width: 84 * list.unit
            color: "#86a0aa"
            font.pixelSize: 12 * list.unit
            elide: Text.ElideRight
        }
        Text {
            id: valueText

            x: nameText.width
            width: parent.width - x
            textFormat: Text.PlainText
            color: "#eef5f7"
            font.pixelSize: 12 * list.unit
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        }
    }
}
