#!/usr/bin/env bash
# The man pages are without complaints, and that of the tool has the commands, options and exit statuses of its help alone.
# shellcheck source=tests/install/environment.bash
. "$(dirname "$0")/environment.bash"
command -v man >/dev/null || not_run "there is no man (package man-db)"
command -v mandoc >/dev/null || not_run "there is no mandoc"
cmake --install "$build" --prefix "$work/prefix" >install.log
tool=$work/prefix/bin/trellan-update
pages=$work/prefix/share/man

"$source/docs/man/make-tool-page.sh" "$tool" >made
diff "$source/docs/man/trellan-update.1" made ||
    fail "the help has changed: docs/man/make-tool-page.sh TOOL >docs/man/trellan-update.1"

for page in man1/trellan-update.1 man5/trellan-archive.5; do
    [ -f "$pages/$page" ] || fail "$page is not installed"
    MANROFFSEQ='' MANWIDTH=100 man --warnings -E UTF-8 -l "$pages/$page" >"$(basename "$page")" 2>complaints
    [ ! -s complaints ] || { cat complaints >&2; fail "man complains of $page"; }
    mandoc -Tlint -W warning "$pages/$page" || fail "mandoc complains of $page"
done
expect "the page that man finds" "$pages/man1/trellan-update.1" "$(MANPATH=$pages man -w trellan-update)"

# section NAME: its lines in the page of the tool.
section() { sed -n "/^$1\$/,/^[A-Z]/p" trellan-update.1; }
commands=$("$tool" help | sed -n '/^Commands:/,/^$/s/^  \([a-z-]*\).*/\1/p')
expect "the commands" "$(sort <<<"$commands")" "$(section COMMANDS | sed -n 's/^       \([a-z-]\{2,\}\)\( .*\)\?$/\1/p' | sort)"
[ "$(wc -l <<<"$commands")" -gt 10 ] || fail "the help shows no commands"
options() { # what begins a line of the input behind blanks
    sed -nE 's/^ +(-[a-z], )?(--[a-z-]+)( .*)?$/\2/p' | sort -u
}
helps=$("$tool" help; for command in $commands; do "$tool" help "$command"; done)
expect "the options" "$(options <<<"$helps")" "$(section OPTIONS | options)"
statuses() { sed -nE 's/^ +([0-9]+(, [0-9]+)*)( .*)?$/\1/p'; }
expect "the exit statuses" "$("$tool" help | sed -n '/^Exit status:/,/^$/p' | statuses)" "$(section 'EXIT STATUS' | statuses)"
sed 's/\\-/-/g' "$pages/man1/trellan-update.1" >page-with-plain-dashes
for command in $commands; do
    meaning=$("$tool" help "$command" | sed -n 's/^  1  //p')
    [ -n "$meaning" ] || fail "the help of $command does not tell what 1 means"
    grep -qxF -e "$meaning." page-with-plain-dashes ||
        fail "the page does not tell that $command ends with 1 where $meaning"
done
for heading in ENVIRONMENT FILES EXAMPLES; do
    [ "$(section "$heading" | wc -l)" -gt 3 ] || fail "the page of the tool has no $heading"
done

# The page of the format has each property as an entry.
sed -n '/^## Three worked/q; s/^| "\([A-Za-z0-9]*\)" .*/\1/p' "$source/docs/archive-format.md" | sort -u >properties
[ "$(wc -l <properties)" -gt 15 ] || fail "the document of the format names no properties"
while read -r property; do
    grep -q "^       \"$property\"" trellan-archive.5 || fail "the page of the format lacks $property"
done <properties
