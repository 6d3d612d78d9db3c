#!/usr/bin/env bash
# Checks that includes go in the agreed directions only. Usage: include-directions.sh PROJECT_FOLDER
#
#   from                          may include
#   platform                      the standard library, platform
#   include                       the standard library, include
#   base                          include, platform, base
#   facade (ZoCTrellanUpdater.h)  the above, facade; likewise the records (ZoSUpdateFile.h, ZoSUpdateElement.h)
#   archive, inventory            the above, their own folder
#   assignment                    the above, archive, inventory
#   operation                     the above, assignment, their own folder
#   inspection                    the above, operation, their own folder
#   updater                       all of the above but inspection
#   json                          json, any library
#   simulation                    platform, json, simulation, any library
#   tool                          include, json, tool, any library
#
# A header of src has a level, and includes what is below it only, not what else is in its folder; those of base may include
# one another. No headers include each other in a loop: tsort finds them.
# In src any header of the C or C++ library may be used, but no other library's.
set -u
root=${1:?project folder}
violations=0
edges="" # pairs of a header and one that it includes

# The functions below answer in the variable `answer`: a process for each answer would take most of the time.

# group FILE: the group of a file, named relative to the project's folder.
group() {
    case $1 in
        include/*) answer=include ;;
        platform/*) answer=platform ;;
        src/updater/ZoCTrellanUpdater.h | src/archive/ZoSUpdateFile.h | src/inventory/ZoSUpdateElement.h) answer=facade ;;
        src/*/*) answer=${1#src/}; answer=${answer%%/*} ;;
        json/*) answer=json ;;
        simulation/*) answer=simulation ;;
        tool/*) answer=tool ;;
        *) answer=unknown ;;
    esac
}

# allowed GROUP: the groups that the group may include.
allowed() {
    case $1 in
        platform) answer="platform" ;;
        include) answer="include" ;;
        base) answer="include platform base" ;;
        facade) answer="include platform base facade" ;;
        archive | inventory) answer="include platform base facade $1" ;;
        assignment) answer="include platform base facade archive inventory assignment" ;;
        operation) answer="include platform base facade archive inventory assignment operation" ;;
        inspection) answer="include platform base facade archive inventory assignment operation inspection" ;;
        updater) answer="include platform base facade archive inventory assignment operation updater" ;;
        json) answer="json" ;;
        simulation) answer="platform json simulation" ;;
        tool) answer="include json tool" ;;
        *) answer="" ;;
    esac
}

complain() {
    echo "$1"
    violations=$((violations + 1))
}

# resolve FILE NAME: the project's file that an #include "NAME" in FILE means; empty when there is none.
resolve() {
    local place
    for place in "${1%/*}/" include/ platform/ src/ ""; do
        if [ -f "$root/$place$2" ]; then
            answer=$place$2
            case $answer in
                *./*) answer=$(realpath --relative-to="$root" "$root/$answer") ;;
            esac
            return
        fi
    done
    answer=""
}

check_quoted() {
    local file=$1 name=$2 from=$3 to
    resolve "$file" "$name"
    to=$answer
    if [ -z "$to" ]; then
        complain "$file: includes \"$name\", which is no file of this project"
        return
    fi
    group "$to"
    local target=$answer
    allowed "$from"
    case " $answer " in
        *" $target "*) ;;
        *) complain "$file ($from): must not include $to ($target)" ;;
    esac
    case $file in
        *.h) check_header "$file" "$to" "$from" "$target" ;;
    esac
}

# check_header HEADER INCLUDED GROUP INCLUDED_GROUP
check_header() {
    edges+="$1 $2"$'\n'
    [ "$1" != "$2" ] || complain "$1: includes itself" # which tsort does not tell
    case $3 in
        facade | archive | inventory | assignment | operation | inspection)
            [ "$3" != "$4" ] || complain "$1 ($3): a header must not include $2, which is on its own level"
            ;;
    esac
}

check_angled() {
    local file=$1 name=$2 from=$3
    case $from in
        json | simulation | tool)
            resolve none/ "$name"
            [ -z "$answer" ] || complain "$file: includes <$name>, a file of this project, in angle brackets"
            ;;
        platform | include)
            case $name in
                *.h | */*) complain "$file: must include the standard library only, not <$name>" ;;
            esac
            ;;
        *)
            case $name in
                sys/*.h) ;;
                */* | *.hpp | zlib.h | pthread.h) complain "$file: must not use the library of <$name>" ;;
            esac
            ;;
    esac
}

files=$(cd "$root" && find include platform src json simulation tool -name '*.h' -o -name '*.cpp' -o -name '*.hpp' | sort)
[ -n "$files" ] || complain "no sources in $root"
for file in $files; do
    group "$file"
    from=$answer
    [ "$from" != unknown ] || complain "$file: belongs to no group"
    while IFS= read -r name; do
        case $name in
            \"*) name=${name#\"}; check_quoted "$file" "${name%\"}" "$from" ;;
            \<*) name=${name#<}; check_angled "$file" "${name%>}" "$from" ;;
        esac
    done < <(sed -nE 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*("[^"]*"|<[^>]*>).*/\1/p' "$root/$file")
done

loops=$(tsort <<<"$edges" 2>&1 >/dev/null) || complain "$loops"

[ "$violations" -eq 0 ] || { echo "$violations includes in wrong directions"; exit 1; }
echo "$(wc -w <<<"$files") files include in the agreed directions"
