// JSON as text for people. The values are never read into numbers: what the server wrote is shown.
.pragma library

var colors = { key: "#8fcbdc", string: "#b5d99c", number: "#f2b84b", word: "#dba6e6" };

// Indented; empty if the text isn't JSON.
function pretty(text) {
    try {
        JSON.parse(text);
    } catch (error) {
        return "";
    }
    const tokens = text.match(/"(?:\\.|[^"\\])*"|[{}\[\],:]|[^\s{}\[\],:"]+/g);
    const pieces = [];
    let depth = 0;
    const line = () => "\n" + "    ".repeat(depth);
    for (let i = 0; i < tokens.length; ++i) {
        const token = tokens[i];
        if (token === "{" || token === "[") {
            const next = tokens[i + 1];
            if (next === "}" || next === "]") {
                pieces.push(token + next);
                ++i;
            } else {
                ++depth;
                pieces.push(token, line());
            }
        } else if (token === "}" || token === "]") {
            --depth;
            pieces.push(line(), token);
        } else if (token === ",") {
            pieces.push(token, line());
        } else {
            pieces.push(token === ":" ? ": " : token);
        }
    }
    return pieces.join("");
}

// Rich text of what pretty() gave.
function colored(json) {
    const span = (color, text) => "<span style=\"color:" + color + "\">" + escaped(text) + "</span>";
    const painted = json.replace(/("(?:\\.|[^"\\])*")(:)?|-?\d[\d.eE+-]*|true|false|null|[^"\dtfn-]+/g, (token, text, colon) => {
        if (colon)
            return span(colors.key, text) + colon;
        if (text)
            return span(colors.string, text);
        if (/^[-\d]/.test(token))
            return span(colors.number, token);
        return /^[tfn]/.test(token) ? span(colors.word, token) : token;
    });
    return "<div style=\"white-space:pre-wrap\">" + painted + "</div>";
}

function escaped(text) {
    return text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;");
}
