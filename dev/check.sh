#!/usr/bin/env bash
# The rules of the code that a script can hold: format, floors, headers that stand alone, no string connects, names,
# and clang-tidy. `dev/check.sh --fast` leaves the last one out. Needs a configured build/dev.
set -uo pipefail
source "$(dirname "$0")/common.sh"

status=0
fail() { printf '%s\n' "$1" >&2; status=1; }

mapfile -t sources < <(git ls-files --cached --others --exclude-standard 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp')

# Format.
unformatted=$(clang-format --dry-run -Werror "${sources[@]}" 2>&1 | grep -oE '^[^:]+\.(cpp|h)' | sort -u)
[ -z "$unformatted" ] || fail "Not formatted (clang-format -i):
$unformatted"

# Includes run downward only: each floor names the floors it may use.
declare -A may=(
  [base]='base'
  [files]='base|files'
  [link]='base|link'
  [modes]='base|files|link|modes'
  [simulator]='base|files|link|modes|simulator'
  [cli]='base|files|link|modes|cli'
)
for floor in "${!may[@]}"; do
  upward=$(grep -rnE '^#include "' "src/$floor" --include='*.h' --include='*.cpp' --exclude-dir=windows | grep -vE "#include \"(${may[$floor]})/|#include \"texts.inc\"" || true)
  [ -z "$upward" ] || fail "Includes that run upward from src/$floor:
$upward"
done
qt_below=$(grep -rnE '#include <Q' src/base src/files || true)
[ -z "$qt_below" ] || fail "Qt below its floor:
$qt_below"

# One header shape.
for header in $(printf '%s\n' "${sources[@]}" | grep '\.h$'); do
  head -1 "$header" | grep -q '^#pragma once' || fail "$header does not begin with #pragma once"
  ! grep -nE '^using namespace' "$header" || fail "$header has a using directive"
done
strings=$(grep -nE '\b(SIGNAL|SLOT)\(' "${sources[@]}" || true)
[ -z "$strings" ] || fail "String connects:
$strings"

# Headers stand alone: each is the only include of a file, compiled as the simulator's sources and those of the
# windows are (together the widest set).
if [ -f build/dev/compile_commands.json ]; then
  flags=$(grep -E '"command".*(simulatorprogram|frmbasic)\.cpp\.o' build/dev/compile_commands.json |
    grep -oE -- '(-I|-isystem )[^ ]+|-DQT[A-Z_0-9]+' | sort -u | tr '\n' ' ')
  lone=build/dev/lone-headers
  rm -rf "$lone" && mkdir -p "$lone"
  launcher=$(command -v ccache || true)
  printf '%s\n' "${sources[@]}" | grep '^src/.*\.h$' | xargs -P "$jobs" -I{} bash -c \
    'name=$(echo "{}" | tr / _); echo "#include \"${1#src/}\"" >"$0/$name.cpp"
     '"$launcher"' g++ -std=c++20 -fPIC -c -o "$0/$name.o" -DSPECTRANE_VERSION="\"0\"" -DSPECTRANE_BRAND_NUMBER=9 '"$flags"' -Isrc "$0/$name.cpp" 2>"$0/$name.err" ||
       { echo "Header does not stand alone: $1"; grep -m2 error "$0/$name.err"; }' "$lone" {} >"$lone/result"
  [ ! -s "$lone/result" ] || fail "$(cat "$lone/result")"
fi

# clang-tidy, remembered by the content of the file with all that it includes.
if [ "${1:-}" != --fast ] && [ -f build/dev/compile_commands.json ]; then
  # Without the precompiled headers, which are those of another compiler.
  mkdir -p build/dev/tidy
  sed -E 's/ -Winvalid-pch| -include [^ ]*cmake_pch\.hxx//g' build/dev/compile_commands.json >build/dev/tidy/compile_commands.json
  tidied=$(printf '%s\n' "${sources[@]}" | grep '^src/.*\.cpp$' | xargs -P "$jobs" -n 1 ./dev/tidy-file.sh) || status=1
  [ -z "$tidied" ] || fail "$tidied"
fi

[ "$status" -eq 0 ] && echo "All rules hold."
exit "$status"
