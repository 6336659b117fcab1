#!/usr/bin/env bash
# The long forms of what the tests do in part: every small damage to a file of every kind (read, saved, read again), and
# the start of the real program on each damaged folder, lock and socket, with its promise of 2 s on a quiet machine.
# dev/hostile.sh [PRESET]; the build for sanitizers ("asan") also measures the memory of each reading.
set -euo pipefail
source "$(dirname "$0")/common.sh"

preset=${1:-plain}
build "$preset" logic_tests desktop_tests
# Files that are saved lie in memory where there is such a folder.
memory=/dev/shm
[ -d "$memory" ] && [ -w "$memory" ] || memory=${TMPDIR:-/tmp}
TEST_TMPDIR=$(mktemp -d "$memory/spectrane-hostile.XXXXXX")
export TEST_TMPDIR
trap 'rm -rf "$TEST_TMPDIR"' EXIT

failed=0
SPECTRANE_ALL_DAMAGE=1 TMPDIR=$TEST_TMPDIR "build/$preset/tests/logic_tests" --gtest_filter='*SmallDamage*' || failed=1
SPECTRANE_ALL_STARTS=1 "build/$preset/tests/desktop_tests" --gtest_filter='DamagedStart.*' || failed=1
exit "$failed"
