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
  upward=$(grep -rnE '^#include "' "src/$floor" --include='*.h' --include='*.cpp' | grep -vE "#include \"(${may[$floor]})/|#include \"texts.inc\"" || true)
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

# Headers stand alone.
if [ -f build/dev/compile_commands.json ]; then
  flags=$(grep -m1 -A1 'src/link/sci.cpp' build/dev/compile_commands.json >/dev/null && \
    grep -oE '"command": "[^"]*sci\.cpp[^"]*' build/dev/compile_commands.json | head -1 | grep -oE -- '(-I|-isystem )[^ ]+|-D[A-Z_0-9]+(=[^ ]+)?' | grep -v VERSION= | tr '\n' ' ')
  printf '%s\n' "${sources[@]}" | grep '^src/.*\.h$' | xargs -P "$jobs" -I{} sh -c \
    "g++ -std=c++20 -fPIC -fsyntax-only -x c++ -DSPECTRANE_VERSION='\"0\"' $flags -Isrc {} 2>/tmp/spectrane-header.\$\$ || { echo 'Header does not stand alone: {}'; head -3 /tmp/spectrane-header.\$\$; }; rm -f /tmp/spectrane-header.\$\$" \
    >/tmp/spectrane-headers.$$
  [ ! -s /tmp/spectrane-headers.$$ ] || fail "$(cat /tmp/spectrane-headers.$$)"
  rm -f /tmp/spectrane-headers.$$
fi

if [ "${1:-}" != --fast ] && [ -f build/dev/compile_commands.json ]; then
  printf '%s\n' "${sources[@]}" | grep '^src/.*\.cpp$' |
    xargs -P "$jobs" -n 4 clang-tidy -p build/dev --quiet >/tmp/spectrane-tidy.$$ 2>/tmp/spectrane-tidy-err.$$ || \
    fail "$(grep -E 'error:|warning:' /tmp/spectrane-tidy.$$ | sort -u; grep -E '^error' /tmp/spectrane-tidy-err.$$)"
  rm -f /tmp/spectrane-tidy.$$ /tmp/spectrane-tidy-err.$$
fi

[ "$status" -eq 0 ] && echo "All rules hold."
exit "$status"
