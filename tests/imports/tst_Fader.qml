import QtQuick 2.15
import QtQuick.Controls 1.1
import QtTest 1.2
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Controls 1.0

Item {
    id: scene

    width: 200
    height: 200

    Component {
        id: bareComponent

        Rectangle {
            property alias fader: fader

            Fader { id: fader }
        }
    }

    // Fades within half a second and keeps when its opacity was what.
    Component {
        id: sceneComponent

        Rectangle {
            id: panel

            property alias fader: fader
            property alias other: other
            property var steps: []

            width: 100
            height: 100
            color: "black"
            opacity: 0.6
            onOpacityChanged: steps.push({ time: Date.now(), opacity: opacity })

            MouseArea {
                anchors.fill: parent
                onPressed: fader.start()
            }
            Rectangle { id: other; opacity: 0.7 }
            Fader {
                id: fader

                timeoutDuration: 200
                animationDuration: 300
            }
        }
    }

    Component {
        id: disabledComponent

        Rectangle {
            property alias fader: fader

            opacity: 0.6

            Fader {
                id: fader

                enabled: false
                timeoutDuration: 50
                animationDuration: 50
            }
        }
    }

    Component {
        id: boundComponent

        Rectangle {
            id: boundPanel

            property bool fades: false
            property alias fader: fader

            opacity: 0.6

            Fader {
                id: fader

                target: boundPanel
                enabled: boundPanel.fades
                timeoutDuration: 50
                animationDuration: 50
            }
        }
    }

    TestCase {
        name: "Fader"
        when: windowShown

        function init() {
            TestSupport.clearLog();
        }

        function cleanup() {
            compare(TestSupport.logProblems(), []);
        }

        function animationOf(fader) { return fader.resources[0]; }
        function timerOf(fader) { return fader.resources[1]; }

        function test_defaults() {
            const panel = createTemporaryObject(bareComponent, scene);
            const fader = panel.fader;
            compare(fader.target, panel);
            compare(fader.enabled, true);
            compare(fader.timeoutDuration, 3000);
            compare(fader.animationDuration, 3000);
            fuzzyCompare(fader.minumumOpacity, 0.35, 0.0001);
            compare(fader.maximumOpacity, 1);
        }

        function test_children() {
            const fader = createTemporaryObject(bareComponent, scene).fader;
            const animation = animationOf(fader);
            compare(animation.target, fader.target);
            compare(animation.property, "opacity");
            compare(animation.easing.type, Easing.OutCubic);
            fader.minumumOpacity = 0.2;
            fuzzyCompare(animation.to, 0.2, 0.0001);
            fader.animationDuration = 700;
            compare(animation.duration, 700);
            const timer = timerOf(fader);
            compare(timer.repeat, false);
            fader.timeoutDuration = 900;
            compare(timer.interval, 900);
        }

        function test_fadesAfterTheDelay() {
            const begin = Date.now();
            const panel = createTemporaryObject(sceneComponent, scene);
            compare(panel.opacity, 1);   // at completion
            tryVerify(() => panel.opacity < 1);
            tryCompare(panel, "opacity", 0.35);
            const steps = panel.steps.filter(step => step.opacity < 1);
            // Qt's timers may be a twentieth early.
            verify(steps[0].time - begin >= 185, "waited " + (steps[0].time - begin));
            const length = steps[steps.length - 1].time - begin;
            verify(steps.length > 1, "dimmed in one step");
            // Animations step by frames, and frames without a screen may come early.
            verify(length >= 380, "dimmed after " + length);
            for (let i = 1; i < steps.length; ++i)
                verify(steps[i].opacity < steps[i - 1].opacity);
            compare(timerOf(panel.fader).running, false);
            compare(animationOf(panel.fader).running, false);
        }

        function test_startWhileFadingBeginsAnew() {
            const panel = createTemporaryObject(sceneComponent, scene);
            tryVerify(() => panel.opacity < 0.9);
            panel.fader.start();
            compare(panel.opacity, 1);
            verify(!animationOf(panel.fader).running);
            verify(timerOf(panel.fader).running);
            const again = Date.now();
            tryVerify(() => panel.opacity < 1);
            verify(Date.now() - again >= 185);
            tryCompare(panel, "opacity", 0.35);
            panel.fader.start();
            compare(panel.opacity, 1);
        }

        function test_startWhileWaitingBeginsAnew() {
            const panel = createTemporaryObject(sceneComponent, scene);
            wait(120);   // most of the delay has to pass
            panel.fader.start();
            const again = Date.now();
            tryVerify(() => panel.opacity < 1);
            verify(Date.now() - again >= 185);
        }

        function test_aPressWakes() {
            const panel = createTemporaryObject(sceneComponent, scene);
            tryCompare(panel, "opacity", 0.35);
            mousePress(panel, 50, 50);
            compare(panel.opacity, 1);
            mouseRelease(panel, 50, 50);
            tryCompare(panel, "opacity", 0.35);
            const touch = touchEvent(panel);
            touch.press(0, panel, 50, 50).commit();
            tryCompare(panel, "opacity", 1);
            touch.release(0, panel, 50, 50).commit();
        }

        function test_stop() {
            const panel = createTemporaryObject(sceneComponent, scene);
            tryVerify(() => panel.opacity < 0.9);
            panel.fader.stop();
            compare(panel.opacity, 1);
            verify(!timerOf(panel.fader).running);
            verify(!animationOf(panel.fader).running);
        }

        function test_disabledAtTheStart_data() {
            return [
                { tag: "by a value", component: disabledComponent },
                { tag: "by a binding", component: boundComponent },
            ];
        }

        function test_disabledAtTheStart(data) {
            const panel = createTemporaryObject(data.component, scene);
            fuzzyCompare(panel.opacity, 0.6, 0.0001);
            panel.fader.start();
            fuzzyCompare(panel.opacity, 0.6, 0.0001);
            verify(!timerOf(panel.fader).running);
            panel.fader.enabled = true;
            compare(panel.opacity, 1);
            tryCompare(panel, "opacity", 0.35);
        }

        function test_disablingStops() {
            const panel = createTemporaryObject(sceneComponent, scene);
            tryCompare(panel, "opacity", 0.35);
            panel.fader.enabled = false;
            compare(panel.opacity, 1);
            verify(!timerOf(panel.fader).running);
            panel.opacity = 0.5;
            panel.fader.stop();   // also while disabled
            compare(panel.opacity, 1);
        }

        function test_otherTargetAndLimits() {
            const panel = createTemporaryObject(sceneComponent, scene);
            panel.fader.target = panel.other;
            panel.fader.maximumOpacity = 0.8;
            panel.fader.minumumOpacity = 0.1;
            panel.fader.start();
            fuzzyCompare(panel.other.opacity, 0.8, 0.0001);
            tryVerify(() => Math.abs(panel.other.opacity - 0.1) < 0.0001);
            compare(panel.opacity, 1);
        }
    }
}
