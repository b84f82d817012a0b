.pragma library

// Names and values of EXIF tags as people read them.

var imageNames = {
    256: "Width", 257: "Height", 258: "Bits per sample", 259: "Compression", 262: "Photometric interpretation",
    270: "Description", 271: "Camera maker", 272: "Camera", 274: "Orientation", 277: "Samples per pixel",
    282: "Horizontal resolution", 283: "Vertical resolution", 284: "Planar configuration", 296: "Resolution unit",
    301: "Transfer function", 305: "Software", 306: "Changed", 315: "Artist", 318: "White point",
    319: "Primary chromaticities", 529: "YCbCr coefficients", 530: "YCbCr subsampling", 531: "YCbCr positioning",
    532: "Reference black and white", 33432: "Copyright"
};
var extendedNames = {
    33434: "Exposure time", 33437: "Aperture", 34850: "Exposure program", 34852: "Spectral sensitivity", 34855: "ISO speed",
    34864: "Sensitivity type", 34865: "Standard output sensitivity", 34866: "Recommended exposure index",
    36864: "EXIF version", 36867: "Taken", 36868: "Digitized", 36880: "Time zone", 36881: "Time zone when taken",
    36882: "Time zone when digitized", 37121: "Components", 37122: "Bits per pixel", 37377: "Shutter speed value",
    37378: "Aperture value", 37379: "Brightness", 37380: "Exposure bias", 37381: "Widest aperture", 37382: "Subject distance",
    37383: "Metering mode", 37384: "Light source", 37385: "Flash", 37386: "Focal length", 37396: "Subject area",
    37500: "Maker note", 37510: "Comment", 37520: "Fraction of the second", 37521: "Fraction of the second when taken",
    37522: "Fraction of the second when digitized", 40960: "Flashpix version", 40961: "Colour space", 40962: "Picture width",
    40963: "Picture height", 40964: "Sound file", 41483: "Flash energy", 41486: "Focal plane, horizontal resolution",
    41487: "Focal plane, vertical resolution", 41488: "Focal plane, resolution unit", 41492: "Subject location",
    41493: "Exposure index", 41495: "Sensing method", 41728: "File source", 41729: "Scene type", 41730: "Colour filter pattern",
    41985: "Processing", 41986: "Exposure mode", 41987: "White balance", 41988: "Digital zoom", 41989: "Focal length in 35 mm film",
    41990: "Scene", 41991: "Gain", 41992: "Contrast", 41993: "Saturation", 41994: "Sharpness", 41996: "Subject distance range",
    42016: "Picture ID", 42032: "Camera owner", 42033: "Camera serial number", 42034: "Lens specification", 42035: "Lens maker",
    42036: "Lens", 42037: "Lens serial number", 42240: "Gamma"
};
var gpsNames = {
    0: "GPS version", 7: "Time (UTC)", 8: "Satellites", 9: "Status", 10: "Measure mode", 11: "Precision", 13: "Speed",
    15: "Direction of movement", 17: "Direction of the picture", 18: "Map datum", 24: "Bearing of the destination",
    26: "Distance to the destination", 27: "Method", 28: "Area", 29: "Date (UTC)", 30: "Differential correction", 31: "Horizontal error"
};

// Tags that lead to others or are told with others.
var hiddenImageTags = [ 273, 278, 279, 513, 514, 34665, 34853 ];
var hiddenExtendedTags = [ 40965 ];
var hiddenGpsTags = [ 1, 2, 3, 4, 5, 6, 12, 14, 16, 19, 20, 21, 22, 23, 25 ];

// What the numbers of a tag stand for.
var meanings = {
    259: { 1: "None", 6: "JPEG" },
    262: { 0: "White is zero", 1: "Black is zero", 2: "RGB", 6: "YCbCr" },
    274: { 1: "Upright", 2: "Mirrored", 3: "Turned by 180°", 4: "Upside down, mirrored", 5: "Turned by 90° left, mirrored",
           6: "Turned by 90° left", 7: "Turned by 90° right, mirrored", 8: "Turned by 90° right" },
    284: { 1: "Chunky", 2: "Planar" },
    296: { 1: "None", 2: "Inch", 3: "Centimetre" },
    531: { 1: "Centred", 2: "Co-sited" },
    34850: { 0: "Not defined", 1: "Manual", 2: "Normal", 3: "Aperture priority", 4: "Shutter priority", 5: "Creative", 6: "Action",
             7: "Portrait", 8: "Landscape" },
    34864: { 1: "Standard output sensitivity", 2: "Recommended exposure index", 3: "ISO speed" },
    37383: { 0: "Unknown", 1: "Average", 2: "Centre-weighted", 3: "Spot", 4: "Several spots", 5: "Pattern", 6: "Partial", 255: "Other" },
    37384: { 0: "Unknown", 1: "Daylight", 2: "Fluorescent", 3: "Tungsten", 4: "Flash", 9: "Fine weather", 10: "Cloudy", 11: "Shade",
             12: "Daylight fluorescent", 13: "Day white fluorescent", 14: "Cool white fluorescent", 15: "White fluorescent",
             17: "Standard light A", 18: "Standard light B", 19: "Standard light C", 20: "D55", 21: "D65", 22: "D75", 23: "D50",
             24: "Studio tungsten", 255: "Other" },
    40961: { 1: "sRGB", 2: "Adobe RGB", 65535: "Uncalibrated" },
    41488: { 1: "None", 2: "Inch", 3: "Centimetre" },
    41495: { 1: "Not defined", 2: "One-chip colour area", 3: "Two-chip colour area", 4: "Three-chip colour area",
             5: "Colour sequential area", 7: "Trilinear", 8: "Colour sequential linear" },
    41728: { 1: "Transparent scanner", 2: "Reflex scanner", 3: "Digital camera" },
    41729: { 1: "Directly photographed" },
    41985: { 0: "Normal", 1: "Custom" },
    41986: { 0: "Automatic", 1: "Manual", 2: "Automatic bracket" },
    41987: { 0: "Automatic", 1: "Manual" },
    41990: { 0: "Standard", 1: "Landscape", 2: "Portrait", 3: "Night" },
    41991: { 0: "None", 1: "Low gain up", 2: "High gain up", 3: "Low gain down", 4: "High gain down" },
    41992: { 0: "Normal", 1: "Soft", 2: "Hard" },
    41993: { 0: "Normal", 1: "Low", 2: "High" },
    41994: { 0: "Normal", 1: "Soft", 2: "Hard" },
    41996: { 0: "Unknown", 1: "Macro", 2: "Close", 3: "Distant" }
};
var gpsLetters = {
    9: { A: "Measuring", V: "Interrupted" },
    10: { 2: "Two-dimensional", 3: "Three-dimensional" },
    K: "km/h", M: "mph", N: "knots"
};

// Sections of { title, rows }, a row being { key, name, value }. `exif` is an ExifInfo.
function sections(exif) {
    return [
        { title: qsTr("Position"), rows: positionRows(exif).concat(tagRows("gps", exif.gpsTags, hiddenGpsTags, gpsNames,
                                                                           tag => gpsText(exif, tag))) },
        { title: qsTr("Exposure"), rows: tagRows("extended", exif.extendedTags, hiddenExtendedTags, extendedNames,
                                                 tag => text(tag, exif.extendedValue(tag))) },
        { title: qsTr("Picture"), rows: tagRows("image", exif.imageTags, hiddenImageTags, imageNames,
                                                tag => text(tag, exif.imageValue(tag))) }
    ].filter(section => section.rows.length > 0);
}

function tagRows(kind, tags, hidden, names, valueOf) {
    const rows = [];
    for (let i = 0; i < tags.length; ++i) {
        const tag = tags[i];
        if (!hidden.includes(tag))
            rows.push({ key: kind + tag, name: names[tag] || qsTr("Tag %1").arg(tag), value: valueOf(tag) });
    }
    return rows;
}

function positionRows(exif) {
    const rows = [];
    if (isFinite(exif.gpsLatitude))
        rows.push({ key: "latitude", name: qsTr("Latitude"), value: degrees(exif.gpsLatitude, "N", "S") });
    if (isFinite(exif.gpsLongitude))
        rows.push({ key: "longitude", name: qsTr("Longitude"), value: degrees(exif.gpsLongitude, "E", "W") });
    if (isFinite(exif.gpsAltitude)) {
        const below = Number(bytes(exif.gpsValue(5))[0]) === 1;
        rows.push({ key: "altitude", name: qsTr("Altitude"), value: (below ? qsTr("%1 m below the sea") : qsTr("%1 m")).arg(number(exif.gpsAltitude)) });
    }
    return rows;
}

// Degrees, minutes and seconds, rounded once so that there are never 60 of the latter two.
function degrees(value, positive, negative) {
    const hundredths = Math.round(Math.abs(value) * 360000);
    const seconds = (hundredths % 6000 / 100).toFixed(2);
    return "%1° %2′ %3″ %4".arg(Math.floor(hundredths / 360000)).arg(Math.floor(hundredths / 6000) % 60).arg(seconds)
                           .arg(value < 0 ? negative : positive);
}

function text(tag, value) {
    const known = meanings[tag];
    if (known) {
        const first = first_(value);
        return known[first] || qsTr("Unknown (%1)").arg(first);
    }
    switch (tag) {
    case 306: case 36867: case 36868: return date(plain(value));
    case 33434: return exposure(value);
    case 33437: return "f/" + number(value);
    case 36864: case 40960: return version(bytes(value));
    case 37121: return components(bytes(value));
    case 37378: case 37381: return "f/" + number(Math.round(Math.pow(2, value / 2) * 10) / 10);
    case 37377: return exposure(Math.pow(2, -value));
    case 37380: return (value > 0 ? "+" : "") + number(value) + " EV";
    case 37382: return isFinite(value) ? number(value) + " m" : qsTr("Infinite");
    case 37385: return flash(value);
    case 37386: case 41989: return number(value) + " mm";
    case 37510: return comment(bytes(value));
    case 41988: return value > 0 ? number(value) + "×" : qsTr("None");
    case 42034: return lens(value);
    }
    return plain(value);
}

function gpsText(exif, tag) {
    const value = exif.gpsValue(tag);
    switch (tag) {
    case 0: return [].concat(value).join(".");
    case 7: return Array.isArray(value) ? value.map((part, index) => twoDigits(part, index)).join(":") : plain(value);
    case 9: case 10: return gpsLetters[tag][first_(value)] || plain(value);
    case 13: return number(value) + " " + (gpsLetters[plain(exif.gpsValue(12))] || "");
    case 15: return direction(value, exif.gpsValue(14));
    case 17: return direction(value, exif.gpsValue(16));
    case 24: return direction(value, exif.gpsValue(23));
    case 27: case 28: return comment(bytes(value));
    case 29: return plain(value).replace(/:/g, "-");
    case 30: return first_(value) === 1 ? qsTr("Yes") : qsTr("No");
    case 31: return number(value) + " m";
    }
    return plain(value);
}

// Any value: texts are the first element of a list, bytes are counted.
function plain(value) {
    if (value === undefined || value === null)
        return "";
    if (value instanceof ArrayBuffer)
        return value.byteLength === 1 ? qsTr("1 byte") : qsTr("%1 bytes").arg(value.byteLength);
    if (Array.isArray(value)) {
        const shown = value.slice(0, 12).map(plain).join(", ");
        return value.length > 12 ? qsTr("%1, … (%2 values)").arg(shown).arg(value.length) : shown;
    }
    return typeof value === "number" ? number(value) : String(value).trim();
}
function first_(value) {
    const first = Array.isArray(value) ? value[0] : value;
    return first instanceof ArrayBuffer ? bytes(first)[0] : first;
}
function bytes(value) {
    const first = Array.isArray(value) && value[0] instanceof ArrayBuffer ? value[0] : value;
    return first instanceof ArrayBuffer ? Array.from(new Uint8Array(first)) : first === undefined ? [] : [].concat(first);
}
function number(value) {
    if (!isFinite(value))
        return isNaN(value) ? qsTr("Unknown") : qsTr("Infinite");
    return String(Math.round(value * 1000) / 1000);
}
function twoDigits(value, index) {
    const text = index === 2 ? number(value) : String(Math.floor(value));
    return /^\d(\.|$)/.test(text) ? "0" + text : text;
}
function date(value) {
    return value.replace(/^(\d{4}):(\d\d):(\d\d)/, "$1-$2-$3");
}
function exposure(seconds) {
    if (!(seconds > 0) || !isFinite(seconds))
        return number(seconds);
    return seconds < 0.3 ? "1/%1 s".arg(Math.round(1 / seconds)) : number(seconds) + " s";
}
// Up to four bytes of a big-endian file come in reverse. Versions and components show which way they are.
var versions = [ "0100", "0110", "0200", "0210", "0220", "0221", "0230", "0231", "0232", "0300" ];

function version(codes) {
    const told = String.fromCharCode.apply(null, codes);
    const reversed = told.split("").reverse().join("");
    const text = !versions.includes(told) && versions.includes(reversed) ? reversed : told;
    return /^\d{4}$/.test(text) ? text.replace(/^0?(\d+)(\d\d)$/, "$1.$2") : qsTr("Unknown");
}
function components(codes) {
    const ordered = codes[0] === 0 ? codes.slice().reverse() : codes;
    return ordered.map(code => [ "", "Y", "Cb", "Cr", "R", "G", "B" ][code] || "").join(" ").trim();
}
// The first eight bytes name the encoding.
function comment(codes) {
    const encoding = String.fromCharCode.apply(null, codes.slice(0, 5));
    if (encoding !== "ASCII" && codes.slice(0, 8).some(code => code !== 0))
        return codes.length === 1 ? qsTr("1 byte") : qsTr("%1 bytes").arg(codes.length);
    return codes.slice(8, 2000).map(code => code >= 32 && code < 127 ? String.fromCharCode(code) : " ").join("").trim();
}
function direction(value, reference) {
    const letter = plain(reference).charAt(0);
    return number(value) + "°" + (letter === "M" ? qsTr(" magnetic") : letter === "T" ? qsTr(" true") : "");
}
function flash(value) {
    const parts = [ value & 1 ? qsTr("Fired") : qsTr("Did not fire") ];
    if ((value & 24) === 24)
        parts.push(qsTr("automatic"));
    if (value & 64)
        parts.push(qsTr("red-eye reduction"));
    return parts.join(", ");
}
function lens(value) {
    if (!Array.isArray(value) || value.length < 4)
        return plain(value);
    const range = (from, to) => from === to ? number(from) : number(from) + "–" + number(to);
    return range(value[0], value[1]) + " mm" + (value[2] > 0 ? " f/" + range(value[2], value[3]) : "");
}

function fileSize(count) {
    if (count < 1000)
        return count + " bytes";
    return count < 1e6 ? (count / 1e3).toFixed(count < 1e4 ? 1 : 0) + " kB" : (count / 1e6).toFixed(1) + " MB";
}
