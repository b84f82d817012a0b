// A rectangle over a picture, in the picture's pixels. A drag makes one, moves it from its inside, and
// resizes it from a corner; so do the arrow keys, alone or with Shift.
import QtQuick 2.15
import "Theme.js" as Theme

MouseArea {
    id: frame

    property size pictureSize
    property rect area            // empty at the start
    property real unit: 1
    readonly property real zoom: width / Math.max(1, pictureSize.width)
    readonly property rect shown: Qt.rect(area.x * zoom, area.y * zoom, area.width * zoom, area.height * zoom)
    property bool _moving: false
    property point _anchor        // the corner that stays, or where the drag began
    property rect _before

    signal accepted()
    signal rejected()

    hoverEnabled: true
    preventStealing: true
    cursorShape: Qt.CrossCursor

    onPressed: {
        const x = mouse.x / zoom, y = mouse.y / zoom;
        const left = area.x, right = area.x + area.width, top = area.y, bottom = area.y + area.height;
        const reach = 22 * unit / zoom;
        const near = (a, b) => Math.abs(a - b) <= reach;
        _before = area;
        _anchor = Qt.point(x, y);
        const onCorner = area.width > 0 && (near(x, left) || near(x, right)) && (near(y, top) || near(y, bottom));
        _moving = !onCorner && x > left && x < right && y > top && y < bottom;
        if (onCorner)
            _anchor = Qt.point(Math.abs(x - left) < Math.abs(x - right) ? right : left,
                               Math.abs(y - top) < Math.abs(y - bottom) ? bottom : top);
        forceActiveFocus();
    }
    onPositionChanged: {
        if (!pressed)
            return;
        const x = mouse.x / zoom, y = mouse.y / zoom;
        if (_moving)
            move(_before.x + x - _anchor.x, _before.y + y - _anchor.y);
        else
            span(_anchor.x, _anchor.y, x, y);
    }

    Keys.onReturnPressed: accepted()
    Keys.onEnterPressed: accepted()
    Keys.onEscapePressed: rejected()
    Keys.onPressed: {
        const dx = event.key === Qt.Key_Left ? -1 : event.key === Qt.Key_Right ? 1 : 0;
        const dy = event.key === Qt.Key_Up ? -1 : event.key === Qt.Key_Down ? 1 : 0;
        if (dx === 0 && dy === 0)
            return;
        event.accepted = true;
        const step = Math.max(1, Math.round(4 * unit / zoom));
        if (area.width < 1)
            span(pictureSize.width * 0.1, pictureSize.height * 0.1, pictureSize.width * 0.9, pictureSize.height * 0.9);
        else if (event.modifiers & Qt.ShiftModifier)
            span(area.x, area.y, Math.max(area.x + 1, area.x + area.width + dx * step), Math.max(area.y + 1, area.y + area.height + dy * step));
        else
            move(area.x + dx * step, area.y + dy * step);
    }

    // Between two corners, whole pixels, inside the picture.
    function span(x1, y1, x2, y2) {
        const within = (value, most) => Math.round(Math.max(0, Math.min(most, value)));
        const left = within(Math.min(x1, x2), pictureSize.width), right = within(Math.max(x1, x2), pictureSize.width);
        const top = within(Math.min(y1, y2), pictureSize.height), bottom = within(Math.max(y1, y2), pictureSize.height);
        area = right > left && bottom > top ? Qt.rect(left, top, right - left, bottom - top) : Qt.rect(0, 0, 0, 0);
    }
    function move(x, y) {
        area = Qt.rect(Math.round(Math.max(0, Math.min(pictureSize.width - area.width, x))),
                       Math.round(Math.max(0, Math.min(pictureSize.height - area.height, y))), area.width, area.height);
    }

    // What goes is darkened.
    Repeater {
        model: frame.area.width > 0 ? [
            Qt.rect(0, 0, frame.width, frame.shown.y),
            Qt.rect(0, frame.shown.y + frame.shown.height, frame.width, frame.height - frame.shown.y - frame.shown.height),
            Qt.rect(0, frame.shown.y, frame.shown.x, frame.shown.height),
            Qt.rect(frame.shown.x + frame.shown.width, frame.shown.y, frame.width - frame.shown.x - frame.shown.width, frame.shown.height)
        ] : []

        Rectangle {
            x: modelData.x
            y: modelData.y
            width: modelData.width
            height: modelData.height
            color: "#a6000000"
        }
    }
    Rectangle {
        x: frame.shown.x
        y: frame.shown.y
        width: frame.shown.width
        height: frame.shown.height
        visible: frame.area.width > 0
        color: "transparent"
        border { width: 2 * frame.unit; color: "white" }

        // Corners to take hold of.
        Repeater {
            model: 4

            Rectangle {
                x: (index % 2 ? parent.width : 0) - width / 2
                y: (index > 1 ? parent.height : 0) - height / 2
                width: 14 * frame.unit
                height: width
                radius: width / 2
                color: Theme.accent
                border { width: 2 * frame.unit; color: "white" }
            }
        }
    }
}
