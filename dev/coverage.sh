#!/usr/bin/env bash
# How many branches of the logic the tests take: dev/coverage.sh [PERCENT]. Prints a table for each room and fails when one
# of them is below PERCENT (95). dev/coverage.py says what counts as a branch.
set -euo pipefail
source "$(dirname "$0")/common.sh"

tests=(logic_tests link_tests)
rooms=(
  'files=src/files/'
  'link=src/link/(?!serialport|exclusion|messageloop)'
  # What asks the operating system: it refuses in ways that no test brings about.
  'devices?=src/link/(serialport|exclusion|messageloop)'
  'fits=src/modes/quantitation/curve'
  'settings=src/base/(setting|initext|windowsettings)'
)

./dev/install.sh
out=build/coverage
mkdir -p "$out"
build coverage "${tests[@]}" >"$out/build.log" 2>&1 || { tail -40 "$out/build.log" >&2; exit 1; }

# Counts of this run alone.
find "$out" -name '*.gcda' -delete
export QT_QPA_PLATFORM=offscreen
for test in "${tests[@]}"; do
  "$out/tests/$test" --gtest_brief=1 >"$out/$test.log" 2>&1 || { tail -40 "$out/$test.log" >&2; exit 1; }
done
python3 dev/coverage.py "$out" "${1:-95}" "${rooms[@]}"
