#!/usr/bin/env bash
# The tab key completes commands, options, files and what the target has in zsh.
# shellcheck source=tests/install/environment.bash
. "$(dirname "$0")/environment.bash"
shell=zsh
# shellcheck source=tests/install/completion.bash
. "$source/tests/install/completion.bash"
