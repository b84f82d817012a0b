import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase
    name: "StorageInfo"

    Component {
        id: root
        StorageInfo {}
    }

    Component {
        id: processes
        StorageInfo {
            property string boundType: fileSystemType
            property string boundFolder: folder.path
            path: "/proc/self"
        }
    }

    Component {
        id: byUrl
        StorageInfo { url: "file:///proc/self" }
    }

    Component {
        id: home
        StorageInfo { path: "~/" }
    }

    SignalSpy {
        id: spy
    }

    function test_withoutAPathIsTheRootVolume() {
        var info = createTemporaryObject(root, testCase);
        compare(info.path, "/");
        compare(info.url.toString(), "file:///");
        compare(info.isRoot, true);
        compare(info.isValid, true);
        compare(info.isReady, true);
        verify(info.bytesTotal > 0);
        verify(info.bytesFree <= info.bytesTotal);
        verify(info.bytesAvailable <= info.bytesFree);
        verify(info.device !== "");
        verify(info.displayName !== "");
        verify(info.fileSystemType !== "");
        compare(typeof info.name, "string");
        compare(typeof info.isReadOnly, "boolean");
    }

    function test_pathReadsBackTheVolumesTop() {
        compare(createTemporaryObject(processes, testCase).path, "/proc");
        compare(createTemporaryObject(byUrl, testCase).path, "/proc");
        compare(createTemporaryObject(byUrl, testCase).url.toString(), "file:///proc");
        compare(createTemporaryObject(home, testCase).isValid, true);
    }

    function test_bindingsFollowThePath() {
        var info = createTemporaryObject(processes, testCase);
        compare(info.boundType, "proc");
        compare(info.boundFolder, "/proc");
        info.path = "/";
        verify(info.boundType !== "proc");
        compare(info.boundFolder, "/");
        info.url = "file:///proc/self";
        compare(info.boundType, "proc");
        compare(info.boundFolder, "/proc");
    }

    function test_folderIsTheSameUntilThePathChanges() {
        var info = createTemporaryObject(root, testCase);
        var folder = info.folder;
        verify(folder instanceof FileFolder);
        verify(info.folder === folder);
        info.path = "/proc";
        verify(info.folder !== folder);
        compare(info.folder.path, "/proc");
    }

    function test_refreshNotifiesTheVolumesOnly() {
        var info = createTemporaryObject(root, testCase);
        spy.target = info;
        spy.signalName = "mountedVolumesChanged";
        spy.clear();
        info.refresh();
        compare(spy.count, 1);
        spy.signalName = "pathChanged";
        spy.clear();
        info.refresh();
        compare(spy.count, 0);
        spy.target = null;
    }

    function test_mountedVolumes() {
        var info = createTemporaryObject(root, testCase);
        verify(info.mountedVolumes.length > 0);
        var paths = [];
        for (var i = 0; i < info.mountedVolumes.length; ++i)
            paths.push(info.mountedVolumes[i].path);
        verify(paths.indexOf("/") >= 0);
        verify(info.mountedVolumes[0] instanceof StorageInfo);
        verify(info.mountedVolumes[0] !== info.mountedVolumes[0]);
        compare(info.mountedVolumes[0].path, info.mountedVolumes[0].path);
    }

    function test_volumesLastAsLongAsAScriptHoldsThem() {
        var info = createTemporaryObject(root, testCase);
        var volume = info.mountedVolumes[0];
        var path = volume.path;
        for (var i = 0; i < 100; ++i)
            info.mountedVolumes[0];
        TestSupport.collectGarbage();
        compare(volume.path, path);
    }

    function test_invalidPath() {
        var info = createTemporaryObject(root, testCase);
        info.path = "/no/such/path";
        compare(info.isValid, false);
        compare(info.isRoot, false);
    }

    function test_readOnlyProperties_data() {
        return ["folder", "bytesAvailable", "bytesFree", "bytesTotal", "device", "displayName",
                "fileSystemType", "isReadOnly", "isReady", "isRoot", "isValid", "name"]
            .map(function(name) { return { tag: name }; });
    }

    function test_readOnlyProperties(data) {
        var info = createTemporaryObject(root, testCase);
        var thrown = false;
        try {
            info[data.tag] = null;
        } catch (error) {
            thrown = true;
        }
        verify(thrown);
    }
}
