# What of each folder ran, from an export of llvm-cov in lcov's form, and a list of what did not.
#
#   awk -v root=FOLDER_OF_THE_PROJECT -v limits='FOLDER LINES BRANCHES;...' -v list=FILE -f coverage.awk EXPORT
#
# A branch is one outcome of one condition; those joined by && and || have their own, exceptions are none. Limits are in
# percent, "-" is none. Ends with 1 when a folder is below one. In the list the instances of a template each have their
# conditions.
function percent(all, hit) { return all ? 100 * hit / all : 0 }
# The text of a line of the source file, which is read up to there.
function source(number,    text) {
    while (at < number && (getline text < path) > 0) { ++at }
    sub(/^ +/, "", text)
    return text
}
BEGIN { FS = "[:,]"; printf "" >list }
/^SF:/ {
    path = substr($0, 4); file = substr(path, length(root) + 2); folder = file; sub(/\/.*/, "", folder)
    at = 0; last = 0; count = 0; split("", missed)
}
/^DA:/ && $2 > last {
    last = $2; order[++count] = $2
    if ($3 == 0) { missed[$2] = "not run" }
}
/^BRDA:/ && $5 + 0 == 0 && missed[$2] != "not run" {
    missed[$2] = (missed[$2] == "" ? "never " : missed[$2] ", ") ($4 % 2 ? "false" : "true")
}
/^LF:/ { lines[folder] += $2 }
/^LH:/ { run[folder] += $2 }
/^BRF:/ { branches[folder] += $2 }
/^BRH:/ { taken[folder] += $2 }
/^end_of_record/ {
    for (i = 1; i <= count; ++i) {
        if (missed[order[i]] != "") { print file ":" order[i] ": " missed[order[i]] ": " source(order[i]) >list }
    }
    close(path)
}
END {
    rows = split(limits, row, ";")
    for (i = 1; i <= rows; ++i) {
        split(row[i], limit, " "); folder = limit[1]
        line = percent(lines[folder], run[folder]); branch = percent(branches[folder], taken[folder])
        low = line < limit[2] || (limit[3] != "-" && branch < limit[3])
        printf "%-11s %6.2f %% of %5d lines (limit %s), %6.2f %% of %5d branches (limit %s)%s\n", folder, line,
            lines[folder], limit[2], branch, branches[folder], limit[3], low ? ": too few" : ""
        failed += low
    }
    exit failed != 0
}
