# Prints the man page of the archive format: docs/archive-format.md without its worked examples.
#   awk -v date=YYYY-MM-DD -f archive-page.awk archive-format.md >trellan-archive.5
# Reads the Markdown of that document: headings, paragraphs, code, lists of one level and tables.

function plain(text) {
    gsub(/\\/, "\\e", text)
    return text
}

# Bold what is code or bold in the document; a link is its text.
function inline(text,    out, at, mark, length_of) {
    while (match(text, /\[[^][]*\]\([^()]*\)/)) {
        out = substr(text, RSTART + 1, RLENGTH - 1)
        out = substr(out, 1, index(out, "](") - 1)
        text = substr(text, 1, RSTART - 1) out substr(text, RSTART + RLENGTH)
    }
    text = plain(text)
    out = ""
    while (match(text, /``[^`]*`[^`]*``|`[^`]*`|\*\*[^*]*\*\*/)) {
        mark = substr(text, RSTART, 2) == "``" || substr(text, RSTART, 2) == "**" ? 2 : 1
        at = substr(text, RSTART + mark, RLENGTH - 2 * mark)
        gsub(/-/, "\\-", at)
        gsub(/^ | $/, "", at)
        out = out substr(text, 1, RSTART - 1) "\\fB" at "\\fP"
        text = substr(text, RSTART + RLENGTH)
    }
    return out text
}

function line(text) {
    print (text ~ /^[.']/ ? "\\&" : "") text
}

# What has been collected of a paragraph or list item.
function flush() {
    if (paragraph != "" && paragraph !~ /^Contents:/) {
        line(inline(paragraph))
    }
    paragraph = ""
}

function endCode() {
    if (inCode) {
        print ".EE"
        print ".RE"
    }
    inCode = 0
}

function code(text) {
    flush()
    if (!inCode) {
        print ".PP"
        print ".RS 4"
        print ".EX"
    }
    inCode = 1
    line(plain(text))
}

# Whether a cell is told by the name of its column: not what the entry is all about.
function isNamed(name, count) {
    return count > 2 && name != "" && name != "meaning"
}

# A row becomes an entry under its first cell.
function row(text,    cells, count, i, body, cell) {
    gsub(/^\| *| *\|$/, "", text)
    count = split(text, cells, / *\| */)
    if (!inTable) {
        inTable = 1
        split(text, names, / *\| */)
        return
    }
    print ".TP"
    line("\\fB" inline(cells[1]) "\\fP")
    body = ""
    for (i = 2; i <= count; ++i) {
        cell = inline(cells[i])
        if (cell != "") {
            body = body (body == "" ? "" : "; ") (isNamed(names[i], count) ? "\\fI" names[i] "\\fP: " : "") cell
        }
    }
    line(body == "" ? "\\&" : body)
}

BEGIN {
    print ".\\\" Made by archive-page.awk of archive-format.md: change that."
    print ".TH TRELLAN\\-ARCHIVE 5 " date " \"\" \"File Formats\""
    print ".SH NAME"
    print "trellan\\-archive \\- format of firmware archives"
    print ".SH DESCRIPTION"
    headed = 1
}

/^## Three worked archives/ { exit }
/^# / { next }
/^```/ { fenced = !fenced; next }
fenced || /^    / { headed = 0; code(fenced ? $0 : substr($0, 5)); next }
/^$/ {
    endCode()
    flush()
    inTable = 0
    pending = !headed
    next
}
{ endCode() }
/^### / { flush(); print ".SS " inline(substr($0, 5)); headed = 1; next }
/^## / { flush(); print ".SH " toupper(inline(substr($0, 4))); headed = 1; next }
/^\|[-|]*$/ { next }
/^\|/ { flush(); row($0); headed = 0; next }
/^- / { flush(); print ".IP \\(bu 2"; paragraph = substr($0, 3); pending = headed = 0; next }
/^[0-9]+\. / { flush(); print ".IP " $1 " 4"; paragraph = substr($0, index($0, " ") + 1); pending = headed = 0; next }
{
    if (pending && $0 !~ /^ /) {
        flush()
        if ($0 !~ /^Contents:/) {
            print ".PP"
        }
    }
    pending = headed = 0
    sub(/^ +/, "")
    paragraph = paragraph (paragraph == "" ? "" : " ") $0
}

END {
    endCode()
    flush()
    print ".SH FILES"
    print ".TP"
    print ".I /usr/share/doc/trellan\\-update/docs/archive\\-format.md"
    print "The same with worked examples; beside it"
    print ".IR archive.schema.json ,"
    print "a JSON Schema of the description."
    print ".SH SEE ALSO"
    print ".BR trellan\\-update (1)"
}
