#!/usr/bin/env bash
# Checks that the sources are formatted as `./dev format` does it. Usage: format.sh PROJECT_FOLDER
# Ends with 77, skipped, where that clang-format is not installed: others format differently.
set -u
root=${1:?project folder}
version=14
formatter=$(command -v "clang-format-$version" || command -v clang-format)
if ! "${formatter:-false}" --version 2>/dev/null | grep -q "version $version\."; then
    echo "skipped: clang-format $version is not installed"
    exit 77
fi
cd "$root" || exit 1
find bench examples include json platform simulation src tests tool \( -name '*.h' -o -name '*.hpp' -o -name '*.cpp' \) -print0 |
    xargs -0 "$formatter" --dry-run -Werror || { echo "./dev format formats them"; exit 1; }
echo "all sources are formatted"
