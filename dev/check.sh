#!/usr/bin/env bash
# The rules of the code that a script can hold: format, floors, headers that stand alone, no string connects, names,
# and clang-tidy. `dev/check.sh --fast` leaves the last one out. Needs a configured build/dev, and build/asan built for the
# last one.
set -uo pipefail
source "$(dirname "$0")/common.sh"

status=0
fail() { printf '%s\n' "$1" >&2; status=1; }

mapfile -t sources < <(git ls-files --cached --others --exclude-standard 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp' 'fuzz/*.cpp' 'fuzz/*.h')

# Format.
unformatted=$(clang-format --dry-run -Werror "${sources[@]}" 2>&1 | grep -oE '^[^:]+\.(cpp|h)' | sort -u)
[ -z "$unformatted" ] || fail "Not formatted (clang-format -i):
$unformatted"

# Includes run downward only: each floor names its files and what they may include.
logic='base|files|link|spectrum|modes|simulator'
floors=(
  "src/base/*|base"
  "src/files/*|base|files"
  "src/link/*|base|link"
  "src/spectrum/*|base|files|link|spectrum"
  "src/modes/*|base|files|link|modes"
  "src/tools/*|base|files|link|tools"
  "src/acquire/*|base|files|link|modes|acquire"
  "src/exchange/*|base|files|link|spectrum|exchange"
  "src/output/*|base|files|link|spectrum|modes|tools|output"
  "src/simulator/*|$logic"
  "src/cli/*|base|files|link|spectrum|modes|tools|acquire|exchange|output|cli"
  "src/app/desktop/*|base|files|app/desktop"
  "src/app/ground/*|base|files|link|spectrum|modes|output|app/ground"
  "src/*/windows/*|base|files|link|spectrum|modes|output|tools|app/ground"
  "src/app/[a-z]*|base|files|link|spectrum|modes|output|tools|app"
)
for floor in "${floors[@]}"; do
  upward=
  for file in "${sources[@]}"; do
    # A file belongs to the last floor whose pattern it fits; logic never includes a window.
    [[ $file == ${floor%%|*} ]] || continue
    case $floor in src/modes/* | src/spectrum/* | src/tools/* | src/output/*) [[ $file != */windows/* ]] || continue ;; src/app/\[*) [[ $file != src/app/*/* ]] || continue ;; esac
    allowed=$(grep -nE '^#include "' "$file" | grep -vE "#include \"(${floor#*|})/|#include \"(texts|icons).inc\"" || true)
    case $file in */windows/* | src/app/[a-z]*.*) ;; *) allowed+=$(grep -nE '^#include ".*/windows/' "$file" || true) ;; esac
    [ -z "$allowed" ] || upward+="$file: $allowed
"
  done
  [ -z "$upward" ] || fail "Includes that run upward from ${floor%%|*}:
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

# The build for sanitizers compiles the sources of a folder as one: what a source has for itself has a name that no other
# source of its folder gives to something. (The kinds of files are exempt and built one by one, as are benchmarks.)
twice=$(printf '%s\n' "${sources[@]}" | grep '\.cpp$' | grep -vE '^(src/files|bench)/' | xargs awk '
  FNR == 1 { inside = 0; folder = FILENAME; sub("/[^/]*$", "", folder) }
  /^namespace \{/ { inside = 1 }
  /^\}  \/\/ namespace$/ { inside = 0 }
  !inside || /^([ }#\/]|$|using|namespace|TEST|INSTANTIATE)/ { next }
  {
    name = $0
    if (match(name, /^(struct|class|enum class|enum) [A-Za-z0-9_]+/)) { name = substr(name, 1, RLENGTH); sub(/.* /, "", name) }
    else if (match(name, /^[^=]*[A-Za-z0-9_]\(/)) { match(name, /[A-Za-z0-9_:~]+\(/); name = substr(name, RSTART); sub(/ \{$/, "", name) }
    else if (match(name, /[A-Za-z0-9_]+( =|\[|\{|;)/)) { name = substr(name, RSTART, RLENGTH); gsub(/[^A-Za-z0-9_]/, "", name) }
    else next
    if ((folder, name) in where && where[folder, name] != FILENAME) print FILENAME ": " name " stands in " where[folder, name] " too"
    else where[folder, name] = FILENAME
  }')
[ -z "$twice" ] || fail "One name for two things in a folder:
$twice"

# Headers stand alone: a source begins with its own header, and clang-tidy below reads it without what is precompiled.
# Headers without a source are compiled as the only include of a file, as the main program's sources are (the widest set).
lone_headers=()
for header in $(printf '%s\n' "${sources[@]}" | grep '^src/.*\.h$'); do
  own=${header%.h}.cpp
  if [ ! -f "$own" ]; then
    lone_headers+=("$header")
  elif [ "$(grep -m1 '^#include' "$own")" != "#include \"${header#src/}\"" ]; then
    fail "$own does not begin with its own header"
  fi
done
if [ -f build/dev/compile_commands.json ]; then
  flags=$(grep '"command".*app/program\.cpp\.o' build/dev/compile_commands.json | head -1 |
    grep -oE -- '(-I|-isystem )[^ ]+|-DQT[A-Z_0-9]+' | tr '\n' ' ')
  lone=$(printf '%s\n' "${lone_headers[@]}" | xargs -P "$jobs" -I{} bash -c \
    'echo "#include \"${1#src/}\"" | g++ -std=c++20 -fPIC -fsyntax-only -x c++ -DSPECTRANE_VERSION="\"0\"" -DSPECTRANE_BRAND_NUMBER=9 '"$flags"' -Isrc - >/dev/null 2>&1 ||
       echo "Header does not stand alone: $1"' _ {})
  [ -z "$lone" ] || fail "$lone"
fi

# The catalogue of faults names every row, and only tests that exist.
catalogue=$(awk '/^## /{ inside = /^## The catalogue$/ } inside' docs/reliability.md)
known=$(cat $(printf '%s\n' "${sources[@]}" | grep '^tests/.*\.cpp$') | tr -d '\n' |
  grep -oE 'TEST(_F|_P)?\( *[A-Za-z0-9_]+, *[A-Za-z0-9_]+' | sed -E 's/.*\( *//; s/, */./' | sort -u)
untested=$(grep -oE '`[A-Za-z0-9_]+\.[A-Za-z0-9_]+`' <<<"$catalogue" | tr -d '`' | grep -vE '\.(sh|md|ini|py)$' |
  sort -u | comm -23 - <(printf '%s\n' "$known"))
[ -z "$untested" ] || fail "docs/reliability.md names tests that there are not:
$untested"
for row in S{01..15} P{01..16} D{01..15} C{01..08} E{01..06} W{01..10} H{01..06} N{01..05}; do
  grep -q "^| $row |" <<<"$catalogue" || fail "docs/reliability.md has no row $row"
done

# The wall clock makes dates; every wait goes by a clock that nobody sets.
wall=$(grep -rnlE 'system_clock|currentDateTime|currentMSecs|gettimeofday' src |
  grep -vE '^src/(base/dateserial|app/ground/documentoutput|cli/exportcommand)\.cpp$' || true)
[ -z "$wall" ] || fail "The wall clock is asked in:
$wall"

# clang-tidy, over the units that the build for sanitizers compiles.
if [ "${1:-}" != --fast ] && [ -f build/asan/compile_commands.json ]; then
  tidied=$(grep -oE "\"file\": \"$PWD/(src/|build/asan/src/.*/Unity/)[^\"]*" build/asan/compile_commands.json | sed 's/.*"//' |
    xargs -P "$jobs" -n 1 ./dev/tidy-file.sh) || status=1
  [ -z "$tidied" ] || fail "$tidied"
fi

[ "$status" -eq 0 ] && echo "All rules hold."
exit "$status"
