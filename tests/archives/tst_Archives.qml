import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase

    name: "Archives"

    property string folder

    // One deflated entry, "bad.bin", whose data are of a block type that doesn't exist.
    readonly property string damagedArchive: "504b03041400000008000000b158afdae09a0c00000008000000070000006261642e62696e070707070707070707"
        + "070707504b010214001400000008000000b158afdae09a0c00000008000000070000000000000000000000000000"
        + "0000006261642e62696e504b0506000000000100010035000000310000000000"

    Component { id: readerComponent; ZipReader {} }
    Component { id: writerComponent; ZipWriter {} }
    Component { id: infoComponent; ZipFileInfo {} }
    SignalSpy { id: progressSpy; signalName: "progress" }
    SignalSpy { id: errorSpy; signalName: "error" }
    SignalSpy { id: completedSpy; signalName: "completed" }

    function init() {
        folder = TestSupport.makeFolder();
        TestSupport.writeText(folder + "/a.txt", "first\n");
        TestSupport.writeText(folder + "/b.json", '{"n": 5}');
        const writer = createTemporaryObject(writerComponent, testCase, { path: folder + "/x.zip" });
        verify(writer.addFile(folder + "/a.txt"));
        verify(writer.addFile(folder + "/b.json", "sub/b.json", "comment"));
    }

    function test_bindingsFollowThePath() {
        const reader = createTemporaryObject(readerComponent, testCase);
        const counter = createTemporaryQmlObject(
            "import QtQml 2.15; QtObject { property var zip; property int count: zip ? zip.fileNames.length : -1 }", testCase);
        counter.zip = reader;
        compare(counter.count, 0);
        reader.path = folder + "/x.zip";
        compare(counter.count, 2);
        compare(reader.folderNames, [ ".", "sub" ]);
    }

    function test_refreshUpdatesTheLists() {
        const reader = createTemporaryObject(readerComponent, testCase, { path: folder + "/x.zip" });
        const counter = createTemporaryQmlObject(
            "import QtQml 2.15; QtObject { property var zip; property int count: zip.fileNames.length }", testCase, "c");
        counter.zip = reader;
        compare(counter.count, 2);
        const writer = createTemporaryObject(writerComponent, testCase, { path: folder + "/x.zip" });
        verify(writer.addFile(folder + "/a.txt", "third.txt"));
        compare(counter.count, 2);
        reader.refresh();
        compare(counter.count, 3);
    }

    function test_isOpenIsOneCharacter() {
        const reader = createTemporaryObject(readerComponent, testCase, { path: folder + "/x.zip" });
        compare(reader.isOpen, "\u0000");
        verify(reader.exists("a.txt"));
        compare(reader.isOpen, "\u0001");
    }

    function test_readsTextAndJson() {
        const reader = createTemporaryObject(readerComponent, testCase, { path: folder + "/x.zip" });
        compare(reader.readTextFile("a.txt"), "first\n");
        compare(reader.readJsonFile("sub/b.json").n, 5);
    }

    function test_infoBelongsToTheScript() {
        const reader = createTemporaryObject(readerComponent, testCase, { path: folder + "/x.zip" });
        const info = reader.fileInfo("sub/b.json");
        compare(info.fileName, "b.json");
        compare(info.path, "sub");
        compare(info.suffix, "json");
        compare(info.size, 8);
        verify(info.compressedSize > 0);
        verify(Number(info.crc) > 0);
        verify(Math.abs(info.lastModified - new Date()) < 120000);
        compare(reader.fileInfo("none"), null);
    }

    function test_extractsWithSignals() {
        const reader = createTemporaryObject(readerComponent, testCase, { path: folder + "/x.zip" });
        progressSpy.target = reader;
        completedSpy.target = reader;
        verify(reader.extractAll(folder + "/out"));
        compare(completedSpy.count, 1);
        compare(TestSupport.readText(folder + "/out/sub/b.json"), '{"n": 5}');
        compare(progressSpy.signalArguments[progressSpy.count - 1][2], 100);
        verify(reader.extractAll(folder + "/base", "sub"));
        compare(TestSupport.readText(folder + "/base/b.json"), '{"n": 5}');
        verify(!TestSupport.exists(folder + "/base/a.txt"));
    }

    function test_handlersMayListAndLookUp() {
        const reader = createTemporaryQmlObject("
            import Zemrik.Tessaline 1.0

            ZipReader {
                property int listed
                property int calls

                onProgress: {
                    if (++calls > 100)
                        return;
                    listed += fileNames.length;
                    exists('x');
                    exists('a.txt');
                }
            }", testCase);
        reader.path = folder + "/x.zip";
        errorSpy.clear();
        errorSpy.target = reader;
        verify(reader.extractAll(folder + "/listed"));
        compare(errorSpy.count, 0);
        compare(reader.calls, 6);
        compare(reader.listed, 12);
        compare(TestSupport.readText(folder + "/listed/a.txt"), "first\n");
        compare(TestSupport.readText(folder + "/listed/sub/b.json"), '{"n": 5}');
    }

    function test_readingInAHandlerEndsTheEntry() {
        const reader = createTemporaryQmlObject("
            import Zemrik.Tessaline 1.0

            ZipReader {
                property string text
                property var failed: []

                onProgress: if (fileName === 'a.txt') text = readTextFile('sub/b.json')
                onError: failed.push(fileName, result)
            }", testCase);
        reader.path = folder + "/x.zip";
        verify(reader.extractAll(folder + "/nested"));
        compare(reader.text, '{"n": 5}');
        compare(reader.failed, [ "a.txt", ZipReader.ParameterError ]);
        compare(TestSupport.readText(folder + "/nested/sub/b.json"), '{"n": 5}');
    }

    function test_errorTellsTheResult() {
        TestSupport.writeHex(folder + "/bad.zip", damagedArchive);
        const reader = createTemporaryObject(readerComponent, testCase, { path: folder + "/bad.zip" });
        errorSpy.target = reader;
        let handled = 0;
        reader.error.connect((fileName, outputFileName, result) => { handled = result; });
        verify(reader.extractAll(folder + "/bad"));
        compare(errorSpy.count, 1);
        compare(errorSpy.signalArguments[0][0], "bad.bin");
        compare(errorSpy.signalArguments[0][1], folder + "/bad/bad.bin");
        compare(handled, -3);
    }

    function test_emptyInfoCanBeMade() {
        const info = createTemporaryObject(infoComponent, testCase);
        compare(info.size, 0);
        compare(info.filePath, "");
        verify(isNaN(info.lastModified.getTime()));
    }

    function test_resultCodes() {
        compare(ZipReader.EndOfListOfFile, -100);
        compare(ZipReader.ErrNo, -1);
        compare(ZipReader.EndOfFile, 0);
        compare(ZipReader.ParameterError, -102);
        compare(ZipReader.BadZipFile, -103);
        compare(ZipReader.InternalError, -104);
        compare(ZipReader.CrcError, -105);
    }
}
