#!/usr/bin/env bash
# Do the tests see faults? dev/mutants.sh [NUMBER...] puts each fault of dev/mutants.txt into the logic, one at a time, runs
# the tests that should see it, and fails when fewer than 95 of 100 are caught. The changed libraries are built in
# build/mutants, all faults in one build, each behind a switch; the tests are those of build/coverage.
set -euo pipefail
source "$(dirname "$0")/common.sh"

out=$PWD/build/mutants
libraries=(base files link spectrum modes acquire exchange)
tests=(logic_tests link_tests)
mkdir -p "$out"

quietly() { "$@" >"$out/build.log" 2>&1 || { tail -40 "$out/build.log" >&2; exit 1; }; }
quietly build coverage "${tests[@]}"

python3 dev/mutants.py plant "$out/tree"
cat >"$out/switch.h" <<'HEADER'
#include <cstdlib>
// Whether the fault of that number is switched on. Asked for in inner loops: the environment is looked at once.
inline bool SpectraneMutant(int number) {
  static const int chosen = [] {
    const char* const text = std::getenv("SPECTRANE_MUTANT");
    return text == nullptr ? 0 : std::atoi(text);
  }();
  return number == chosen;
}
HEADER
# Without warnings: a fault may well deserve one.
quietly cmake -S "$out/tree" -B "$out/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DCMAKE_UNITY_BUILD=ON \
  -DSPECTRANE_TESTS=OFF -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON "-DCMAKE_CXX_FLAGS=-w -include $out/switch.h"
quietly cmake --build "$out/build" -j "$jobs" --target "${libraries[@]/#/spectrane_}"

# The link of each test program as build/coverage has it, with the libraries that have the faults.
for test in "${tests[@]}"; do
  command=$(ninja -C build/coverage -t commands "tests/$test" | tail -1)
  for library in "${libraries[@]}"; do
    command=${command//src\/libspectrane_$library.a/$out/build/src/libspectrane_$library.a}
  done
  (cd build/coverage && quietly sh -c "${command//-o tests\/$test/-o $out/$test}")
done

# What the tests count of themselves goes nowhere.
export LLVM_PROFILE_FILE=/dev/null
python3 dev/mutants.py run "$out" "$@"
