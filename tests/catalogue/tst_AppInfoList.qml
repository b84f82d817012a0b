import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

TestCase {
    id: testCase

    name: "AppInfoList"

    readonly property string root: TestSupport.home + "/Zemrik/Halvora"

    Component {
        id: listComponent

        AppInfoList {}
    }

    Component {
        id: boundComponent

        QtObject {
            property AppInfoList list: AppInfoList { searchPaths: ["/one", "/two"] }
            property string paths: list.searchPaths.join("|")
        }
    }

    function test_enumValues() {
        compare([AppInfoList.Apps, AppInfoList.Templates, AppInfoList.Tools, AppInfoList.Data,
                 AppInfoList.Modules, AppInfoList.Settings], [0, 1, 2, 3, 4, 5]);
        compare([AppInfoList.Ascending, AppInfoList.Descending], [0, 1]);
    }

    function test_folderPaths_data() {
        return [
            { tag: "apps", type: AppInfoList.Apps, name: "Apps", made: true },
            { tag: "templates", type: AppInfoList.Templates, name: "Templates", made: false },
            { tag: "tools", type: AppInfoList.Tools, name: "Toolbox", made: false },
            { tag: "data", type: AppInfoList.Data, name: "Data", made: true },
            { tag: "modules", type: AppInfoList.Modules, name: "Modules", made: true },
            { tag: "settings", type: AppInfoList.Settings, name: "Settings", made: true }
        ];
    }

    function test_folderPaths(row) {
        const list = createTemporaryObject(listComponent, testCase);
        compare(list.folderPath(row.type), root + "/" + row.name);
        compare(TestSupport.exists(root + "/" + row.name), row.made);
    }

    function test_folderPathOfAnUnknownType() {
        const list = createTemporaryObject(listComponent, testCase);
        compare(list.folderPath(99), ".");
    }

    function test_dataPath() {
        const list = createTemporaryObject(listComponent, testCase);
        compare(list.dataPath, root + "/Data");
        verify(TestSupport.exists(list.dataPath));
        verify(TestSupport.exists(root + "/.cache/packages"));
    }

    function test_searchPathsAreBound() {
        const bound = createTemporaryObject(boundComponent, testCase);
        compare(bound.paths, "/one|/two");
        compare(bound.list.folderPath(AppInfoList.Apps), "/one");
        bound.list.searchPaths = ["/three"];
        compare(bound.paths, "/three");
        bound.list.searchPaths = [];
        compare(bound.paths, root + "/Apps");
    }
}
