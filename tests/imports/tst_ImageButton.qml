import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Controls 1.0

Rectangle {
    id: scene

    width: 200
    height: 200
    color: "white"

    // A black square.
    readonly property string picture: "data:image/svg+xml,<svg xmlns='http://www.w3.org/2000/svg' width='32' height='32'><rect width='32' height='32'/></svg>"

    Component {
        id: bareComponent

        ImageButton {}
    }

    Component {
        id: buttonComponent

        ImageButton {
            x: 80; y: 80; width: 40; height: 40
            source: scene.picture
        }
    }

    SignalSpy { id: clicked; signalName: "clicked" }
    SignalSpy { id: doubleClicked; signalName: "doubleClicked" }
    SignalSpy { id: pressAndHold; signalName: "pressAndHold" }

    TestCase {
        name: "ImageButton"
        when: windowShown

        property ImageButton button

        function init() {
            mouseMove(scene, 5, 5);
            button = createTemporaryObject(buttonComponent, scene);
            for (const spy of [ clicked, doubleClicked, pressAndHold ]) {
                spy.target = button;
                spy.clear();
            }
            tryCompare(button.image, "status", Image.Ready);
            TestSupport.clearLog();
        }

        function cleanup() {
            for (const spy of [ clicked, doubleClicked, pressAndHold ])
                spy.target = null;
            compare(TestSupport.logProblems(), []);
        }

        function counts() {
            return [ clicked.count, doubleClicked.count, pressAndHold.count ];
        }

        // Beside the button, where only the glow is.
        function glowPixel() {
            return grabImage(scene).pixel(77, 100);
        }

        function near(a, b) {
            const c = Qt.darker(a, 1);
            const d = Qt.darker(b, 1);
            return Math.abs(c.r - d.r) < 0.12 && Math.abs(c.g - d.g) < 0.12 && Math.abs(c.b - d.b) < 0.12;
        }

        function test_defaults() {
            const bare = createTemporaryObject(bareComponent, scene);
            compare([ bare.width, bare.height ], [ 32, 32 ]);
            verify(Qt.colorEqual(bare.color, "transparent"));
            compare(bare.source.toString(), "");
            compare(bare.checked, false);
            compare(bare.enabled, true);
            verify(Qt.colorEqual(bare.checkedColor, "#00b2ff"));
            verify(Qt.colorEqual(bare.pressedColor, "lightgrey"));
            verify(Qt.colorEqual(bare.hoverColor, "grey"));
            verify(Qt.colorEqual(bare.glowColor, "transparent"));
            compare(bare.image.fillMode, Image.PreserveAspectFit);
            compare(bare.glow.visible, false);
        }

        function test_children() {
            const mouseArea = button.children[2];
            compare(button.children[0], button.glow);
            compare(button.children[1], button.image);
            compare(mouseArea.hoverEnabled, true);
            compare(mouseArea.hovering, false);
            compare(button.glow.radius, 12);
            compare(button.glow.samples, 16);
            fuzzyCompare(button.glow.spread, 0.75, 0.0001);
            compare(button.glow.source, button.image);
            for (const child of [ button.glow, button.image, mouseArea ])
                compare([ child.x, child.y, child.width, child.height ], [ 0, 0, 40, 40 ]);
            compare(button.image.source.toString(), button.source.toString());
        }

        function test_glowRules_data() {
            const all = [];
            for (const enabled of [ true, false ]) {
                for (const pressed of [ false, true ]) {
                    for (const hovering of [ false, true ]) {
                        for (const checked of [ false, true ]) {
                            for (const glowColor of [ "transparent", "#ff8000" ])
                                all.push({ tag: (enabled ? "enabled" : "disabled") + (pressed ? " pressed" : "")
                                                + (hovering ? " hovered" : "") + (checked ? " checked" : "")
                                                + (glowColor === "transparent" ? "" : " glowing"),
                                           enabled, pressed, hovering, checked, glowColor });
                        }
                    }
                }
            }
            return all;
        }

        // A touch presses without hovering.
        function test_glowRules(data) {
            button.checkedColor = "#0000ff";
            button.pressedColor = "#00c000";
            button.hoverColor = "#c00000";
            button.checked = data.checked;
            button.glowColor = data.glowColor;
            button.enabled = data.enabled;
            const mouseArea = button.children[2];
            if (data.hovering)
                mouseMove(button, 20, 20);
            if (data.pressed && data.hovering)
                mousePress(button, 20, 20);
            else if (data.pressed)
                mouseArea.hovering = false, mousePress(button, 20, 20), mouseArea.hovering = false;

            const glows = data.enabled && (data.pressed || data.hovering || data.checked || data.glowColor !== "transparent");
            const color = data.pressed ? "#00c000" : data.hovering && data.enabled ? "#c00000"
                        : data.checked ? "#0000ff" : data.glowColor;
            compare(button.glow.visible, glows);
            if (glows) {
                verify(Qt.colorEqual(button.glow.color, color), button.glow.color + " for " + color);
                tryVerify(() => near(glowPixel(), color), 5000, "glows in " + glowPixel());
            } else {
                tryVerify(() => Qt.colorEqual(glowPixel(), "white"));
            }
            if (data.pressed)
                mouseRelease(button, 20, 20);
        }

        function test_glowColorByNameOfTransparency() {
            button.glowColor = "#00000000";
            compare(button.glow.visible, false);
            button.glowColor = "#01000000";
            compare(button.glow.visible, true);
        }

        function test_hoverAndCursor() {
            const mouseArea = button.children[2];
            mouseMove(button, 20, 20);
            tryCompare(mouseArea, "hovering", true);
            compare(mouseArea.cursorShape, Qt.PointingHandCursor);
            compare(TestSupport.cursorShape(button), Qt.PointingHandCursor);
            button.enabled = false;
            compare(mouseArea.cursorShape, Qt.ArrowCursor);
            compare(TestSupport.cursorShape(button), Qt.ArrowCursor);
            compare(button.glow.visible, false);
            button.enabled = true;
            compare(button.glow.visible, true);
            mouseMove(scene, 5, 5);
            tryCompare(mouseArea, "hovering", false);
            compare(mouseArea.cursorShape, Qt.ArrowCursor);
            compare(button.glow.visible, false);
        }

        function test_enteredWhileDisabled() {
            const mouseArea = button.children[2];
            button.enabled = false;
            mouseMove(button, 20, 20);
            compare(mouseArea.containsMouse, true);
            compare(mouseArea.hovering, false);
            button.enabled = true;   // only the next entry counts
            compare(mouseArea.hovering, false);
            compare(button.glow.visible, false);
        }

        function test_click() {
            mouseClick(button, 20, 20);
            compare(counts(), [ 1, 0, 0 ]);
        }

        function test_rightButtonDoesNothing() {
            mouseClick(button, 20, 20, Qt.RightButton);
            compare(counts(), [ 0, 0, 0 ]);
        }

        function test_releaseOutsideIsNoClick() {
            mousePress(button, 20, 20);
            mouseMove(scene, 5, 5);
            mouseRelease(scene, 5, 5);
            compare(counts(), [ 0, 0, 0 ]);
        }

        function test_touch() {
            const touch = touchEvent(button);
            touch.press(0, button, 20, 20).commit();
            compare(button.glow.visible, true);
            verify(Qt.colorEqual(button.glow.color, "lightgrey"));
            touch.release(0, button, 20, 20).commit();
            compare(counts(), [ 1, 0, 0 ]);
        }

        function test_doubleClick() {
            mouseDoubleClickSequence(button, 20, 20);
            compare(counts(), [ 1, 1, 0 ]);
        }

        function test_pressAndHold() {
            mousePress(button, 20, 20);
            tryCompare(pressAndHold, "count", 1);
            mouseRelease(button, 20, 20);
            compare(counts(), [ 0, 0, 1 ]);   // a held button is no click
        }

        function test_disabledRaisesNothing() {
            button.enabled = false;
            button.checked = true;
            compare(button.glow.visible, false);
            mouseClick(button, 20, 20);
            mouseDoubleClickSequence(button, 20, 20);
            const mouseArea = button.children[2];
            let held = 0;
            const count = () => { ++held; };
            mouseArea.pressAndHold.connect(count);
            mousePress(button, 20, 20);
            tryVerify(() => held === 1);
            mouseRelease(button, 20, 20);
            mouseArea.pressAndHold.disconnect(count);
            compare(counts(), [ 0, 0, 0 ]);
        }

        function test_imageKeepsItsProportions() {
            button.width = 80;
            button.source = "data:image/svg+xml,<svg xmlns='http://www.w3.org/2000/svg' width='32' height='16'><rect width='32' height='16'/></svg>";
            tryCompare(button.image, "status", Image.Ready);
            tryCompare(button.image, "paintedHeight", 40);
            compare(button.image.paintedWidth, 80);
            button.height = 20;
            tryCompare(button.image, "paintedWidth", 40);
        }
    }
}
