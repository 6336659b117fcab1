#!/usr/bin/env bash
# Runs clang-tidy on one compiled unit of build/asan (a source, or the sources of a folder as one), given by its whole
# path; a unit that passed before, with all that it includes and the same rules, is not looked at again.
set -uo pipefail
source "$(dirname "$0")/common.sh"

unit=$1
rules=.clang-tidy
# A folder of sources may have rules of its own.
folder=$(sed -n 's/^#include "\(.*\)\/[^/]*"$/\1/p' "$unit" | head -1)
[ -e "$folder/.clang-tidy" ] && [[ $unit == */Unity/* ]] && rules=$folder/.clang-tidy
passed=${XDG_CACHE_HOME:-${HOME:-/tmp}/.cache}/spectrane-tidy
mkdir -p "$passed"
command=$(grep "\"command\".*-c $unit\"" build/asan/compile_commands.json | head -1 |
  sed -e 's/.*"command": "//; s/",$//; s/\\"/"/g; s/\\\\/\\/g; s/ -o [^ ]* -c / -E -P /; s/^[^ ]*ccache //')
stamp=$( { cat .clang-tidy "$rules"; clang-tidy --version; sh -c "$command" 2>/dev/null || cat "$unit"; } | sha256sum | cut -c1-64)
[ -e "$passed/$stamp" ] && exit 0

if found=$(clang-tidy -p build/asan --config-file="$rules" --quiet --extra-arg=-Wno-unknown-warning-option "$unit" 2>/dev/null); then
  touch "$passed/$stamp"
else
  printf '%s\n' "$found" | grep -E '(error|warning):' | sort -u
  exit 1
fi
