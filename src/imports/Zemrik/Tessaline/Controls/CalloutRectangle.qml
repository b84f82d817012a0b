import QtQuick 2.2
import QtGraphicalEffects 1.0
import Zemrik.Tessaline 1.0

/*!
    \qmltype CalloutRectangle
    \inqmlmodule Zemrik.Tessaline.Controls
    \brief A rectangle with a tail that points at a spot.

    \qml
    CalloutRectangle {
        x: 40; y: 80; width: 160; height: 60
        originX: 120; originY: 20      // in the parent's coordinates
    }
    \endqml

    The tail is redrawn when the origin or the rectangle's geometry changes. An origin inside the
    rectangle has no tail; the drawing stays as it was.
*/
Rectangle {
    id: calloutRectangle

    /*! The point that the tail reaches, in the parent's coordinates. 0 by default. */
    property real originX: 0
    /*! See \l originX. */
    property real originY: 0
    /*! Half of the tail's base. 20 by default, times the display scale. */
    property real tailWidth: Tessaline.displayScaleFactor * 20
    /*! What the tail is filled with, by default the rectangle's colour. Shows at the next drawing. */
    property color tailColor: color
    /*! The shadow, a RectangularGlow. */
    property alias glow: rectangularGlow

    color: "white"
    radius: 6
    border.color: "darkgrey"
    z: rectangularGlow.z + 1

    Component.onCompleted: canvas.requestPaint()
    onOriginXChanged: canvas.requestPaint()
    onOriginYChanged: canvas.requestPaint()
    onTailWidthChanged: canvas.requestPaint()
    onXChanged: canvas.requestPaint()
    onYChanged: canvas.requestPaint()
    onWidthChanged: canvas.requestPaint()
    onHeightChanged: canvas.requestPaint()

    // The tail's triangle, in the parent's coordinates: 2 is the tip.
    QtObject {
        id: internal

        property real x1
        property real y1
        property real x2
        property real y2
        property real x3
        property real y3
    }

    RectangularGlow {
        id: rectangularGlow

        parent: calloutRectangle.parent
        anchors.fill: calloutRectangle
        visible: calloutRectangle.visible
        glowRadius: 6
        spread: 0.3
        color: "#80000000"
        cornerRadius: calloutRectangle.radius + glowRadius
    }

    // Covers the whole parent, so that the tail can lie outside the rectangle.
    Canvas {
        id: canvas

        x: -calloutRectangle.x
        y: -calloutRectangle.y
        width: calloutRectangle.parent ? calloutRectangle.parent.width : 0
        height: calloutRectangle.parent ? calloutRectangle.parent.height : 0

        onPaint: {
            updateTail();

            var context = getContext("2d");
            context.clearRect(0, 0, width, height);
            context.beginPath();
            context.fillStyle = calloutRectangle.tailColor;
            context.moveTo(internal.x1, internal.y1);
            context.lineTo(internal.x2, internal.y2);
            context.lineTo(internal.x3, internal.y3);
            context.fill();
            // The path stays open: no border where the tail meets the rectangle.
            context.strokeStyle = calloutRectangle.border.color;
            context.lineWidth = calloutRectangle.border.width;
            context.stroke();
        }
    }

    /*! \internal */
    function updateTail() {
        var origin = Qt.point(originX, originY);
        var center = Qt.point(x + width / 2, y + height / 2);
        var topLeft = Qt.point(x, y);
        var topRight = Qt.point(x + width, y);
        var bottomRight = Qt.point(x + width, y + height);
        var bottomLeft = Qt.point(x, y + height);

        var anchor;
        var horizontal = true;
        var direction = 1;
        if (intersect(origin, center, topLeft, topRight)) {
            anchor = Qt.point(originX, y);
        } else if (intersect(origin, center, bottomLeft, bottomRight)) {
            anchor = Qt.point(originX, y + height);
            direction = -1;
        } else if (intersect(origin, center, topLeft, bottomLeft)) {
            anchor = Qt.point(x, originY);
            horizontal = false;
        } else if (intersect(origin, center, topRight, bottomRight)) {
            anchor = Qt.point(x + width, originY);
            horizontal = false;
            direction = -1;
        }

        internal.x2 = originX;
        internal.y2 = originY;
        // Without an anchor the script ends at its first use here, and the drawing stays as it was.
        if (horizontal) {
            var rangeX = baseRange(originX, x, width, anchor.x);
            internal.x1 = rangeX.begin;
            internal.x3 = rangeX.end;
            internal.y1 = anchor.y + border.width * direction;
            internal.y3 = internal.y1;
        } else {
            var rangeY = baseRange(originY, y, height, anchor.y);
            internal.y1 = rangeY.begin;
            internal.y3 = rangeY.end;
            internal.x1 = anchor.x + border.width * direction;
            internal.x3 = internal.x1;
        }
    }

    // Where the tail's base lies along an edge that begins at `start`: under the origin, or at the
    // nearer end, and always clear of the rounded corners.
    function baseRange(origin, start, length, anchor) {
        var begin;
        if (origin < start)
            begin = start + radius;
        else if (origin > start + length)
            begin = start + length - radius - tailWidth * 2;
        else
            begin = anchor - tailWidth;
        var end = begin + tailWidth * 2;
        return { begin: Math.max(start + radius, begin), end: Math.min(start + length - radius, end) };
    }

    /*! \internal
        The point where two segments cross, or undefined.
    */
    function intersect(pt1, pt2, lpt1, lpt2) {
        var a = diff(pt2, pt1);
        var b = diff(lpt1, lpt2);
        var c = diff(pt1, lpt1);
        var den = a.y * b.x - a.x * b.y;
        if (den === 0)
            return undefined;
        var r = 1 / den;
        var t = r * (b.y * c.x - b.x * c.y);
        if (t < 0 || t > 1)
            return undefined;
        var u = r * (a.x * c.y - a.y * c.x);
        if (u < 0 || u > 1)
            return undefined;
        return Qt.point(pt1.x + a.x * t, pt1.y + a.y * t);
    }

    /*! \internal */
    function diff(p1, p2) {
        return Qt.point(p1.x - p2.x, p1.y - p2.y);
    }
}
