#!/usr/bin/env bash
# How many branches of the logic the tests take: dev/coverage.sh [PERCENT]. Prints a table for each room and fails when one
# of them is below PERCENT (95). Branches that only an exception takes (the compiler makes one at each call) are left out,
# and those that the compiler itself knows to be out of reach. The whole report stays in build/coverage/report.json;
# `gcovr -a build/coverage/report.json --html-details PAGE.html` makes pages of it.
set -euo pipefail
source "$(dirname "$0")/common.sh"

least=${1:-95}
tests=(logic_tests link_tests)
rooms=(
  'files|src/files/'
  'link|src/link/'
  'fits|src/modes/quantitation/curve'
  'settings|src/base/(setting|initext|windowsettings)'
)

./dev/install.sh
./dev/install.sh dev/coverage-packages.txt
build=build/coverage
build coverage "${tests[@]}" >"$build.log" 2>&1 || { tail -40 "$build.log" >&2; exit 1; }

# Counts of this run alone.
find "$build" -name '*.gcda' -delete
export QT_QPA_PLATFORM=offscreen
for test in "${tests[@]}"; do
  "$build/tests/$test" --gtest_brief=1 >"$build/$test.log" 2>&1 || { tail -40 "$build/$test.log" >&2; exit 1; }
done

filters=()
for room in "${rooms[@]}"; do filters+=(--filter "${room#*|}"); done
gcovr --root . "${filters[@]}" --exclude-throw-branches --exclude-unreachable-branches -j "$jobs" --json "$build/report.json" "$build"

status=0
for room in "${rooms[@]}"; do
  printf '\n%s\n' "${room%%|*}"
  gcovr --root . -a "$build/report.json" --filter "${room#*|}" --branches --fail-under-branch "$least" |
    sed '/^GCC Code Coverage/d; /^Directory:/d; /^---*$/d' || status=1
done
[ "$status" -eq 0 ] && printf '\nEvery room has %s %% of its branches or more.\n' "$least" ||
  printf '\nA room is below %s %%.\n' "$least" >&2
exit "$status"
