#!/usr/bin/env bash
# Runs clang-tidy on one source of build/dev's compilation; a source that passed before, with all that it includes and
# the same rules, is not looked at again.
set -uo pipefail
source "$(dirname "$0")/common.sh"

file=$1
folder=${XDG_CACHE_HOME:-${HOME:-/tmp}/.cache}/spectrane-tidy
mkdir -p "$folder"
command=$(grep "\"command\".*-c $PWD/$file\"" build/dev/tidy/compile_commands.json | head -1 |
  sed -e 's/.*"command": "//; s/",$//; s/\\"/"/g; s/\\\\/\\/g; s/ -o [^ ]* -c / -E -P /; s/^[^ ]*ccache //')
stamp=$( { cat .clang-tidy "$(dirname "$file")/.clang-tidy" 2>/dev/null; clang-tidy --version; sh -c "$command" 2>/dev/null || cat "$file"; } | sha256sum | cut -c1-64)
[ -e "$folder/$stamp" ] && exit 0

if found=$(clang-tidy -p build/dev/tidy --quiet --extra-arg=-Wno-unknown-warning-option "$file" 2>/dev/null); then
  touch "$folder/$stamp"
else
  printf '%s\n' "$found" | grep -E '(error|warning):' | sort -u
  exit 1
fi
