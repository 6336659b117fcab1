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

plain=(journey_tests writefault_tests)
note "Build (plain)"
cmake --preset dev >/dev/null
build plain spectrane spectrane-cli spectrane-simulator "${plain[@]}"
note "Build (asan)"
build asan
note "Rules of the code"
./dev/check.sh || failed_steps=$((failed_steps + 1))

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
  note "Tests ($preset)"
  rm -rf "build/$preset/results"
  mkdir -p "build/$preset/results"
  export ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1 UBSAN_OPTIONS=print_stacktrace=1
  export QT_QPA_PLATFORM=offscreen
  case $preset in plain) some=(-R "$(IFS='|'; echo "${plain[*]}")") ;; *) some=() ;; esac
  # One more than there are cores: some wait for a time-out at any moment.
  ctest --preset "$preset" "${some[@]}" -j "$((jobs + 1))" --no-tests=error || failed_steps=$((failed_steps + 1))
  read -r t f s < <(sums "build/$preset")
  total=$((total + t)) failures=$((failures + f)) skipped=$((skipped + s))
done

# A step that failed without a failed case (a crash, a rule) counts as one failure.
[ "$failed_steps" -eq 0 ] || [ "$failures" -gt 0 ] || failures=$failed_steps
printf '\n%d passed, %d failed, %d skipped\n' $((total - failures - skipped)) "$failures" "$skipped"
[ "$failed_steps" -eq 0 ] && [ "$failures" -eq 0 ] && [ "$total" -gt 0 ]
