.pragma library

// Colours that more than one document uses. Each text colour has a contrast of at least 4.5 to the
// surfaces that it stands on.
var page = "#f5f3f8";
var surface = "#ffffff";
var line = "#dfd9e8";
var outline = "#c3b5da";
var text = "#211a2e";
var secondaryText = "#5d5470";
var accent = "#5f3b93";
var accentDark = "#4c2c7a";
var accentLight = "#ede6f7";
var bad = "#a3231b";
var badLight = "#fdeae8";

// Behind a picture.
var stage = "#1d1a22";
var stageText = "#e9e5ef";
var stageSecondary = "#b3acbf";
