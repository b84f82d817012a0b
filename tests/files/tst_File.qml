import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase

    name: "File"

    property string folder

    Component {
        id: fileComponent

        File {
            id: file

            // What a page would show; each part is a binding of its own.
            property string shown: path + "|" + openMode + "|" + isReadable + "|" + isWritable
            property string place: position + "|" + atEnd
            property string found: exists + "|" + url
            property string failure: error + "|" + errorString
            property var signalOrder: []

            onPathChanged: signalOrder.push("path")
            onOpenModeChanged: signalOrder.push("openMode")
            onErrorChanged: signalOrder.push("error")
            onPositionChanged: signalOrder.push("position")
            onTextEncodingChanged: signalOrder.push("textEncoding")
        }
    }

    function init() {
        folder = TestSupport.makeFolder();
        TestSupport.clearLog();
    }

    function makeFile(name, text) {
        const path = folder + "/" + name;
        if (text !== undefined)
            verify(TestSupport.writeText(path, text));
        const file = createTemporaryObject(fileComponent, testCase, { path: path });
        file.signalOrder = [];
        return file;
    }

    function hex(bytes) {
        return Array.from(new Uint8Array(bytes)).map(b => ("0" + b.toString(16)).slice(-2)).join("");
    }

    function warnings(words) {
        return TestSupport.logCount("warning", "Zemrik.Tessaline.File", words);
    }

    function test_defaults() {
        const file = createTemporaryObject(fileComponent, testCase);
        compare(file.path, "");
        compare(file.url.toString(), "");
        compare(file.openMode, File.NotOpen);
        compare(file.isReadable, false);
        compare(file.isWritable, false);
        compare(file.textMode, false);
        compare(file.textEncoding, 0);
        compare(file.error, File.NoError);
        compare(file.position, 0);
        compare(file.atEnd, true);
        compare(file.exists, false);
    }

    function test_enumsHaveTheDevicesNumbers() {
        compare([File.NotOpen, File.OpenModeReadOnly, File.OpenModeWriteOnly, File.OpenModeReadWrite,
                 File.OpenModeAppend, File.OpenModeTruncate, File.OpenModeText,
                 File.OpenModeUnbuffered], [0, 1, 2, 3, 4, 8, 16, 32]);
        compare([File.NoError, File.ErrorRead, File.ErrorWrite, File.ErrorFatal, File.ErrorResource,
                 File.ErrorOpen, File.ErrorAbort, File.ErrorTimeOut, File.ErrorUnspecified,
                 File.ErrorRemove, File.ErrorRename, File.ErrorPosition, File.ErrorResize,
                 File.ErrorPermissions, File.ErrorCopy], [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14]);
    }

    function test_pathAndUrlFollowEachOther() {
        const file = createTemporaryObject(fileComponent, testCase);
        file.path = "/no/such file";
        compare(file.url.toString(), "file:///no/such file");
        compare(file.found, "false|file:///no/such file");
        file.url = "file:///no/other%20file";
        compare(file.path, "/no/other file");
        file.url = "qrc:/images/defaultThumbnail.png";
        compare(file.path, ":/images/defaultThumbnail.png");
        compare(file.found, "true|qrc:///images/defaultThumbnail.png");
        compare(file.signalOrder, ["path", "path", "path"]);
    }

    function test_pathVariablesAreResolved_data() {
        return [
            { tag: "home", value: "~/a.txt", expected: TestSupport.home + "/a.txt" },
            { tag: "variable", value: "$FILE_TEST/a.txt", expected: "/some/where/a.txt" },
            { tag: "none", value: "a~b$c.txt", expected: "a~b$c.txt" },
        ];
    }

    function test_pathVariablesAreResolved(data) {
        TestSupport.setEnvironment("FILE_TEST", "/some/where");
        const file = createTemporaryObject(fileComponent, testCase, { path: data.value });
        compare(file.path, data.expected);
    }

    function test_theSamePathEmitsNothingButIsLogged() {
        const file = makeFile("a.txt");
        TestSupport.clearLog();
        file.path = folder + "/a.txt";
        file.url = file.url;
        compare(file.signalOrder, []);
        compare(TestSupport.logCount("debug", "Zemrik.Tessaline.File",
                                     "void File::setPath(const QString&) \"" + folder + "/a.txt\""), 1);
    }

    function test_pathStaysWhileTheFileIsOpen() {
        const file = makeFile("a.txt", "text");
        verify(file.open());
        file.signalOrder = [];
        file.path = "/elsewhere";
        file.url = "file:///elsewhere";
        compare(file.path, folder + "/a.txt");
        compare(file.signalOrder, []);
        compare(warnings("void File::setPath(const QString&) File is open: \"" + folder + "/a.txt\""), 2);
        file.close();
        file.path = "/elsewhere";
        compare(file.path, "/elsewhere");
    }

    function test_openTellsPathModeAndPosition() {
        const file = makeFile("a.txt", "text");
        compare(file.open(File.OpenModeReadOnly), true);
        compare(file.signalOrder, ["path", "openMode", "position"]);
        compare(file.shown, folder + "/a.txt|1|true|false");
        compare(file.place, "0|false");
    }

    function test_openWithoutModeReadsText() {
        const file = makeFile("a.txt", "text");
        compare(file.open(), true);
        compare(file.openMode, File.OpenModeReadOnly | File.OpenModeText);
        compare(file.openMode, 17);
        compare(file.textMode, true);
    }

    function test_openForWritingMakesTheFile() {
        const file = makeFile("new.txt");
        compare(file.found, "false|" + file.url);
        verify(file.open(File.OpenModeWriteOnly));
        compare(file.found, "true|" + file.url);
        compare(file.shown, folder + "/new.txt|2|false|true");
    }

    function test_openThatFailsTellsTheError_data() {
        return [
            { tag: "missing folder", name: "no/such/folder.txt", mode: File.OpenModeWriteOnly },
            { tag: "missing file", name: "none.txt", mode: File.OpenModeReadOnly },
            { tag: "a folder, for reading", name: ".", mode: File.OpenModeReadOnly },
            { tag: "a folder, for writing", name: ".", mode: File.OpenModeWriteOnly },
        ];
    }

    function test_openThatFailsTellsTheError(data) {
        const file = makeFile(data.name);
        compare(file.open(data.mode), false);
        compare(file.signalOrder, ["error"]);
        compare(file.error, File.ErrorOpen);
        verify(file.failure.startsWith("5|"), file.failure);
        verify(file.errorString !== "");
        compare(file.openMode, File.NotOpen);
    }

    function test_openTwiceIsRefused() {
        const file = makeFile("a.txt", "text");
        verify(file.open());
        file.signalOrder = [];
        ignoreWarning(/File .* already open/);
        compare(file.open(File.OpenModeWriteOnly), false);
        compare(file.signalOrder, ["error"]);
        compare(file.openMode, 17);
        compare(TestSupport.readText(file.path), "text");
    }

    function test_closeTellsModeAndPosition() {
        const file = makeFile("a.txt", "text");
        file.close();
        compare(file.signalOrder, []);
        verify(file.open());
        file.readLine();
        file.signalOrder = [];
        file.close();
        compare(file.signalOrder, ["openMode", "position"]);
        compare(file.shown, folder + "/a.txt|0|false|false");
        file.close();
        compare(file.signalOrder, ["openMode", "position"]);
    }

    function test_linesKeepTheirTerminator() {
        const file = makeFile("a.txt", "one\n\nthree \u00e4\u20ac\ud83d\ude00\nlast");
        verify(file.open(File.OpenModeReadOnly));
        file.signalOrder = [];
        compare(file.readLine(), "one\n");
        compare(file.place, "4|false");
        compare(file.readLine(), "\n");
        compare(file.readLine(), "three \u00e4\u20ac\ud83d\ude00\n");
        compare(file.readLine(), "last");
        compare(file.atEnd, true);
        compare(file.readLine(), "");
        compare(file.signalOrder, ["position", "position", "position", "position", "position"]);
    }

    function test_linesHaveNoLengthLimit() {
        const line = "x".repeat(300000);
        const file = makeFile("a.txt", line + "\nrest");
        verify(file.open());
        compare(file.readLine().length, 300001);
        compare(file.readLine(), "rest");
    }

    function test_textModeDropsCarriageReturns() {
        const file = makeFile("a.txt", "one\r\ntwo\r\n");
        verify(file.open());
        compare(file.readLine(), "one\n");
        file.signalOrder = [];
        file.textMode = false;
        compare(file.signalOrder, ["openMode", "position"]);
        compare(file.openMode, 1);
        compare(file.readLine(), "two\r\n");
        file.textMode = false;
        compare(file.signalOrder, ["openMode", "position", "position"]);
    }

    function test_readLineOfAClosedFileWarns() {
        const file = makeFile("a.txt", "text");
        compare(file.readLine(), "");
        compare(file.signalOrder, []);
        compare(warnings("QString File::readLine() File not open"), 1);
    }

    function test_textEncoding_data() {
        return [
            { tag: "UTF-8", encoding: BinaryData.TextEncodingUtf8, hex: "c3a4e282ac0a" },
            { tag: "Latin-1", encoding: BinaryData.TextEncodingLatin1, hex: "e43f0a", readBack: "\u00e4?\n" },
            { tag: "local 8-bit", encoding: BinaryData.TextEncodingLocal8Bit, hex: "c3a4e282ac0a" },
        ];
    }

    function test_textEncoding(data) {
        const file = makeFile("a.txt");
        file.textEncoding = data.encoding;
        compare(file.textEncoding, data.encoding);
        verify(file.open(File.OpenModeReadWrite));
        file.writeLine("\u00e4\u20ac");
        verify(file.flush());
        compare(TestSupport.readHex(file.path), data.hex);
        verify(file.reset());
        compare(file.readLine(), data.readBack || "\u00e4\u20ac\n");
        file.close();

        TestSupport.remove(file.path);
        verify(file.open(File.OpenModeWriteOnly));
        file.write("\u00e4\u20ac\n");
        verify(file.flush());
        compare(TestSupport.readHex(file.path), data.hex);
    }

    function test_utf16IsWrittenWithoutAMark() {
        const file = makeFile("a.txt");
        file.textEncoding = BinaryData.TextEncodingUtf16;
        verify(file.open(File.OpenModeWriteOnly));
        file.writeLine("\u00e4\u20ac");
        file.close();
        compare(TestSupport.readHex(file.path), "e400ac200a00");
        // A line ends behind the byte 0x0a: one line takes the first half of its terminator.
        verify(file.open(File.OpenModeReadOnly));
        compare(file.readLine(), "\u00e4\u20ac\n");
        compare(file.position, 5);
    }

    function test_textEncodingIsSignalledWhenItChanges() {
        const file = makeFile("a.txt");
        file.textEncoding = BinaryData.TextEncodingUtf8;
        compare(file.signalOrder, []);
        file.textEncoding = BinaryData.TextEncodingLatin1;
        file.textEncoding = BinaryData.TextEncodingLatin1;
        compare(file.signalOrder, ["textEncoding"]);
        file.textEncoding = BinaryData.TextEncodingUnknown;
        compare(file.textEncoding, -1);
    }

    function test_unknownTextEncodingWritesLatin1WithAWarning() {
        const file = makeFile("a.txt");
        file.textEncoding = 99;
        compare(file.textEncoding, 99);
        verify(file.open(File.OpenModeWriteOnly));
        file.writeLine("\u00e4");
        file.close();
        compare(TestSupport.readHex(file.path), "e40a");
        compare(TestSupport.logCount("warning", "default", "Undefined encoding: 99"), 1);
    }

    function test_writingNotifiesThePosition() {
        const file = makeFile("a.txt");
        verify(file.open(File.OpenModeWriteOnly));
        file.signalOrder = [];
        file.writeLine("one");
        compare(file.place, "4|true");
        file.write("two");
        compare(file.place, "7|true");
        compare(file.signalOrder, ["position", "position"]);
        file.close();
        compare(TestSupport.readText(file.path), "one\ntwo");
    }

    function test_writeOfNothingIsSilent_data() {
        return [
            { tag: "empty text", value: "", warning: "" },
            { tag: "number", value: 5, warning: "Unsupported data type:" },
            { tag: "object", value: ({ a: 1 }), warning: "Unsupported data type:" },
            { tag: "undefined", value: undefined, warning: "Unsupported data type:" },
        ];
    }

    function test_writeOfNothingIsSilent(data) {
        const file = makeFile("a.txt");
        verify(file.open(File.OpenModeWriteOnly));
        file.signalOrder = [];
        file.write(data.value);
        compare(file.signalOrder, []);
        compare(file.position, 0);
        if (data.warning)
            compare(TestSupport.logCount("warning", "default", data.warning), 1);
        file.close();
        compare(TestSupport.readText(file.path), "");
    }

    function test_writeToAClosedFileIsSilent() {
        const file = makeFile("a.txt");
        TestSupport.clearLog();
        file.write("");
        compare(TestSupport.logLines(), []);
        ignoreWarning(/QIODevice::write .*: device not open/);
        file.write("text");
        ignoreWarning(/QIODevice::write .*: device not open/);
        file.writeLine("text");
        compare(file.signalOrder, []);
        compare(file.exists, false);
    }

    function test_bytesComeAndGo() {
        const source = makeFile("a.bin");
        verify(TestSupport.writeHex(source.path, "00ff800a0d41"));
        verify(source.open(File.OpenModeReadOnly));
        source.signalOrder = [];
        const head = source.read(2);
        compare(head.byteLength, 2);
        compare(hex(head), "00ff");
        compare(source.position, 2);
        const rest = source.readAll();
        compare(hex(rest), "800a0d41");
        compare(source.readAll().byteLength, 0);
        compare(source.signalOrder, []);

        const target = makeFile("b.bin");
        verify(target.open(File.OpenModeWriteOnly));
        target.write(head);
        target.write(rest);
        compare(target.position, 6);
        target.close();
        compare(TestSupport.readHex(target.path), "00ff800a0d41");
    }

    function test_readTakesNoMoreThanThereIs_data() {
        return [
            { tag: "all", length: 100, expected: 4 },
            { tag: "none", length: 0, expected: 0 },
            { tag: "the largest number", length: 2147483647, expected: 4 },
        ];
    }

    function test_readTakesNoMoreThanThereIs(data) {
        const file = makeFile("a.txt", "text");
        verify(file.open());
        compare(file.read(data.length).byteLength, data.expected);
    }

    function test_positionMovesAndNotifies() {
        const file = makeFile("a.txt", "0123456789");
        verify(file.open());
        file.signalOrder = [];
        file.position = 7;
        compare(file.place, "7|false");
        compare(file.readLine(), "789");
        compare(file.place, "10|true");
        compare(file.reset(), true);
        compare(file.place, "0|false");
        compare(file.signalOrder, ["position", "position", "position"]);
    }

    function test_positionsBeyondFourGigabytes() {
        const file = makeFile("a.txt");
        verify(file.open(File.OpenModeReadWrite));
        file.position = 5000000000;
        compare(file.position, 5000000000);
    }

    function test_deviceCallsOnAClosedFileTellTheError() {
        const file = makeFile("a.txt", "text");
        ignoreWarning(/QIODevice::seek .*: The device is not open|IODevice is not open/);
        file.position = 2;
        compare(file.reset(), false);
        compare(file.signalOrder, ["error", "error"]);
    }

    function test_appendAndTruncate() {
        const file = makeFile("a.txt", "old");
        verify(file.open(File.OpenModeWriteOnly | File.OpenModeAppend));
        file.write("+new");
        file.close();
        compare(TestSupport.readText(file.path), "old+new");
        verify(file.open(File.OpenModeReadWrite));
        file.write("OLD");
        file.close();
        compare(TestSupport.readText(file.path), "OLD+new");
        verify(file.open(File.OpenModeWriteOnly | File.OpenModeTruncate));
        file.close();
        compare(TestSupport.readText(file.path), "");
    }

    // Writing to /dev/full is taken into the buffer and refused when the buffer is written out.
    function test_fullDiskShowsInFlush() {
        const file = createTemporaryObject(fileComponent, testCase, { path: "/dev/full" });
        verify(file.open(File.OpenModeWriteOnly));
        file.signalOrder = [];
        file.write("text");
        compare(file.signalOrder, ["position"]);
        compare(file.flush(), false);
        compare(file.signalOrder, ["position", "error"]);
        compare(file.error, File.ErrorResource);
        compare(file.failure, "4|No space left on device");
    }

    function test_fullDiskShowsInClose() {
        const file = createTemporaryObject(fileComponent, testCase, { path: "/dev/full" });
        verify(file.open(File.OpenModeWriteOnly));
        file.writeLine("text");
        file.signalOrder = [];
        file.close();
        compare(file.signalOrder, ["openMode", "position", "error"]);
        compare(file.failure, "4|No space left on device");
    }

    function test_writingCallsReportNothingThemselves_data() {
        return [
            { tag: "more than the buffer", mode: File.OpenModeWriteOnly, text: "x".repeat(100000) },
            { tag: "no buffer", mode: File.OpenModeWriteOnly | File.OpenModeUnbuffered, text: "x" },
        ];
    }

    function test_writingCallsReportNothingThemselves(data) {
        const file = createTemporaryObject(fileComponent, testCase, { path: "/dev/full" });
        verify(file.open(data.mode));
        file.signalOrder = [];
        TestSupport.clearLog();
        file.write(data.text);
        file.writeLine(data.text);
        compare(file.signalOrder, []);
        compare(file.error, File.ErrorResource);
        compare(TestSupport.logLines(), []);
    }

    function test_namesAreTakenAsTheyAre_data() {
        return ["back\\slash", "new\nline", "tab\t", "\u00e4\u20ac\ud83d\ude00", " space ", "%41", "#?&", "-rf", "*"]
            .map(name => ({ tag: encodeURIComponent(name), name: name }));
    }

    function test_namesAreTakenAsTheyAre(data) {
        const file = makeFile(data.name);
        verify(file.open(File.OpenModeWriteOnly));
        file.write("content");
        file.close();
        compare(TestSupport.readText(folder + "/" + data.name), "content");
        const again = createTemporaryObject(fileComponent, testCase, { url: file.url });
        compare(again.path, folder + "/" + data.name);
        verify(again.open());
        compare(again.readLine(), "content");
    }
}
