#!/usr/bin/env bash
# Prints the man page of the tool: trellan-update.1.in, and what the tool's help says of commands, options and exit statuses.
#   make-tool-page.sh TOOL >trellan-update.1
set -euo pipefail
tool=$1
folder=$(dirname "$0")

# rows HEADING [COMMAND]: the rows below a heading of the help, as "NAME<tab>DESCRIPTION".
rows() {
    "$tool" help ${2:+"$2"} | sed -n "/^$1:\$/,/^\$/p" | sed -n -E 's/^ +([^ ].*[^ ]|[^ ])  +([^ ].*)$/\1\t\2/p'
}

escaped() {
    sed -e 's/\\/\\e/g' -e 's/-/\\-/g' -e "s/^[.']/\\\\\&&/"
}

# entry NAME DESCRIPTION: words in capitals are what stands for a value.
entry() {
    printf '.TP\n'
    printf '%s\n' "$1" | escaped | sed -E 's/([][]?[A-Z]{2,}[].]*)/\\fI\1\\fP/g; s/^/\\fB/; s/ \\fI/\\fP \\fI/; s/(\\fP)+$/\\fP/'
    printf '%s.\n' "$2" | escaped
}

commands=$(rows Commands | cut -d ' ' -f 1 | cut -f 1)

commands_part() {
    rows Commands | while IFS=$'\t' read -r name description; do
        entry "$name" "$description"
    done
}

# Each option once, in the order of the help of the commands that have most.
options_part() {
    local command
    { for command in update $commands; do rows Options "$command" | sed "s/^/$command\t/"; done; rows Options | sed 's/^/-\t/'; } |
        awk -F '\t' -v all="$(wc -w <<<"$commands")" '
            !($2 in text) { order[++count] = $2; text[$2] = $3 }
            $1 != "-" && !(($2, $1) in seen) { seen[$2, $1] = 1; number[$2]++; of[$2] = of[$2] (of[$2] ? ", " : "") $1 }
            END { for (i = 1; i <= count; ++i) {
                name = order[i]
                print name "\t" text[name] (number[name] && number[name] < all ? " (" of[name] ")" : "") } }' |
        while IFS=$'\t' read -r name description; do
            entry "$name" "$description"
        done
}

# What 1 means to each command, where that is not what it means to all.
failures() {
    local command meaning general
    general=$(rows 'Exit status' | sed -n 's/^1\t//p')
    for command in $commands; do
        meaning=$(rows 'Exit status' "$command" | sed -n 's/^1\t//p')
        [ "$meaning" = "$general" ] || entry "$command" "$meaning"
    done
}

exit_part() {
    rows 'Exit status' | while IFS=$'\t' read -r status meaning; do
        entry "$status" "$meaning"
        [ "$status" != 1 ] || printf '%s\n' "Of these commands it means:" .RS "$(failures)" .RE
    done
}

version=$("$tool" --version)
date=$(sed -n 's/^## \[.*\] - //p' "$folder/../../CHANGELOG.md" | head -n 1)
while IFS= read -r line; do
    case $line in
        @COMMANDS@) commands_part ;;
        @OPTIONS@) options_part ;;
        @EXIT_STATUS@) exit_part ;;
        *)
            line=${line//@VERSION@/${version##* }}
            printf '%s\n' "${line//@DATE@/$date}" ;;
    esac
done <"$folder/trellan-update.1.in"
