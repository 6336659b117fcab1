#!/usr/bin/env bash
# How many branches of the logic the tests take: dev/coverage.sh [PERCENT]. Prints what was not taken, for each room, and fails
# when one of them is below PERCENT (95). dev/coverage.py says what counts as a branch.
set -euo pipefail
source "$(dirname "$0")/common.sh"

tests=(logic_tests link_tests callfault_tests)
rooms=(
  'files=src/files/'
  'link=src/link/'
  'fits=src/modes/quantitation/curve'
  'settings=src/base/(setting|initext|windowsettings)'
)

./dev/install.sh
./dev/install.sh fuzz/packages.txt
out=build/coverage
mkdir -p "$out"
build coverage "${tests[@]}" >"$out/build.log" 2>&1 || { tail -40 "$out/build.log" >&2; exit 1; }

# Counts of this run alone. They are kept in the file itself (%c), so that a process that is killed has counted too.
counts=$out/counts
rm -rf "$counts"
export QT_QPA_PLATFORM=offscreen LLVM_PROFILE_FILE=$PWD/$counts/%p-%m%c.profraw
for test in "${tests[@]}"; do
  "$out/tests/$test" --gtest_brief=1 >"$out/$test.log" 2>&1 || { tail -40 "$out/$test.log" >&2; exit 1; }
done
llvm-profdata merge -sparse "$counts"/*.profraw -o "$out/profile"
rm -rf "$counts"
python3 dev/coverage.py "$out/profile" "${1:-95}" "${rooms[@]}" -- "${tests[@]/#/$out/tests/}"
