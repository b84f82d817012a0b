.pragma library

// Colours that more than one document uses. Each text colour has a contrast of at least 4.5 to the
// surfaces that it stands on.
var page = "#f3f5f9";
var surface = "#ffffff";
var line = "#d9dfe9";
var text = "#172033";
var secondaryText = "#515c72";
var accent = "#2b54c9";
var accentDark = "#1f3f9c";
var accentLight = "#e6ecfb";
var good = "#1a6b47";
var goodLight = "#def3e8";
var warning = "#7a4a00";
var warningLight = "#ffeecf";
var bad = "#a3231b";
var badLight = "#fdeae8";

// For apps without a picture: always the same colour for the same name.
var tiles = [ "#2b54c9", "#8a3ea8", "#0f6e79", "#a3472a", "#3d6b1f", "#9b2f5f" ];

function tile(name) {
    var sum = 0;
    for (var i = 0; i < name.length; i++)
        sum += name.charCodeAt(i);
    return tiles[sum % tiles.length];
}
