#!/usr/bin/env bash
# The latest version of CHANGELOG.md is the project's. Usage: changelog.sh PROJECT_FOLDER
set -euo pipefail
root=$1
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\) .*/\1/p' "$root/CMakeLists.txt")
latest=$(sed -n 's/^## \[\([0-9.]*\)\] - [0-9-]*$/\1/p' "$root/CHANGELOG.md" | head -n 1)
if [ -z "$version" ] || [ "$latest" != "$version" ]; then
    echo "the project is ${version:-without a version}, and CHANGELOG.md ends with ${latest:-none}"
    exit 1
fi
