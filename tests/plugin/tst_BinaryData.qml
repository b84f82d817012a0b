import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase
    name: "BinaryData"

    property var signalNames: []   // in the order of their arrival

    Component {
        id: dataComponent

        BinaryData {
            onSizeChanged: testCase.signalNames.push("size")
            onDataChanged: testCase.signalNames.push("data")
            onTextEncodingChanged: testCase.signalNames.push("textEncoding")
        }
    }

    Component {
        id: folderComponent

        FileFolder {}
    }

    Component {
        id: boundComponent

        Item {
            property alias binary: binary
            property int boundSize: binary.size
            property bool boundEmpty: binary.isEmpty
            property bool boundNull: binary.isNull
            property int boundLength: new Uint8Array(binary.data).length
            property int boundEncoding: binary.textEncoding

            BinaryData { id: binary }
        }
    }

    function make(bytes) {
        const binary = createTemporaryObject(dataComponent, testCase);
        if (bytes !== undefined)
            binary.data = new Uint8Array(bytes).buffer;
        signalNames = [];
        return binary;
    }

    function bytesOf(binary) {
        return Array.from(new Uint8Array(binary.data));
    }

    function test_startsAsNoArrayInUtf8() {
        const binary = make();
        compare(binary.isNull, true);
        compare(binary.isEmpty, true);
        compare(binary.size, 0);
        compare(binary.textEncoding, BinaryData.TextEncodingUtf8);
        compare(bytesOf(binary), []);
    }

    function test_encodingsHaveTheirNumbers_data() {
        return [
            { tag: "unknown", value: BinaryData.TextEncodingUnknown, number: -1 },
            { tag: "UTF-8", value: BinaryData.TextEncodingUtf8, number: 0 },
            { tag: "Latin-1", value: BinaryData.TextEncodingLatin1, number: 1 },
            { tag: "local", value: BinaryData.TextEncodingLocal8Bit, number: 2 },
            { tag: "UTF-16", value: BinaryData.TextEncodingUtf16, number: 3 },
        ];
    }

    function test_encodingsHaveTheirNumbers(row) {
        compare(row.value, row.number);
    }

    function test_textEncodingNotifiesOnlyARealChange() {
        const binary = make();
        binary.textEncoding = BinaryData.TextEncodingUtf16;
        binary.textEncoding = BinaryData.TextEncodingUtf16;
        compare(binary.textEncoding, BinaryData.TextEncodingUtf16);
        compare(signalNames, ["textEncoding"]);
    }

    function test_undefinedEncodingsAreKeptAndWarnedOf() {
        const binary = make([0xc3, 0xa4]);
        binary.textEncoding = 99;
        compare(binary.textEncoding, 99);
        TestSupport.clearLog();
        ignoreWarning(/Undefined encoding: 99/);
        binary.setStringData("\u00e4", BinaryData.TextEncodingUnknown);
        compare(bytesOf(binary), [0xe4]);
        ignoreWarning(/Undefined encoding: -77/);
        compare(make([0xc3, 0xa4]).stringData(-77), "\u00e4");
        compare(TestSupport.logCount("warning", "default", "Undefined encoding:"), 2);
    }

    // data

    function test_dataTakesWhatConvertsToBytes_data() {
        return [
            { tag: "text", value: "abc", bytes: [97, 98, 99] },
            { tag: "text beyond ASCII is UTF-8", value: "\u00e4", bytes: [0xc3, 0xa4] },
            { tag: "number", value: 12, bytes: [49, 50] },
            { tag: "buffer", value: new Uint8Array([1, 0, 255]).buffer, bytes: [1, 0, 255] },
            { tag: "empty text", value: "", bytes: [] },
        ];
    }

    function test_dataTakesWhatConvertsToBytes(row) {
        const binary = make([7, 7, 7, 7, 7, 7]);
        binary.data = row.value;
        compare(bytesOf(binary), row.bytes);
        compare(signalNames, ["data", "size"]);
    }

    function test_textAssignedToDataIgnoresTextEncoding() {
        const binary = make();
        binary.textEncoding = BinaryData.TextEncodingUtf16;
        binary.data = "abc";
        compare(binary.size, 3);
    }

    function test_valueWithATextFormOnlyGoesThroughTextEncoding() {
        const date = new Date(2020, 1, 3, 4, 5, 6);
        const utf8 = make();
        utf8.data = date;
        verify(utf8.size > 0);
        verify(utf8.stringData().indexOf("2020") >= 0, utf8.stringData());

        const utf16 = make();
        utf16.textEncoding = BinaryData.TextEncodingUtf16;
        signalNames = [];
        utf16.data = date;
        compare(utf16.size, 2 * utf8.size);
        compare(utf16.stringData(BinaryData.TextEncodingUtf16), utf8.stringData());
        compare(signalNames, ["data", "size"]);
    }

    function test_unsupportedDataIsRefused_data() {
        return [
            { tag: "object", value: { a: 1 } },
            { tag: "list", value: [1, 2] },
            { tag: "undefined", value: undefined },
        ];
    }

    function test_unsupportedDataIsRefused(row) {
        const binary = make([1, 2]);
        TestSupport.clearLog();
        ignoreWarning(/Unsupported:/);
        binary.data = row.value;
        compare(TestSupport.logCount("warning", "Zemrik.Tessaline.Core", "Unsupported:"), 1);
        compare(bytesOf(binary), [1, 2]);
        compare(signalNames, []);
    }

    function test_dataOfOneObjectGoesToAnother() {
        const source = make([0, 128, 255]);
        const target = make();
        target.data = source.data;
        compare(bytesOf(target), [0, 128, 255]);
        target.setDataAt(0, 1);
        compare(bytesOf(source), [0, 128, 255]);
    }

    function test_bytesTravelThroughFilesAndBack() {
        const source = make([0, 1, 128, 255]);
        const folder = createTemporaryObject(folderComponent, testCase);
        folder.path = TestSupport.makeFolder();
        compare(folder.writeFile("bytes", source.data), true);
        compare(TestSupport.readHex(folder.path + "/bytes"), "000180ff");
        const target = make();
        target.data = folder.readFile("bytes");
        compare(bytesOf(target), [0, 1, 128, 255]);
        const copy = Tessaline.binaryData(folder.readFile("bytes"));
        compare(bytesOf(copy), [0, 1, 128, 255]);
    }

    function test_bindingsFollowDataAndItsSize() {
        const item = createTemporaryObject(boundComponent, testCase);
        compare(item.boundNull, true);
        item.binary.data = "abcd";
        compare(item.boundSize, 4);
        compare(item.boundEmpty, false);
        compare(item.boundNull, false);
        compare(item.boundLength, 4);
        item.binary.clear();
        compare(item.boundSize, 0);
        compare(item.boundEmpty, true);
        compare(item.boundNull, true);
        compare(item.boundLength, 0);
        item.binary.textEncoding = BinaryData.TextEncodingLatin1;
        compare(item.boundEncoding, BinaryData.TextEncodingLatin1);
    }

    // size

    function test_sizeCutsAndGrows() {
        const binary = make([1, 2, 3]);
        binary.size = 2;
        compare(bytesOf(binary), [1, 2]);
        binary.size = 5;
        compare(bytesOf(binary), [1, 2, 0, 0, 0]);
        compare(signalNames, ["size", "size"]);   // never "data"
    }

    function test_equalSizeHasNoEffect() {
        const binary = make([1, 2, 3]);
        binary.size = 3;
        compare(signalNames, []);
    }

    function test_negativeSizeEmpties() {
        const binary = make([1, 2, 3]);
        binary.size = -4;
        compare(binary.size, 0);
        compare(signalNames, ["size"]);
    }

    function test_bindingOnDataMissesANewSize() {
        const item = createTemporaryObject(boundComponent, testCase);
        item.binary.size = 3;
        compare(item.boundSize, 3);
        compare(item.boundLength, 0);
    }

    // Invokables

    function test_clearAlwaysNotifiesDataBeforeSize() {
        const binary = make([1]);
        binary.clear();
        compare(binary.isNull, true);
        compare(signalNames, ["data", "size"]);
        binary.clear();
        compare(signalNames, ["data", "size", "data", "size"]);
    }

    function test_dataAtReadsSignedBytes_data() {
        return [
            { tag: "0", index: 0, value: -128 },
            { tag: "255", index: 1, value: -1 },
            { tag: "127", index: 2, value: 127 },
            { tag: "zero", index: 3, value: 0 },
            { tag: "at the size", index: 4, value: undefined },
            { tag: "beyond", index: 1000, value: undefined },
            { tag: "negative", index: -1, value: undefined },
        ];
    }

    function test_dataAtReadsSignedBytes(row) {
        const value = make([0x80, 0xff, 0x7f, 0]).dataAt(row.index);
        compare(typeof value, typeof row.value);
        compare(value, row.value);
    }

    function test_setDataAtStoresTheLowByte_data() {
        return [
            { tag: "small", value: 5, byte: 5 },
            { tag: "more than a byte", value: 0x141, byte: 0x41 },
            { tag: "negative", value: -1, byte: 255 },
        ];
    }

    function test_setDataAtStoresTheLowByte(row) {
        const binary = make([9, 9]);
        compare(binary.setDataAt(1, row.value), true);
        compare(bytesOf(binary), [9, row.byte]);
        compare(signalNames, ["data"]);
    }

    function test_setDataAtOutOfRangeIsFalse() {
        const binary = make([9, 9]);
        compare(binary.setDataAt(2, 1), false);
        compare(binary.setDataAt(-1, 1), false);
        compare(bytesOf(binary), [9, 9]);
        compare(signalNames, []);
    }

    function test_fillKeepsTheSizeUnlessTold_data() {
        return [
            { tag: "no size", size: undefined, bytes: [3, 3, 3, 3], names: ["data"] },
            { tag: "-1", size: -1, bytes: [3, 3, 3, 3], names: ["data"] },
            { tag: "larger", size: 6, bytes: [3, 3, 3, 3, 3, 3], names: ["size", "data"] },
            { tag: "smaller", size: 2, bytes: [3, 3], names: ["size", "data"] },
            { tag: "none", size: 0, bytes: [], names: ["size", "data"] },
            { tag: "equal", size: 4, bytes: [3, 3, 3, 3], names: ["size", "data"] },
        ];
    }

    function test_fillKeepsTheSizeUnlessTold(row) {
        const binary = make([0, 1, 2, 3]);
        TestSupport.clearLog();
        if (row.size === undefined)
            binary.fill(0x103);
        else
            binary.fill(0x103, row.size);
        compare(bytesOf(binary), row.bytes);
        compare(signalNames, row.names);
        const logged = row.size === undefined ? -1 : row.size;
        compare(TestSupport.logCount("debug", "Zemrik.Tessaline.Core",
                                     "byteValue: 259 size: " + logged), 1);
    }

    function test_stringDataDecodes_data() {
        return [
            { tag: "UTF-8 by default", bytes: [0xc3, 0xa4], encoding: undefined, text: "\u00e4" },
            { tag: "Latin-1", bytes: [0xe4, 0x41], encoding: BinaryData.TextEncodingLatin1,
              text: "\u00e4A" },
            { tag: "local", bytes: [0xc3, 0xa4], encoding: BinaryData.TextEncodingLocal8Bit,
              text: "\u00e4" },
            { tag: "UTF-16", bytes: [0xac, 0x20], encoding: BinaryData.TextEncodingUtf16,
              text: "\u20ac" },
            { tag: "ends at a zero byte", bytes: [0x61, 0, 0x62], encoding: undefined, text: "a" },
        ];
    }

    function test_stringDataDecodes(row) {
        const binary = make(row.bytes);
        binary.textEncoding = BinaryData.TextEncodingUtf16;   // not consulted
        compare(row.encoding === undefined ? binary.stringData() : binary.stringData(row.encoding),
                row.text);
    }

    function test_setStringDataEncodes_data() {
        return [
            { tag: "UTF-8 by default", encoding: undefined, bytes: [0xc3, 0xa4] },
            { tag: "Latin-1", encoding: BinaryData.TextEncodingLatin1, bytes: [0xe4] },
            { tag: "UTF-16", encoding: BinaryData.TextEncodingUtf16, bytes: [0xe4, 0] },
            { tag: "the property's", encoding: BinaryData.TextEncodingUnknown, bytes: [0xe4, 0] },
        ];
    }

    function test_setStringDataEncodes(row) {
        const binary = make([1, 2, 3]);
        binary.textEncoding = BinaryData.TextEncodingUtf16;
        signalNames = [];
        if (row.encoding === undefined)
            binary.setStringData("\u00e4");
        else
            binary.setStringData("\u00e4", row.encoding);
        compare(bytesOf(binary), row.bytes);
        compare(signalNames, []);
    }

    function test_setStringDataLeavesBindingsBehind() {
        const item = createTemporaryObject(boundComponent, testCase);
        item.binary.setStringData("abc");
        compare(item.binary.size, 3);
        compare(item.boundSize, 0);
    }

    function test_setStringDataOfNullClears_data() {
        return [
            { tag: "null", value: null },
            { tag: "undefined", value: undefined },
            { tag: "empty literal", value: "" },   // a null text by the time that it arrives
        ];
    }

    function test_setStringDataOfNullClears(row) {
        const binary = make([1, 2, 3]);
        binary.setStringData(row.value);
        compare(binary.isNull, true);
        compare(signalNames, ["data", "size"]);
        binary.setStringData(row.value);
        compare(signalNames, ["data", "size"]);
    }

    function test_setStringDataOfAnEmptyTextIsNoNull() {
        const binary = make([1, 2, 3]);
        binary.setStringData("a".slice(1));
        compare(binary.size, 0);
        compare(binary.isNull, false);
        compare(signalNames, []);
    }
}
