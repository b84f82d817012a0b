.pragma library

// A title may have line breaks.
function line(text) {
    return text.replace(/\s+/g, " ").trim();
}

function size(bytes) {
    if (!(bytes >= 0))
        return "";
    if (bytes < 1000)
        return bytes + " bytes";
    if (bytes < 1e6)
        return (bytes / 1e3).toFixed(bytes < 1e4 ? 1 : 0) + " kB";
    return (bytes / 1e6).toFixed(1) + " MB";
}

// Empty for the epoch itself, which stands for a date that nobody told.
function date(value) {
    return value && value.getTime() > 0 ? value.toLocaleDateString(Qt.locale(), 1) : "";
}
