#!/usr/bin/env bash
# The long forms of the tests of yields, under sanitizers: dev/reentrancy.sh [SEED...]. Every happening at every yield of
# every procedure, then 10,000 random presses for each seed (1 to 10). Fails at the first fault.
set -euo pipefail
source "$(dirname "$0")/common.sh"

seeds=("$@")
[ $# -gt 0 ] || seeds=(1 2 3 4 5 6 7 8 9 10)

cmake --preset asan >/dev/null
ninja -C build/asan reentrancy_tests
run() { build/asan/tests/reentrancy_tests --gtest_brief=1 --gtest_filter="$1"; }

SPECTRANE_LONG=1 run '-RandomCommands.*'
for seed in "${seeds[@]}"; do
  SPECTRANE_SEED=$seed SPECTRANE_PRESSES=10000 run 'RandomCommands.*'
done
