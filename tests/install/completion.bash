# Sourced by the tests of the completion in the shells: types command lines into the shell $shell with the tab key, and looks at
# the words that it hands to the tool then. The tool and its completion are the installed ones.
# shellcheck shell=bash disable=SC2016,SC1003 # what other shells are to expand, or not, stands in single quotes
# shellcheck disable=SC2154 # variables of environment.bash, and of coproc
command -v "$shell" >/dev/null || not_run "there is no $shell"
command -v script >/dev/null || not_run "there is no script (package bsdutils), which makes a terminal"
prefix=$work/prefix examples=$source/examples
cmake --install "$build" --prefix "$prefix" >install.log

# In place of the tool: it asks the tool for completions, and notes everything else.
mkdir "$work/bin" "$work/home" "$work/example"
cat >"$work/bin/trellan-update" <<TEXT
#!/bin/sh
[ "\$1" != complete ] || exec '$prefix/bin/trellan-update' "\$@"
{ for word; do printf '[%s]' "\$word"; done; echo; } >>'$work/typed'
TEXT
chmod +x "$work/bin/trellan-update"
mkdir "$work/home/tools" "$work/home/my tools"
ln -s "$work/bin/trellan-update" "$work/home/tools"
ln -s "$work/bin/trellan-update" "$work/home/my tools"

# The example target, without a drive that would have to be mounted, and with names that shells have plans for.
cd "$work/example" || exit
cp -R "$examples/archive" archive
mkdir 'two words' 'arc'\''s $HOME'
sed -e '/"flashDrive"/d' -e 's/"AI8100"/"AI (24 V)"/' -e 's/"IoCpld"/"$PATH\&'\''x'\''"/' -e 's/"UserIpl"/"User:Ipl=\\"1\\""/' \
    -e 's/"CnIpl"/"CnIpl!x*?"/' \
    "$examples/target.json" >target.json
cp target.json 'two words/my target.json'
cp target.json "$work/home/at home.json"

export PATH="$work/bin:$PATH" HOME=$work/home TERM=dumb LC_ALL=C.UTF-8 XDG_CONFIG_HOME=$work/home XDG_DATA_HOME=$work/home
unset TRELLAN_TARGET TRELLAN_TRACE
case $shell in
    bash)
        echo "PS1='> '; bind 'set bell-style none'; source '$prefix/share/bash-completion/completions/trellan-update'" >"$work/rc"
        start=(bash --noprofile --rcfile "$work/rc" -i) ;;
    zsh)
        cat >"$work/home/.zshrc" <<TEXT
PS1='> '; fpath=('$prefix/share/zsh/site-functions' \$fpath); autoload -U compinit; compinit -u -D
setopt no_beep; bindkey -e
TEXT
        export ZDOTDIR=$work/home
        start=(zsh -i) ;;
    fish)
        # Where there is this folder, it makes none of all the system's man pages meanwhile.
        mkdir -p "$work/home/fish/generated_completions"
        ln -s "$prefix/share/fish/vendor_completions.d" "$work/home/fish/completions"
        start=(fish -i) ;;
esac

coproc terminal { script -qfec "${start[*]@Q}" "$work/screen" 2>&1; }
exec {keys}>&"${terminal[1]}" {screen}<&"${terminal[0]}"
cat <&"$screen" >/dev/null &
reader=$!
trap 'kill "$terminal_PID" "$reader" 2>/dev/null || true; rm -rf "$work"' EXIT

# await COUNT: waits until so many command lines were noted.
await() {
    local i
    for ((i = 0; i < 100; i++)); do
        [ "$(wc -l 2>/dev/null <"$work/typed" || true)" != "$1" ] || return 0
        sleep 0.1
    done
    return 1
}

# zsh leaves a quote open behind which more names may follow.
quote1='' quote2=''
[ "$shell" != zsh ] || quote1=\' quote2=\"

failures=0 count=0
# types KEYS WORDS [TOOL]: once the keys, without the tool's name, are pressed and then Enter, the tool is given the words. (In
# KEYS "<TAB>" is the tab key. TOOL is how the tool is called where it is not by its name.)
types() {
    count=$((count + 1))
    printf '%s %s' "${3:-trellan-update}" "${1//<TAB>/$'\t'}" >&"$keys"
    sleep 0.1
    printf '\r' >&"$keys"
    if ! await "$count"; then
        tail -n 5 "$work/screen" | cat -v >&2
        fail "nothing was run for: $1"
    fi
    local words
    words=$(tail -n 1 "$work/typed" | sed 's:/\]:]:g') # shells differ in whether they leave a slash behind a folder
    if [ "$words" != "$2" ]; then
        echo "${3-}$1 became $words, and not $2" >&2
        failures=$((failures + 1))
    fi
}

sleep 1
types 'first' '[first]'
types 'comp<TAB>archive' '[compare][archive]'
types 'help insp<TAB>' '[help][inspect]'
types 'update arch<TAB> --dry<TAB>' '[update][archive][--dry-run]'
types 'update archive --serial-numb<TAB>1' '[update][archive][--serial-numbers][1]'
types 'compare archive --verif<TAB>' '[compare][archive][--verif]'
types 'check two<TAB>' '[check][two words]'
types 'inspect archive/hcn-firm<TAB> archive/site<TAB>' '[inspect][archive/hcn-firmware.bin][archive/site.cfg]'
types 'update archive --progress ne<TAB>' '[update][archive][--progress][never]'
types 'update archive --progress=al<TAB>' '[update][archive][--progress=always]'
types 'scan --target tw<TAB>my<TAB>' '[scan][--target][two words/my target.json]'
types 'scan --target=targ<TAB>' '[scan][--target=target.json]'
types 'installed --target target.json --board-types KR<TAB>' '[installed][--target][target.json][--board-types][KR5120]'
types 'installed --target=target.json --board-types=KR<TAB>' '[installed][--target=target.json][--board-types=KR5120]'
types 'installed --target target.json --board-types KR5120,CN<TAB>' '[installed][--target][target.json][--board-types][KR5120,CN7210]'
types 'installed --board-types KR<TAB>' '[installed][--board-types][KR]'
types 'installed --target two\ words/my\ target.json --serial-numbers 47<TAB>' \
    '[installed][--target][two words/my target.json][--serial-numbers][4711]'
types 'installed --target "two words/my target.json" --serial-numbers 47<TAB>' \
    '[installed][--target][two words/my target.json][--serial-numbers][4711]'
types "installed --target ~/'at home.json' --serial-numbers 10<TAB>" \
    "[installed][--target][$work/home/at home.json][--serial-numbers][1042]"
types 'explain archive --target target.json --board-types KR5120 --element 3<TAB>' \
    '[explain][archive][--target][target.json][--board-types][KR5120][--element][3]'
types 'scan --target target.json --board-types AI<TAB>' '[scan][--target][target.json][--board-types][AI (24 V)]'
types "scan --target target.json --board-types 'KR5120,AI<TAB>$quote1" '[scan][--target][target.json][--board-types][KR5120,AI (24 V)]'
types 'scan --target target.json --element-names User:<TAB>' '[scan][--target][target.json][--element-names][User:Ipl="1"]'
types 'scan --target target.json --element-names=User:<TAB>' '[scan][--target][target.json][--element-names=User:Ipl="1"]'
types 'scan --target target.json --element-names IoFpga1,\$P<TAB>' \
    '[scan][--target][target.json][--element-names][IoFpga1,$PATH&'\''x'\'']'
types 'scan --target target.json --element-names "IoFpga1 \$P<TAB>'"$quote2" \
    '[scan][--target][target.json][--element-names][IoFpga1 $PATH&'\''x'\'']'
types 'scan --target target.json --element-names "CnIpl<TAB>'"$quote2" '[scan][--target][target.json][--element-names][CnIpl!x*?]'
types "scan --target target.json --element-names 'CnIpl<TAB>$quote1" '[scan][--target][target.json][--element-names][CnIpl!x*?]'
types 'scan --target target.json --element-names CnIpl<TAB>' '[scan][--target][target.json][--element-names][CnIpl!x*?]'
# The shell that is typed into expands the tilde.
# shellcheck disable=SC2088 # the tilde stays as it is typed
for tool in '~/tools/trellan-update' '../bin/trellan-update' '~/my\ tools/trellan-update'; do
    types 'compare archive --verb<TAB>' '[compare][archive][--verbose]' "$tool"
done
types 'compare archive --verb<TAB>' '[compare][archive][--verbose]' '$HOME/tools/trellan-update'
if [ "$shell" = fish ]; then # the others complete nothing for what stands in quotes
    types 'compare archive --verb<TAB>' '[compare][archive][--verbose]' '"$HOME/tools/trellan-update"'
fi
# Of a tool that is not there nothing is run; what the screen then shows is the line that was typed and completed alone.
lines=$(wc -l <"$work/screen")
printf '%s check two\t\r' '~nobody/there/trellan-update' >&"$keys"
sleep 2
! tail -n "+$((lines + 1))" "$work/screen" | grep -aE 'in function|in command substitution|line [0-9]+\)' >&2 ||
    { echo "a tool that is not there is complained of while completing" >&2; failures=$((failures + 1)); }
types 'inspect $HOME/at<TAB>' "[inspect][$work/home/at home.json]"
types "inspect ~/at<TAB>" "[inspect][$work/home/at home.json]"
types 'check arc\'\''<TAB>' '[check][arc'\''s $HOME]'

printf 'exit\r' >&"$keys"
[ "$failures" -eq 0 ] || exit 1
echo "$count command lines were completed"
