import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase

    name: "FileInfo"

    property string folder

    Component {
        id: infoComponent

        FileInfo {
            id: info

            property string shown: exists + "|" + size + "|" + fileName + "|" + suffix
            property string place: path + "|" + folder.path
            property int shownPermissions: permissions
            property var signalOrder: []

            onFilePathChanged: signalOrder.push("filePath")
            onPermissionsChanged: signalOrder.push("permissions")
        }
    }

    function init() {
        folder = TestSupport.makeFolder();
        TestSupport.clearLog();
    }

    function makeInfo(path) {
        const info = createTemporaryObject(infoComponent, testCase, { filePath: path });
        info.signalOrder = [];
        return info;
    }

    function makeFile(name, text) {
        const path = folder + "/" + name;
        verify(TestSupport.writeText(path, text));
        return path;
    }

    function test_permissionsHaveTheFilesNumbers() {
        compare([FileInfo.ReadOwner, FileInfo.WriteOwner, FileInfo.ExeOwner, FileInfo.ReadUser,
                 FileInfo.WriteUser, FileInfo.ExeUser, FileInfo.ReadGroup, FileInfo.WriteGroup,
                 FileInfo.ExeGroup, FileInfo.ReadOther, FileInfo.WriteOther, FileInfo.ExeOther],
                [16384, 8192, 4096, 1024, 512, 256, 64, 32, 16, 4, 2, 1]);
    }

    function test_metadataOfAFile() {
        const before = new Date(Date.now() - 2000);
        const info = makeInfo(makeFile("archive.tar.gz", "12345"));
        compare(info.filePath, folder + "/archive.tar.gz");
        compare(info.url.toString(), "file://" + folder + "/archive.tar.gz");
        compare(info.exists, true);
        compare(info.size, 5);
        compare(info.path, folder);
        compare(info.fileName, "archive.tar.gz");
        compare(info.baseName, "archive");
        compare(info.suffix, "gz");
        verify(info.created >= before && info.created <= new Date(Date.now() + 2000), info.created);
        verify(info.lastModified >= before && info.lastModified <= new Date(Date.now() + 2000));
        compare(info.isFile, true);
        compare(info.isFolder, false);
        compare(info.isReadable, true);
        compare(info.isWritable, true);
        compare(info.isNativePath, true);
        compare(info.isSymLink, false);
        compare(info.symLinkTarget, "");
    }

    function test_metadataOfAFolder() {
        const info = makeInfo(folder);
        compare(info.exists, true);
        compare(info.isFile, false);
        compare(info.isFolder, true);
        compare(info.folder.path, TestSupport.home);
    }

    function test_metadataOfAResource() {
        const info = makeInfo(":/images/defaultThumbnail.png");
        compare(info.exists, true);
        compare(info.isNativePath, false);
        compare(info.isWritable, false);
        compare(info.url.toString(), "qrc:///images/defaultThumbnail.png");
        verify(info.size > 0);
    }

    function test_withoutAPath() {
        const info = createTemporaryObject(infoComponent, testCase);
        compare(info.filePath, "");
        compare(info.exists, false);
        compare(info.size, 0);
        compare(info.fileName, "");
        compare(info.permissions, 0);
    }

    function test_bindingsFollowThePath() {
        const info = makeInfo(makeFile("a.txt", "12345"));
        const other = makeFile("b.png", "123");
        compare(info.shown, "true|5|a.txt|txt");
        info.filePath = other;
        compare(info.shown, "true|3|b.png|png");
        info.url = "file://" + folder + "/none.md";
        compare(info.shown, "false|0|none.md|md");
        compare(info.signalOrder, ["filePath", "permissions", "filePath", "permissions"]);
    }

    function test_theSamePathEmitsNothing() {
        const info = makeInfo(makeFile("a.txt", "12345"));
        info.filePath = info.filePath;
        info.url = info.url;
        compare(info.signalOrder, []);
    }

    function test_pathVariablesAreResolved_data() {
        return [
            { tag: "home", value: "~/a.txt", expected: TestSupport.home + "/a.txt" },
            { tag: "variable", value: "$FILEINFO_TEST/a.txt", expected: "/some/where/a.txt" },
            { tag: "none", value: "a~b$c.txt", expected: "a~b$c.txt" },
        ];
    }

    function test_pathVariablesAreResolved(data) {
        TestSupport.setEnvironment("FILEINFO_TEST", "/some/where");
        compare(makeInfo(data.value).filePath, data.expected);
    }

    function test_existsKeepsItsAnswerUntilRefresh() {
        const path = folder + "/later.txt";
        const info = makeInfo(path);
        compare(info.exists, false);
        TestSupport.writeText(path, "12345");
        compare(info.exists, false);
        info.refresh();
        compare(info.signalOrder, ["filePath"]);
        compare(info.shown, "true|5|later.txt|txt");
        TestSupport.writeText(path, "1234567");
        compare(info.size, 5);
        TestSupport.remove(path);
        compare(info.exists, true);
        info.refresh();
        compare(info.shown, "false|0|later.txt|txt");
    }

    function test_folderIsOneObjectThatMoves() {
        TestSupport.mkpath(folder + "/sub");
        const info = makeInfo(makeFile("a.txt", ""));
        const first = info.folder;
        compare(first.path, folder);
        verify(info.folder === first);
        info.filePath = folder + "/sub/b.txt";
        verify(info.folder === first);
        compare(first.path, folder + "/sub");
        compare(info.place, folder + "/sub|" + folder + "/sub");
        info.url = "file://" + folder + "/c.txt";
        compare(first.path, folder);
        TestSupport.collectGarbage();
        compare(info.folder.path, folder);
    }

    function test_setPermissionsChangesTheFile() {
        const path = makeFile("a.txt", "");
        const info = makeInfo(path);
        compare(info.setPermissions(FileInfo.ReadOwner | FileInfo.WriteOwner), true);
        compare(info.signalOrder, ["permissions"]);
        // The user who asks owns the file, so the "user" bits come along.
        compare(info.permissions, FileInfo.ReadOwner | FileInfo.WriteOwner | FileInfo.ReadUser | FileInfo.WriteUser);
        compare(info.shownPermissions, info.permissions);
        info.permissions = FileInfo.ReadOwner | FileInfo.ReadGroup | FileInfo.ReadOther;
        compare(info.permissions & FileInfo.WriteOwner, 0);
        compare(info.shownPermissions & 0x77, 0x44);
        compare(info.signalOrder, ["permissions", "permissions"]);
    }

    function test_setPermissionsOfAMissingFileWarns() {
        const path = folder + "/none.txt";
        const info = makeInfo(path);
        compare(info.setPermissions(FileInfo.ReadOwner), false);
        compare(info.signalOrder, []);
        compare(TestSupport.logCount("warning", "Zemrik.Tessaline.File",
                "Unable to set permissions to 16384 on \""
                + path + "\""), 1);
    }

    function test_noFileHasExtendedProperties() {
        const info = makeInfo(makeFile("a.txt", ""));
        compare(info.setExtendedProperty("author", "x"), false);
        compare(info.hasExtendedProperty("author"), false);
        verify(info.getExtendedProperty("author") === undefined);
    }

    function test_namesAreTakenAsTheyAre_data() {
        return ["back\\slash", "new\nline", "\u00e4\u20ac\ud83d\ude00.txt", " space ", "%41", "#?&"]
            .map(name => ({ tag: encodeURIComponent(name), name: name }));
    }

    function test_namesAreTakenAsTheyAre(data) {
        const info = makeInfo(makeFile(data.name, "1"));
        compare(info.exists, true);
        compare(info.fileName, data.name);
        const again = createTemporaryObject(infoComponent, testCase, { url: info.url });
        compare(again.filePath, folder + "/" + data.name);
    }
}
