import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase

    name: "FileFolder"

    property string root

    Component {
        id: folderComponent

        FileFolder {
            id: folder

            property string shown: path + "|" + folderName + "|" + exists
            property string shownUrl: url
            property bool showsSize: true
            property double shownSize: showsSize ? size : 0
            property var signalOrder: []
            property double sizeAtPathChange

            onPathChanged: {
                signalOrder.push("path");
                sizeAtPathChange = showsSize ? size : 0;
            }
            onExistsChanged: signalOrder.push("exists")
            onSizeChanged: signalOrder.push("size")
        }
    }

    function init() {
        root = TestSupport.makeFolder();
        TestSupport.clearLog();
    }

    function makeFolder(path) {
        const folder = createTemporaryObject(folderComponent, testCase, { path: path || root });
        folder.signalOrder = [];
        return folder;
    }

    // A folder with files a.txt, b.png, sub/c.txt, sub/deep/d.txt, sub.txt/e.txt, .hidden
    function makeTree() {
        const files = { "a.txt": "1", "b.png": "22", "sub/c.txt": "333", "sub/deep/d.txt": "4444",
                        "sub.txt/e.txt": "55555", ".hidden": "666666" };
        for (const name in files) {
            const path = root + "/" + name;
            TestSupport.mkpath(path.substring(0, path.lastIndexOf("/")));
            verify(TestSupport.writeText(path, files[name]));
        }
        return makeFolder();
    }

    function write(name, text) {
        verify(TestSupport.writeText(root + "/" + name, text));
    }

    function read(name) {
        return TestSupport.readText(root + "/" + name);
    }

    function exists(name) {
        return TestSupport.exists(root + "/" + name);
    }

    function logged(level, words) {
        return TestSupport.logCount(level, "Zemrik.Tessaline.File", words);
    }

    // Location

    function test_withoutAPathItIsTheTemporaryFolder() {
        const folder = createTemporaryObject(folderComponent, testCase);
        compare(folder.path, Tessaline.temporaryFolder ? Tessaline.temporaryFolder.path : "/tmp");
        compare(folder.exists, true);
    }

    function test_bindingsFollowThePath() {
        write("a.txt", "12345");
        const folder = makeFolder(TestSupport.home + "/none");
        compare(folder.shown, TestSupport.home + "/none|none|false");
        compare(folder.shownSize, 0);
        folder.path = root;
        compare(folder.shown, root + "|" + root.substring(root.lastIndexOf("/") + 1) + "|true");
        compare(folder.shownUrl, "file://" + root);
        compare(folder.shownSize, 5);
        compare(folder.signalOrder, ["path", "exists", "size"]);
    }

    function test_urlMovesTheFolder() {
        const folder = makeFolder();
        folder.url = "file://" + TestSupport.home;
        compare(folder.path, TestSupport.home);
        folder.url = "qrc:/images";
        compare(folder.path, ":/images");
        compare(folder.url.toString(), "qrc:///images");
        compare(folder.exists, true);
        compare(folder.fileNames("*.png"), ["defaultThumbnail.png"]);
    }

    function test_theSamePathEmitsNothing_data() {
        return [
            { tag: "as it is", path: () => root },
            { tag: "by a variable", path: () => "~" + root.substring(TestSupport.home.length) },
        ];
    }

    function test_theSamePathEmitsNothing(data) {
        const folder = makeFolder();
        folder.path = data.path();
        folder.url = folder.url;
        compare(folder.signalOrder, []);
    }

    function test_pathVariablesAreResolved() {
        TestSupport.setEnvironment("FOLDER_TEST", root);
        compare(makeFolder("~/x").path, TestSupport.home + "/x");
        compare(makeFolder("$FOLDER_TEST/x").path, root + "/x");
        compare(createTemporaryObject(folderComponent, testCase, { url: "file:///a/b" }).path, "/a/b");
    }

    function test_cdMovesToWhatIsThere() {
        TestSupport.mkpath(root + "/sub/deep");
        const folder = makeFolder();
        compare(folder.cd("sub/deep"), true);
        compare(folder.path, root + "/sub/deep");
        compare(folder.signalOrder, ["path", "exists", "size"]);
        compare(folder.cdUp(), true);
        compare(folder.path, root + "/sub");
        compare(folder.cd("none"), false);
        compare(folder.path, root + "/sub");
        compare(folder.signalOrder.length, 6);
        compare(folder.cd(TestSupport.home), true);
        compare(folder.path, TestSupport.home);
    }

    function test_cdUpOfTheRootStays() {
        const folder = createTemporaryObject(folderComponent, testCase, { showsSize: false, path: "/" });
        folder.signalOrder = [];
        compare(folder.cdUp(), false);
        compare(folder.signalOrder, []);
    }

    // Listing

    function test_names_data() {
        return [
            { tag: "direct files", files: [], expected: ["a.txt", "b.png"] },
            { tag: "direct files of a pattern", files: ["*.txt"], expected: ["a.txt"] },
            { tag: "single characters", files: ["?.png"], expected: ["b.png"] },
            { tag: "list of patterns", files: [["*.png", "a*"]], expected: ["a.txt", "b.png"] },
            { tag: "empty list", files: [[]], expected: ["a.txt", "b.png"] },
            { tag: "nothing matches", files: ["*.md"], expected: [] },
            { tag: "empty pattern", files: [""], expected: [] },
            { tag: "all files", files: ["*", true],
              expected: ["a.txt", "b.png", "sub/c.txt", "sub/deep/d.txt", "sub.txt/e.txt"] },
            { tag: "only folders that match are walked", files: ["*.txt", true],
              expected: ["a.txt", "sub.txt/e.txt"] },
            { tag: "list with folders", files: [["*.txt", "sub"], true],
              expected: ["a.txt", "sub/c.txt", "sub.txt/e.txt"] },
            { tag: "direct folders", folders: [], expected: ["sub", "sub.txt"] },
            { tag: "folders of a pattern", folders: ["*.txt"], expected: ["sub.txt"] },
            { tag: "list of folder patterns", folders: [["s*", "x"]], expected: ["sub", "sub.txt"] },
            { tag: "all folders", folders: ["*", true], expected: ["sub", "sub/deep", "sub.txt"] },
            { tag: "folders below matching ones", folders: ["sub*", true], expected: ["sub", "sub.txt"] },
        ];
    }

    function test_names(data) {
        const folder = makeTree();
        if (data.files)
            compare(folder.fileNames.apply(folder, data.files), data.expected);
        else
            compare(folder.folderNames.apply(folder, data.folders), data.expected);
    }

    function test_namesAreSortedWithCase() {
        ["b", "A", "a", "B", "\u00e4", "10", "9"].forEach(name => write(name, ""));
        compare(makeFolder().fileNames(), ["10", "9", "A", "B", "a", "b", "\u00e4"]);
    }

    function test_namesOfAMissingFolderAreNone() {
        const folder = makeFolder(root + "/none");
        compare(folder.fileNames("*", true), []);
        compare(folder.folderNames("*", true), []);
    }

    function test_namesAreTakenAsTheyAre_data() {
        return ["back\\slash", "new\nline", "\u00e4\u20ac\ud83d\ude00", " space ", "%41", "#?&", "-rf", "~", "$HOME"]
            .map(name => ({ tag: encodeURIComponent(name), name: name }));
    }

    function test_namesAreTakenAsTheyAre(data) {
        const folder = makeFolder();
        compare(folder.writeTextFile(data.name, "content"), true);
        compare(folder.fileNames(), [data.name]);
        compare(folder.filePath(data.name), root + "/" + data.name);
        compare(folder.fileExists(data.name), true);
        compare(folder.readTextFile(data.name), "content");
        compare(folder.fileInfo(data.name).size, 7);
        const byUrl = Qt.createQmlObject("import Zemrik.Tessaline 1.0; FileInfo {}", testCase);
        byUrl.url = folder.fileUrl(data.name);
        compare(byUrl.fileName, data.name);
        compare(folder.makePath(data.name + ".d/x"), true);
        compare(folder.folderNames("*", true), [data.name + ".d", data.name + ".d/x"]);
        compare(folder.renameFile(data.name, data.name + ".2"), true);
        compare(folder.removeFile(data.name + ".2"), true);
        compare(folder.fileNames(), []);
        byUrl.destroy();
    }

    // Paths and URLs

    function test_filePathIsAbsoluteAndClean_data() {
        return [
            { tag: "name", name: "a.txt", expected: "/a.txt" },
            { tag: "steps", name: "x/.././a.txt", expected: "/a.txt" },
            { tag: "empty", name: "", expected: "" },
            { tag: "no variables", name: "~/a.txt", expected: "/~/a.txt" },
        ];
    }

    function test_filePathIsAbsoluteAndClean(data) {
        compare(makeFolder().filePath(data.name), root + data.expected);
        compare(makeFolder().filePath("/etc//hosts"), "/etc/hosts");
    }

    function test_relativeFilePath() {
        compare(makeFolder().relativeFilePath(root + "/sub/a.txt"), "sub/a.txt");
        compare(makeFolder(root + "/x").relativeFilePath(root + "/a.txt"), "../a.txt");
    }

    function test_fileUrl_data() {
        return [
            { tag: "file", path: "/a", name: "b c.txt", expected: "file:///a/b c.txt" },
            { tag: "resource", path: ":/a", name: "b.txt", expected: "qrc:/a/b.txt" },
        ];
    }

    function test_fileUrl(data) {
        compare(makeFolder(data.path).fileUrl(data.name).toString(), data.expected);
    }

    // Making and removing

    function test_makeFolderMakesParentsToo() {
        const folder = makeFolder(root + "/x/y/z");
        compare(folder.shown, root + "/x/y/z|z|false");
        compare(folder.makeFolder(), true);
        compare(folder.signalOrder, ["exists"]);
        compare(folder.shown, root + "/x/y/z|z|true");
        compare(exists("x/y/z"), true);
        compare(folder.makeFolder(), true);
        compare(folder.signalOrder, ["exists"]);
    }

    function test_makeFolderThatFailsWarns() {
        write("file", "");
        const folder = makeFolder(root + "/file/x");
        compare(folder.makeFolder(), false);
        compare(folder.signalOrder, []);
        compare(logged("warning", "bool FileFolder::makeFolder() Error creating: QDir( \"" + root + "/file\""), 1);
        compare(logged("warning", "\"x\""), 1);
    }

    function test_withoutAPathNothingIsMadeOrRemoved() {
        const folder = makeFolder();
        folder.path = "";
        compare(folder.path, "");
        compare(folder.makeFolder(), false);
        compare(logged("warning", "bool FileFolder::makeFolder() No path"), 1);
        compare(folder.removeFolder(), false);
        compare(logged("warning", "bool FileFolder::removeFolder() No path"), 1);
        // To Qt an empty path may also mean the working folder of the process.
        compare(folder.removeFolder("", false), false);
        compare(logged("warning", "bool FileFolder::removeFolder(const QString&, bool) No path"), 1);
        compare(folder.fileNames("*", true), []);
        compare(folder.size, 0);
        compare(folder.exists, false);
    }

    function test_removeFolderTakesEverything() {
        const folder = makeTree();
        compare(folder.removeFolder(), true);
        compare(TestSupport.exists(root), false);
        compare(folder.signalOrder, ["exists", "size"]);
        verify(folder.shown.endsWith("|false"));
        compare(logged("debug", "bool FileFolder::removeFolder() \"" + root + "\""), 1);
    }

    function test_removeFolderOfNothingIsSilent() {
        const folder = makeFolder(root + "/none");
        compare(folder.removeFolder(), true);
        compare(folder.signalOrder, []);
    }

    function test_removeSubfolder_data() {
        return [
            { tag: "full", name: "sub", recursive: false, expected: false, left: true },
            { tag: "full, recursive", name: "sub", recursive: true, expected: true, left: false },
            { tag: "empty", name: "sub/empty", recursive: false, expected: true, left: false },
        ];
    }

    function test_removeSubfolder(data) {
        const folder = makeTree();
        TestSupport.mkpath(root + "/sub/empty");
        compare(folder.removeFolder(data.name, data.recursive), data.expected);
        compare(exists(data.name), data.left);
        compare(folder.signalOrder, []);
        compare(logged("debug", "bool FileFolder::removeFolder(const QString&, bool) \"" + root + "/"
                       + data.name + "\" " + data.recursive + " \"" + data.name + "\""), 1);
    }

    function test_removeSubfolderThatIsMissing() {
        const folder = makeFolder();
        compare(folder.removeFolder("none"), true);
        compare(folder.removeFolder("none", true), true);
        compare(logged("debug", "removeFolder"), 0);
    }

    function test_removeSubfolderIsNotRecursiveUnlessToldSo() {
        const folder = makeTree();
        compare(folder.removeFolder("sub"), false);
        compare(exists("sub/deep/d.txt"), true);
    }

    function test_makePathAndRemovePath() {
        const folder = makeFolder();
        compare(folder.makePath("x/y/z"), true);
        compare(exists("x/y/z"), true);
        compare(folder.makePath("x/y/z"), true);
        write("x/file", "");
        // Goes up as far as the folders are empty.
        compare(folder.removePath("x/y/z"), true);
        compare(exists("x/y"), false);
        compare(exists("x"), true);
        compare(folder.signalOrder, []);
    }

    function test_makePathAndRemovePathThatFailWarn() {
        write("file", "");
        const folder = makeFolder();
        compare(folder.makePath("file/x"), false);
        compare(logged("warning", "bool FileFolder::makePath(const QString&) const Error creating: \"file/x\""), 1);
        compare(folder.removePath("none"), false);
        compare(logged("warning", "bool FileFolder::removePath(const QString&) const Error removing: \"none\""), 1);
    }

    // Files

    function test_fileExists() {
        const folder = makeTree();
        compare(folder.fileExists("a.txt"), true);
        compare(folder.fileExists("sub"), true);
        compare(folder.fileExists("sub/c.txt"), true);
        compare(folder.fileExists("none"), false);
    }

    function test_removeFile() {
        const folder = makeTree();
        compare(folder.removeFile("a.txt"), true);
        compare(exists("a.txt"), false);
        compare(folder.removeFile("a.txt"), true);
        compare(folder.removeFile("sub"), false);
        compare(exists("sub/c.txt"), true);
    }

    function test_renameFile() {
        const folder = makeTree();
        compare(folder.renameFile("a.txt", "sub/z.txt"), true);
        compare(exists("a.txt"), false);
        compare(read("sub/z.txt"), "1");
    }

    function test_renameFileThatFailsWarns_data() {
        return [
            { tag: "missing", from: "none", to: "z" },
            { tag: "target exists", from: "a.txt", to: "b.png" },
        ];
    }

    function test_renameFileThatFailsWarns(data) {
        const folder = makeTree();
        compare(folder.renameFile(data.from, data.to), false);
        compare(read("b.png"), "22");
        const words = "bool FileFolder::renameFile(const QString&, const QString&) dir: QDir( \"" + root + "\"";
        compare(logged("warning", words), 1);
        compare(logged("warning", "oldFileName: \"" + data.from + "\" newFileName: \"" + data.to + "\""), 1);
    }

    function test_copyFileCopiesToAPathOfItsOwn() {
        const folder = makeTree();
        compare(folder.copyFile("a.txt", root + "/sub/copy.txt"), true);
        compare(read("sub/copy.txt"), "1");
        compare(read("a.txt"), "1");
        TestSupport.setEnvironment("COPY_TEST", root);
        compare(folder.copyFile("b.png", "$COPY_TEST/c.png"), true);
        compare(read("c.png"), "22");
        compare(folder.signalOrder, []);
    }

    function test_copyFileThatFailsSaysWhy_data() {
        return [
            { tag: "missing", name: "none", target: "z", level: "critical", words: "File doesn't exist: \"%1/none\"" },
            { tag: "target exists", name: "a.txt", target: "b.png", level: "critical", words: "Target file already exists: \"%1/b.png\"" },
            { tag: "no folder for it", name: "a.txt", target: "none/z", level: "warning", words: "File copy failed:  \"%1/a.txt\" to \"%1/none/z\"" },
        ];
    }

    function test_copyFileThatFailsSaysWhy(data) {
        const folder = makeTree();
        compare(folder.copyFile(data.name, root + "/" + data.target), false);
        compare(logged(data.level, "bool FileFolder::copyFile(const QString&, const QString&) "
                       + data.words.replace(/%1/g, root)), 1);
        compare(read("b.png"), "22");
    }

    function test_copyFileOfAFolderCopiesAllOfIt() {
        const folder = makeTree();
        compare(folder.copyFile("sub", root + "/x/y"), true);
        const copy = makeFolder(root + "/x/y");
        compare(copy.fileNames("*", true), ["c.txt", "deep/d.txt"]);
        compare(read("x/y/deep/d.txt"), "4444");
    }

    function test_copyFileOfAFolderTakesHiddenFiles() {
        const folder = makeTree();
        const target = TestSupport.makeFolder();
        compare(folder.copyFile(".", target), true);
        compare(TestSupport.readText(target + "/.hidden"), "666666");
        compare(makeFolder(target).size, folder.size);
    }

    function test_copyFileMergesFoldersUntilAFileIsInTheWay() {
        const folder = makeTree();
        TestSupport.mkpath(root + "/target/deep");
        write("target/other.txt", "other");
        compare(folder.copyFile("sub", root + "/target"), true);
        compare(makeFolder(root + "/target").fileNames("*", true), ["c.txt", "deep/d.txt", "other.txt"]);

        TestSupport.clearLog();
        compare(folder.copyFile("sub", root + "/target"), false);
        compare(logged("critical", "Target file already exists:"), 1);
        compare(logged("critical", "bool FileFolder::copyFolder(const QString&, const QString&) copyFile failed:"), 1);
        compare(read("target/other.txt"), "other");
    }

    function test_copyFileOfAFolderIntoItselfIsRefused_data() {
        return [
            { tag: "below", target: "sub/copy" },
            { tag: "far below", target: "sub/deep/a/b/c" },
            { tag: "by steps", target: "x/../sub/copy" },
        ];
    }

    function test_copyFileOfAFolderIntoItselfIsRefused(data) {
        const folder = makeTree();
        compare(folder.copyFile("sub", root + "/" + data.target), false);
        compare(logged("critical", "Folder copied into itself:"), 1);
        compare(makeFolder(root + "/sub").fileNames("*", true), ["c.txt", "deep/d.txt"]);
        compare(makeFolder(root + "/sub").folderNames("*", true), ["deep"]);
    }

    function test_copyFileOfAFolderBesideItselfWithItsNameInFront() {
        compare(makeTree().copyFile("sub", root + "/sub2"), true);
        compare(read("sub2/deep/d.txt"), "4444");
    }

    function test_copyFileOfAFolderToNoPathIsRefused() {
        compare(makeTree().copyFile("sub", ""), false);
        compare(logged("critical", "mkpath failed:"), 1);
    }

    function test_objectsOfTheFolderAreNewAndTheScripts() {
        const folder = makeTree();
        const file = folder.file("a.txt");
        compare(file.path, root + "/a.txt");
        verify(folder.file("a.txt") !== file);
        verify(file.open());
        compare(file.readLine(), "1");
        file.close();
        compare(folder.fileInfo("sub/c.txt").size, 3);
        compare(folder.fileInfo("sub/c.txt").folder.path, root + "/sub");
        compare(folder.folder("sub").fileNames(), ["c.txt"]);
        compare(folder.folder("sub/..").path, root);
        TestSupport.collectGarbage();
        compare(file.path, root + "/a.txt");
    }

    // Whole files

    function test_bytesRoundTrip() {
        const folder = makeFolder();
        TestSupport.writeHex(root + "/a.bin", "00ff800a0d41");
        const bytes = folder.readFile("a.bin");
        compare(bytes.byteLength, 6);
        compare(Array.from(new Uint8Array(bytes)), [0, 255, 128, 10, 13, 65]);
        compare(folder.writeFile("b.bin", bytes), true);
        compare(TestSupport.readHex(root + "/b.bin"), "00ff800a0d41");
        compare(folder.readFile("none").byteLength, 0);
    }

    function test_writeFileTakesTypedArrays_data() {
        const buffer = new Uint8Array([64, 65, 66, 67, 68]).buffer;
        return [
            { tag: "bytes", content: new Uint8Array([65, 66]), expected: "AB" },
            { tag: "words", content: new Uint16Array([0x4241]), expected: "AB" },
            { tag: "part of a buffer", content: new Uint8Array(buffer, 1, 2), expected: "AB" },
            { tag: "view", content: new DataView(buffer, 3), expected: "CD" },
            { tag: "none", content: new Uint8Array(0), expected: "" },
        ];
    }

    function test_writeFileTakesTypedArrays(data) {
        const folder = makeTree();
        compare(folder.writeFile("a.txt", data.content), true);
        compare(read("a.txt"), data.expected);
    }

    function test_writeFileOfWhatHasNoBytesEmptiesTheFile_data() {
        return [
            { tag: "undefined", content: undefined },
            { tag: "null", content: null },
            { tag: "object", content: { a: 1 } },
            { tag: "list", content: [65, 66] },
        ];
    }

    function test_writeFileOfWhatHasNoBytesEmptiesTheFile(data) {
        const folder = makeTree();
        compare(folder.writeFile("a.txt", data.content), true);
        compare(exists("a.txt"), true);
        compare(read("a.txt"), "");
    }

    function text(bytes) {
        return String.fromCharCode.apply(null, Array.from(new Uint8Array(bytes)));
    }

    function test_readFileEncodes_data() {
        return [
            { tag: "base64", option: "base64", expected: "AP9B" },
            { tag: "case", option: "BASE64", expected: "AP9B" },
            { tag: "hex", option: "hex", expected: "00ff41" },
            { tag: "Hex", option: "Hex", expected: "00ff41" },
            { tag: "unknown", option: "rot13", expected: "\u0000\u00ffA" },
            { tag: "empty", option: "", expected: "\u0000\u00ffA" },
        ];
    }

    function test_readFileEncodes(data) {
        TestSupport.writeHex(root + "/a.bin", "00ff41");
        compare(text(makeFolder().readFile("a.bin", { encode: data.option })), data.expected);
    }

    function test_writeFileDecodes_data() {
        return [
            { tag: "base64", option: "base64", content: "AP9B", expected: "00ff41" },
            { tag: "BASE64", option: "BASE64", content: "AP9B", expected: "00ff41" },
            { tag: "hex", option: "hex", content: "00FF41", expected: "00ff41" },
            { tag: "Hex", option: "hEx", content: "00ff41", expected: "00ff41" },
            { tag: "unknown", option: "rot13", content: "AP9B", expected: "41503942" },
            { tag: "text", content: "\u00e4\u20ac", expected: "c3a4e282ac" },
            { tag: "empty", content: "", expected: "" },
        ];
    }

    function test_writeFileDecodes(data) {
        const folder = makeFolder();
        compare(folder.writeFile("a.bin", data.content, data.option ? { decode: data.option } : {}), true);
        compare(exists("a.bin"), true);
        compare(TestSupport.readHex(root + "/a.bin"), data.expected);
    }

    function test_writeFileReplacesTheContent() {
        const folder = makeFolder();
        write("a.txt", "a long content");
        compare(folder.writeFile("a.txt", "short"), true);
        compare(read("a.txt"), "short");
    }

    function test_textFiles() {
        const folder = makeFolder();
        compare(folder.writeTextFile("a.txt", "\u00e4\u20ac\n"), true);
        compare(TestSupport.readHex(root + "/a.txt"), "c3a4e282ac0a");
        compare(folder.readTextFile("a.txt"), "\u00e4\u20ac\n");
        compare(folder.readTextFile("none"), "");
    }

    function test_jsonFiles() {
        const folder = makeFolder();
        const value = { text: "\u00e4", number: 1.5, list: [1, "two", { three: 3 }], yes: true };
        compare(folder.writeJsonFile("a.json", value), true);
        compare(JSON.parse(read("a.json")), value);
        compare(folder.readJsonFile("a.json"), value);
        compare(folder.readJsonFile("none"), {});
        write("broken.json", "{ \"a\": ");
        compare(folder.readJsonFile("broken.json"), {});
    }

    function test_writingCallsTellThatTheDiskIsFull_data() {
        return [
            { tag: "writeFile", write: folder => folder.writeFile("full", "text") },
            { tag: "writeFile with a lot", write: folder => folder.writeFile("full", "x".repeat(100000)) },
            { tag: "writeFile decoded", write: folder => folder.writeFile("full", "AP9B", { decode: "base64" }) },
            { tag: "writeTextFile", write: folder => folder.writeTextFile("full", "text") },
            { tag: "writeJsonFile", write: folder => folder.writeJsonFile("full", { a: 1 }) },
        ];
    }

    function test_writingCallsTellThatTheDiskIsFull(data) {
        compare(data.write(makeFolder("/dev")), false);
    }

    function test_writingIntoAMissingFolderFails() {
        const folder = makeFolder(root + "/none");
        compare(folder.writeFile("a", "text"), false);
        compare(folder.writeTextFile("a", "text"), false);
        compare(folder.writeJsonFile("a", {}), false);
        compare(exists("none"), false);
    }

    function test_settingsFile_data() {
        return [
            { tag: "by name", name: "my.ini", file: "my.ini" },
            { tag: "without a name", name: "", file: "settings.ini" },
        ];
    }

    function test_settingsFile(data) {
        const settings = makeFolder().settingsFile(data.name);
        compare(settings.path, root + "/" + data.file);
        settings.setValue("group/key", "value");
        settings.synchronize();
        compare(read(data.file), "[group]\nkey=value\n");
        verify(makeFolder().settingsFile(data.name) !== settings);
    }

    // Size

    function test_sizeCountsAllFilesOnce() {
        const folder = makeTree();
        compare(folder.size, 1 + 2 + 3 + 4 + 5 + 6);
        compare(makeFolder(root + "/none").size, 0);
    }

    function test_sizeIsKeptUntilRefresh() {
        const folder = makeTree();
        compare(folder.shownSize, 21);
        folder.writeTextFile("more.txt", "7777777");
        compare(folder.size, 21);
        folder.refresh();
        compare(folder.signalOrder, ["exists", "size"]);
        compare(folder.shownSize, 28);
    }

    function test_sizeIsDroppedByAPathChange() {
        const folder = makeTree();
        compare(folder.shownSize, 21);
        folder.cd("sub");
        compare(folder.shownSize, 7);
        folder.writeTextFile("more.txt", "7777777");
        folder.cdUp();
        compare(folder.shownSize, 28);
    }

    function test_sizeIsTheNewFoldersInAPathHandler() {
        const folder = makeTree();
        compare(folder.size, 21);
        folder.path = root + "/sub";
        compare(folder.sizeAtPathChange, 7);
    }

    function test_refreshUpdatesExists() {
        const folder = makeFolder(root + "/later");
        verify(folder.shown.endsWith("false"));
        TestSupport.mkpath(root + "/later");
        folder.refresh();
        verify(folder.shown.endsWith("true"));
    }

    // The guards

    function test_scriptsCannotReachTheGuards() {
        const folder = makeFolder();
        verify(folder.setReadOnly === undefined);
        verify(folder.setConstant === undefined);
        verify(folder.isReadOnly === undefined);
        verify(folder.readOnly === undefined);
        verify(folder.constant === undefined);
        verify(folder.copyFolder === undefined);
    }
}
