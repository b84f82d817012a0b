import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0

// What shows: the background. App as the root of an applet's document is tested in tst_App.cpp.
Rectangle {
    id: window

    width: 40
    height: 40
    color: "#0000ff"

    Component {
        id: appComponent

        App {
            width: 20
            height: 20
        }
    }

    Component {
        id: colouredComponent

        App {
            width: 20
            height: 20
            fillColor: "#00ff00"

            Rectangle {
                width: 10
                height: 10
                color: "#ff0000"
            }
        }
    }

    TestCase {
        id: testCase

        name: "App"
        when: windowShown

        function test_backgroundIsWhite() {
            createTemporaryObject(appComponent, window);
            const image = grabImage(window);
            compare(image.pixel(0, 0), "#ffffff");
            compare(image.pixel(19, 19), "#ffffff");
            compare(image.pixel(20, 20), "#0000ff");
        }

        function test_backgroundIsTheFillColourBelowTheContent() {
            createTemporaryObject(colouredComponent, window);
            const image = grabImage(window);
            compare(image.pixel(5, 5), "#ff0000");
            compare(image.pixel(15, 15), "#00ff00");
        }

        function test_backButtonAction() {
            const app = createTemporaryObject(appComponent, testCase);
            compare([App.BackButtonQuit, App.BackButtonSignal, App.BackButtonIgnore], [0, 1, 2]);
            compare(app.backButtonAction, App.BackButtonQuit);
            app.backButtonAction = App.BackButtonSignal;
            compare(app.backButtonAction, App.BackButtonSignal);
        }

        function test_folderOfThisDocument() {
            const app = createTemporaryObject(appComponent, testCase);
            compare(app.folder.path, TestSupport.dataPath);
            verify(app.folder.fileExists("tst_App.qml"));
            ignoreWarning(/This is a read only folder/);
            verify(!app.folder.makePath("nothing"));
        }

        function test_constantsRefuseAScript_data() {
            return ["folder", "info", "settings", "dependencies", "arguments"]
                .map(name => ({ tag: name, name: name }));
        }

        function test_constantsRefuseAScript(row) {
            const app = createTemporaryObject(appComponent, testCase);
            let refused = false;
            try {
                app[row.name] = null;
            } catch (error) {
                refused = true;
            }
            verify(refused);
        }

        function test_dependencyOfNothingIsNull() {
            const app = createTemporaryObject(appComponent, testCase);
            compare(app.dependency("x"), null);
            compare(app.dependency("itemId", "x"), null);
            compare(app.dependencies.length, 0);
        }
    }
}
