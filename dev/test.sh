#!/usr/bin/env bash
# Installs what is missing, builds, and runs every check and every test: all of them under AddressSanitizer and
# UndefinedBehaviorSanitizer, but for the saves whose system calls fail; those and the journeys in a real X server on a
# plain build. (`ctest --preset dev` runs all of them plain, for who has the time to build it.) Closes with one line:
# N passed, N failed, N skipped.
set -euo pipefail
source "$(dirname "$0")/common.sh"

./dev/install.sh
failed_steps=0
note() { printf '\n== %s\n' "$1"; }

plain=(journey_tests writefault_tests callfault_tests)
export ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1 UBSAN_OPTIONS=print_stacktrace=1
export QT_QPA_PLATFORM=offscreen

# tests PRESET JOBS [OPTION of ctest...]: runs tests of a build folder.
tests() {
  local preset=$1 at_once=$2
  shift 2
  ctest --preset "$preset" "$@" -j "$at_once" --no-tests=error
}
# Steps that run beside others and are told in their turn.
beside=$(mktemp -d)
finish() {
  # With no step left there is nothing to end, and the exit code is that of the tests.
  kill $(jobs -p) 2>/dev/null || true
  rm -rf "$beside"
}
trap finish EXIT
declare -A running
beside() { # NAME COMMAND...
  local name=$1
  shift
  "$@" >"$beside/$name" 2>&1 &
  running[$name]=$!
}
told() { # NAME TITLE
  note "$2"
  wait "${running[$1]}" || failed_steps=$((failed_steps + 1))
  cat "$beside/$1"
}

note "Build (plain)"
cmake --preset dev >/dev/null
build plain spectrane spectrane-cli spectrane-simulator "${plain[@]}"
rm -rf build/{plain,asan}/results

# What waits more than it computes runs while the rest is built; the rules of the code, which only compute, are read while
# tests wait.
beside plain tests plain 2 -R "^($(IFS='|'; echo "${plain[*]}"))\$"
note "Build (asan)"
nice -n 5 bash -c 'source dev/common.sh && build asan process_tests'
waiting='^process_tests(-[0-9])?$'
beside processes tests asan 2 -R "$waiting"
nice -n 5 bash -c 'source dev/common.sh && build asan'
beside rules nice -n 19 ./dev/check.sh
told plain "Tests (plain)"
note "Tests (asan)"
# One more than there are cores: some wait for a time-out at any moment.
tests asan "$((jobs + 1))" -E "^process_tests" || failed_steps=$((failed_steps + 1))
told processes "Tests of the programs as processes (asan)"
note "Tests that measure seconds (asan)"
tests asan 1 -R "^process_tests" -E "$waiting" || failed_steps=$((failed_steps + 1))
told rules "Rules of the code"

# The sums of all result files of a build folder: tests, failures, skipped.
sums() {
  cat "$1"/results/*.xml 2>/dev/null | awk '
    /<testsuites / {
      t += value("tests"); f += value("failures") + value("errors")
    }
    /result="skipped"/ { s++ }
    function value(name,   at) {
      if (!match($0, " " name "=\"[0-9]+\"")) return 0
      at = substr($0, RSTART, RLENGTH); gsub(/[^0-9]/, "", at); return at + 0
    }
    END { printf "%d %d %d\n", t, f, s }'
}

total=0 failures=0 skipped=0
for preset in plain asan; do
  read -r t f s < <(sums "build/$preset")
  total=$((total + t)) failures=$((failures + f)) skipped=$((skipped + s))
done

# A step that failed without a failed case (a crash, a rule) counts as one failure.
[ "$failed_steps" -eq 0 ] || [ "$failures" -gt 0 ] || failures=$failed_steps
printf '\n%d passed, %d failed, %d skipped\n' $((total - failures - skipped)) "$failures" "$skipped"
[ "$failed_steps" -eq 0 ] && [ "$failures" -eq 0 ] && [ "$total" -gt 0 ]
