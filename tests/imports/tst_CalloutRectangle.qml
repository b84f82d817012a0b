import QtQuick 2.15
import QtTest 1.2
import Zemrik.Tessaline 1.0
import Zemrik.Tessaline.Controls 1.0

// In a real window: what is drawn is compared, pixel by pixel, with the triangle that should be there.
Rectangle {
    id: scene

    width: 400
    height: 300
    color: "white"

    Component {
        id: bareComponent

        CalloutRectangle {}
    }

    // Everything that isn't the tail or the rectangle stays white.
    Component {
        id: calloutComponent

        CalloutRectangle {
            x: 150; y: 110; width: 100; height: 80
            tailWidth: 20
            color: "#3060c0"
            border.color: "#c03030"
            glow.color: "transparent"
        }
    }

    TestCase {
        id: testCase

        name: "CalloutRectangle"
        when: windowShown

        property var errors: []   // words of the warnings that a test expects

        function init() {
            errors = [];
            TestSupport.clearLog();
        }

        function cleanup() {
            const unexpected = TestSupport.logProblems().filter(
                line => !errors.some(words => line.indexOf(words) >= 0));
            compare(unexpected, []);
        }

        function make(properties) {
            return createTemporaryObject(calloutComponent, scene, properties);
        }

        function canvasOf(callout) {
            for (let i = 0; i < callout.children.length; ++i) {
                if (callout.children[i].requestPaint)
                    return callout.children[i];
            }
            return null;
        }

        // Whether the point lies in the triangle, at least `margin` from its sides; with a negative
        // margin, whether it lies in it or near it.
        function isInside(t, px, py, margin) {
            const corners = [ [ t[0], t[1] ], [ t[2], t[3] ], [ t[4], t[5] ] ];
            const area = (t[2] - t[0]) * (t[5] - t[1]) - (t[4] - t[0]) * (t[3] - t[1]);
            for (let i = 0; i < 3; ++i) {
                const a = corners[i];
                const b = corners[(i + 1) % 3];
                const length = Math.sqrt((b[0] - a[0]) * (b[0] - a[0]) + (b[1] - a[1]) * (b[1] - a[1]));
                const cross = ((b[0] - a[0]) * (py - a[1]) - (b[1] - a[1]) * (px - a[0])) / length;
                if ((area > 0 ? cross : -cross) < margin)
                    return false;
            }
            return true;
        }

        // The first pixel that isn't as the triangle says, or "".
        function mismatch(callout, t) {
            const picture = grabImage(scene);
            const border = callout.border.width + 1;
            for (let py = 1; py < scene.height; py += 4) {
                for (let px = py * 3 % 16; px < scene.width; px += 16) {
                    const inRectangle = px >= callout.x - 1 && px <= callout.x + callout.width
                        && py >= callout.y - 1 && py <= callout.y + callout.height;
                    let expected;
                    if (t && isInside(t, px + 0.5, py + 0.5, border))
                        expected = callout.tailColor;
                    else if (!inRectangle && !(t && isInside(t, px + 0.5, py + 0.5, -3 * border)))
                        expected = scene.color;
                    else
                        continue;
                    // The tip is sharp: its outline reaches further than elsewhere.
                    if (t && Math.abs(px - t[2]) < 8 * border && Math.abs(py - t[3]) < 8 * border)
                        continue;
                    if (!Qt.colorEqual(picture.pixel(px, py), expected))
                        return px + "," + py + " is " + picture.pixel(px, py) + ", not " + expected;
                }
            }
            return "";
        }

        function expectTail(callout, t) {
            tryVerify(() => mismatch(callout, t) === "", 5000);
            compare(mismatch(callout, t), "");
        }

        function test_defaults() {
            const callout = createTemporaryObject(bareComponent, scene);
            compare(callout.originX, 0);
            compare(callout.originY, 0);
            fuzzyCompare(callout.tailWidth, Tessaline.displayScaleFactor * 20, 0.001);
            verify(Qt.colorEqual(callout.color, "white"));
            verify(Qt.colorEqual(callout.tailColor, "white"));
            verify(Qt.colorEqual(callout.border.color, "darkgrey"));
            compare(callout.border.width, 1);
            compare(callout.radius, 6);
            errors = [ "TypeError" ];   // a rectangle of no size around the origin has no tail
        }

        function test_tailWidthFollowsTheScale() {
            const callout = createTemporaryObject(bareComponent, scene, { x: 100, width: 50, height: 50 });
            Tessaline.displayScaleFactor = 3;
            compare(callout.tailWidth, 60);
            Tessaline.displayScaleFactor = 0;
        }

        function test_tailColorFollowsTheColor() {
            const callout = make();
            callout.color = "#00ff00";
            verify(Qt.colorEqual(callout.tailColor, "#00ff00"));
            callout.tailColor = "#ff00ff";
            callout.color = "#0000ff";
            verify(Qt.colorEqual(callout.tailColor, "#ff00ff"));
        }

        function test_glow() {
            const callout = createTemporaryObject(bareComponent, scene, { x: 100, y: 90, width: 120, height: 70, originX: 160, originY: 20 });
            const glow = callout.glow;
            compare(glow.parent, scene);
            compare(callout.z, glow.z + 1);
            compare([ glow.x, glow.y, glow.width, glow.height ], [ 100, 90, 120, 70 ]);
            compare(glow.glowRadius, 6);
            fuzzyCompare(glow.spread, 0.3, 0.0001);
            verify(Qt.colorEqual(glow.color, "#80000000"));
            compare(glow.cornerRadius, 12);
            callout.radius = 10;
            compare(glow.cornerRadius, 16);
            callout.x = 110;
            callout.width = 90;
            compare([ glow.x, glow.width ], [ 110, 90 ]);
            verify(glow.visible);
            callout.visible = false;
            verify(!glow.visible);
        }

        function test_glowShowsAroundTheRectangle() {
            const callout = createTemporaryObject(bareComponent, scene, { x: 100, y: 90, width: 120, height: 70, originX: 160, originY: 20 });
            tryVerify(() => !Qt.colorEqual(grabImage(scene).pixel(97, 125), "white"));
            callout.visible = false;
            tryVerify(() => Qt.colorEqual(grabImage(scene).pixel(97, 125), "white"));
        }

        function test_canvasCoversTheParent() {
            const callout = make();
            const canvas = canvasOf(callout);
            const covers = () => {
                const corner = canvas.mapToItem(scene, 0, 0);
                return [ corner.x, corner.y, canvas.width, canvas.height ];
            };
            compare(covers(), [ 0, 0, 400, 300 ]);
            callout.x = 20;
            callout.y = 200;
            compare(covers(), [ 0, 0, 400, 300 ]);
        }

        // The rectangle is 150..250 by 110..190, its centre (200, 150), the straight part of an edge
        // 156..244 or 116..184.
        function test_tail_data() {
            return [
                { tag: "above", origin: [ 200, 40 ], tail: [ 180, 111, 200, 40, 220, 111 ] },
                { tag: "above, near the right end", origin: [ 240, 40 ], tail: [ 220, 111, 240, 40, 244, 111 ] },
                { tag: "above, near the left end", origin: [ 160, 40 ], tail: [ 156, 111, 160, 40, 180, 111 ] },
                { tag: "above and left", origin: [ 100, 20 ], tail: [ 156, 111, 100, 20, 196, 111 ] },
                { tag: "above and right", origin: [ 300, 20 ], tail: [ 204, 111, 300, 20, 244, 111 ] },
                { tag: "through the corner: the top edge comes first", origin: [ 100, 70 ], tail: [ 156, 111, 100, 70, 196, 111 ] },
                { tag: "below", origin: [ 200, 260 ], tail: [ 180, 189, 200, 260, 220, 189 ] },
                { tag: "below and left", origin: [ 100, 280 ], tail: [ 156, 189, 100, 280, 196, 189 ] },
                { tag: "below and right", origin: [ 300, 280 ], tail: [ 204, 189, 300, 280, 244, 189 ] },
                { tag: "left", origin: [ 60, 150 ], tail: [ 151, 130, 60, 150, 151, 170 ] },
                { tag: "left, near the upper end", origin: [ 60, 115 ], tail: [ 151, 116, 60, 115, 151, 135 ] },
                { tag: "left, near the lower end", origin: [ 60, 185 ], tail: [ 151, 165, 60, 185, 151, 184 ] },
                { tag: "left and above", origin: [ 20, 100 ], tail: [ 151, 116, 20, 100, 151, 156 ] },
                { tag: "left and below", origin: [ 20, 200 ], tail: [ 151, 144, 20, 200, 151, 184 ] },
                { tag: "right", origin: [ 340, 150 ], tail: [ 249, 130, 340, 150, 249, 170 ] },
                { tag: "right and above", origin: [ 380, 100 ], tail: [ 249, 116, 380, 100, 249, 156 ] },
                { tag: "right and below", origin: [ 380, 200 ], tail: [ 249, 144, 380, 200, 249, 184 ] },
                { tag: "wider than the edge, horizontal", origin: [ 200, 40 ], tailWidth: 60, tail: [ 156, 111, 200, 40, 244, 111 ] },
                { tag: "wider than the edge, vertical", origin: [ 60, 150 ], tailWidth: 60, tail: [ 151, 116, 60, 150, 151, 184 ] },
                { tag: "thick border", origin: [ 200, 40 ], border: 4, tail: [ 180, 114, 200, 40, 220, 114 ] },
                { tag: "thick border, right", origin: [ 340, 150 ], border: 4, tail: [ 246, 130, 340, 150, 246, 170 ] },
                { tag: "large radius", origin: [ 100, 20 ], radius: 24, tail: [ 174, 111, 100, 20, 214, 111 ] },
            ];
        }

        function test_tail(data) {
            const callout = make({ originX: data.origin[0], originY: data.origin[1] });
            if (data.tailWidth)
                callout.tailWidth = data.tailWidth;
            if (data.border)
                callout.border.width = data.border;
            if (data.radius)
                callout.radius = data.radius;
            const internal = callout.resources[0];
            callout.updateTail();
            const t = [ internal.x1, internal.y1, internal.x2, internal.y2, internal.x3, internal.y3 ];
            compare(t, data.tail);
            canvasOf(callout).requestPaint();   // neither border nor radius do that
            expectTail(callout, data.tail);
        }

        function test_isDrawnAgain_data() {
            return [
                { tag: "originX", name: "originX", value: 240, tail: [ 220, 111, 240, 40, 244, 111 ] },
                { tag: "originY", name: "originY", value: 80, tail: [ 180, 111, 200, 80, 220, 111 ] },
                { tag: "tailWidth", name: "tailWidth", value: 10, tail: [ 190, 111, 200, 40, 210, 111 ] },
                { tag: "x", name: "x", value: 120, tail: [ 180, 111, 200, 40, 214, 111 ] },
                { tag: "y", name: "y", value: 180, tail: [ 180, 181, 200, 40, 220, 181 ] },
                { tag: "width", name: "width", value: 60, tail: [ 180, 111, 200, 40, 204, 111 ] },
                { tag: "height, below", name: "height", value: 40, originY: 260, tail: [ 180, 149, 200, 260, 220, 149 ] },
            ];
        }

        function test_isDrawnAgain(data) {
            const originY = data.originY || 40;
            const callout = make({ originX: 200, originY: originY });
            expectTail(callout, data.originY ? [ 180, 189, 200, 260, 220, 189 ] : [ 180, 111, 200, 40, 220, 111 ]);
            callout[data.name] = data.value;
            expectTail(callout, data.tail);
        }

        function test_isDrawnAtCompletion() {
            const callout = createTemporaryObject(calloutComponent, scene, { originX: 200, originY: 40 });
            expectTail(callout, [ 180, 111, 200, 40, 220, 111 ]);
        }

        function test_borderAlongTheSidesOnly() {
            const callout = make({ originX: 200, originY: 30 });
            callout.border.width = 4;
            canvasOf(callout).requestPaint();
            tryVerify(() => Qt.colorEqual(grabImage(scene).pixel(190, 72), callout.border.color));
            const picture = grabImage(scene);
            verify(Qt.colorEqual(picture.pixel(210, 72), callout.border.color));
            for (const py of [ 110, 112, 114, 116 ])   // over the rectangle's own border
                verify(Qt.colorEqual(picture.pixel(200, py), callout.tailColor), "at " + py);
            verify(Qt.colorEqual(picture.pixel(160, 112), callout.border.color));
        }

        function test_originInsideStopsWithAnError_data() {
            return [
                { tag: "inside", origin: [ 170, 140 ] },
                { tag: "the centre itself", origin: [ 200, 150 ] },
            ];
        }

        function test_originInsideStopsWithAnError(data) {
            const callout = make({ originX: 200, originY: 40 });
            const tail = [ 180, 111, 200, 40, 220, 111 ];
            expectTail(callout, tail);
            TestSupport.clearLog();
            errors = [ "CalloutRectangle.qml" ];
            callout.originX = data.origin[0];
            callout.originY = data.origin[1];
            tryVerify(() => TestSupport.logCount("warning", "", "TypeError") > 0);
            compare(mismatch(callout, tail), "");   // as it was
            verify(TestSupport.throws(() => callout.updateTail()));

            callout.originX = 200;
            callout.originY = 260;
            expectTail(callout, [ 180, 189, 200, 260, 220, 189 ]);
        }

        function test_intersect_data() {
            const p = Qt.point;
            return [
                { tag: "cross", s: [ p(0, 0), p(10, 10), p(0, 10), p(10, 0) ], at: p(5, 5) },
                { tag: "parallel", s: [ p(0, 0), p(10, 0), p(0, 5), p(10, 5) ], at: undefined },
                { tag: "on one line", s: [ p(0, 0), p(10, 0), p(5, 0), p(15, 0) ], at: undefined },
                { tag: "first too short", s: [ p(0, 0), p(4, 4), p(0, 10), p(10, 0) ], at: undefined },
                { tag: "first points away", s: [ p(0, 0), p(-4, -4), p(0, 10), p(10, 0) ], at: undefined },
                { tag: "second too short", s: [ p(0, 0), p(10, 10), p(0, 10), p(4, 6) ], at: undefined },
                { tag: "second on the other side", s: [ p(0, 0), p(10, 10), p(12, -2), p(8, 2) ], at: undefined },
                { tag: "ends touch", s: [ p(0, 0), p(5, 5), p(5, 5), p(10, 0) ], at: p(5, 5) },
                { tag: "no length", s: [ p(3, 3), p(3, 3), p(0, 3), p(10, 3) ], at: undefined },
            ];
        }

        function test_intersect(data) {
            const callout = make({ originX: 200, originY: 40 });
            const s = data.s;
            compare(callout.intersect(s[0], s[1], s[2], s[3]), data.at);
        }

        function test_diff() {
            const callout = make({ originX: 200, originY: 40 });
            compare(callout.diff(Qt.point(7, 3), Qt.point(2, 8)), Qt.point(5, -5));
        }

        function test_contentLiesOverTheTail() {
            const callout = make({ originX: 200, originY: 40 });
            Qt.createQmlObject("import QtQuick 2.15; Rectangle { x: 40; y: 0; width: 20; height: 10; color: '#ffff00' }", callout);
            tryVerify(() => Qt.colorEqual(grabImage(scene).pixel(200, 115), "#ffff00"));
            errors = [];
        }
    }
}
