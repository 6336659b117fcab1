#!/usr/bin/env bash
# Feeds what reads foreign bytes with broken ones: dev/fuzz.sh [--fast] SECONDS [TARGET...], two targets at a time; 500x
# in the place of SECONDS: so many executions. Fails on a finding; its input stays in fuzz/found/TARGET/, where the tests
# take it from. What was learned of good inputs stays in build/fuzz/corpus. --fast: without sanitizers, for numbers; the
# checks of the answers are the same.
set -euo pipefail
source "$(dirname "$0")/common.sh"

# Target, ending of its example files, and longest input: a few records of each kind.
all=(filetype:*:1024 qua:qua:16384 tis:tis:2048 wls:wls:2048 wls2:wls:2048 mul:mul:4096 dna:dna:4096 bsl:bsl:2048 bas:bas:4096
  config:-:1024 reply:-:512 exchange:-:200 handover:-:256 journal:-:2048 pack:-:4096)
names=("${all[@]%%:*}")
usage() { printf 'usage: dev/fuzz.sh [--fast] SECONDS|EXECUTIONSx [TARGET...]\ntargets: %s\n' "${names[*]}" >&2; exit 2; }

fast=OFF
[ "${1:-}" != --fast ] || { fast=ON; shift; }
[[ ${1:-} =~ ^[1-9][0-9]*x?$ ]] || usage
limit=-max_total_time=$1
[ "${1%x}" = "$1" ] || limit=-runs=${1%x}
shift
chosen=() rows=()
for name in "${@:-${names[@]}}"; do
  row=
  for each in "${all[@]}"; do [ "${each%%:*}" != "$name" ] || row=$each; done
  [ -n "$row" ] || { echo "no such target: $name" >&2; usage; }
  chosen+=("$name") rows+=("$row")
done

./dev/install.sh fuzz/packages.txt
learned=build/fuzz/corpus
build=build/fuzz
[ "$fast" = OFF ] || build=build/fuzz/fast
mkdir -p "$build"
{ cmake -S fuzz -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DSPECTRANE_FUZZ_FAST="$fast" &&
  ninja -C "$build" "${chosen[@]/#/fuzz-}"; } >"$build/build.log" 2>&1 ||
  { cat "$build/build.log" >&2; exit 1; }

# The file that takes one input after the other lies in memory where there is such a folder.
memory=/dev/shm
[ -d "$memory" ] && [ -w "$memory" ] || memory=${TMPDIR:-/tmp}
TMPDIR=$(mktemp -d "$memory/spectrane-fuzz.XXXXXX")
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
# A short memory of what was allocated and freed, for speed; the input of a finding tells the rest.
export ASAN_OPTIONS=malloc_context_size=4:quarantine_size_mb=8 UBSAN_OPTIONS=print_stacktrace=1

# run NAME ENDING LONGEST. The weighing of inputs (entropic) costs more than running the small ones.
run() {
  local corpus=$learned/$1 dictionary=fuzz/datafile.dict found=fuzz/found/$1 examples=$TMPDIR/examples-$1 log=$build/$1.log
  mkdir -p "$corpus" "$found" "$examples"
  [ ! -e "fuzz/$1.dict" ] || dictionary=fuzz/$1.dict
  if [ "$2" = '*' ]; then find examples -type f ! -name '*.md' -exec cp {} "$examples" \; 2>/dev/null || true
  else cp examples/*."$2" "$examples" 2>/dev/null || true; fi
  "$build/fuzz-$1" "$limit" -max_len="$3" -dict="$dictionary" -timeout=5 -rss_limit_mb=1024 -entropic=0 \
    -malloc_limit_mb=64 -print_final_stats=1 -artifact_prefix="$found/" "$corpus" "fuzz/corpus/$1" "$examples" \
    >"$log" 2>&1 || : >"$build/$1.finding"
  grep -E '^[a-z0-9]+: [0-9]+ executions' "$log" || echo "$1: ended early"
  # Where the last line of code was reached for the first time.
  awk -v name="$1" '/^#[0-9]+\t/ { for (i = 2; i < NF; ++i) if ($i == "cov:" && $(i + 1) + 0 > most) {
    most = $(i + 1) + 0; at = substr($1, 2) } } END { if (most) print name ": " most " edges, the last at " at }' "$log"
  if [ -e "$build/$1.finding" ]; then
    grep -m 3 -E '^Violation|^==.*ERROR|^SUMMARY|runtime error' "$log" || tail -3 "$log"
    echo "$1: FINDING, see $log and $found/"
  fi
  rmdir "$found" 2>/dev/null || true
}

rm -f "$build"/*.finding
for row in "${rows[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge 2 ]; do wait -n || true; done
  IFS=: read -r name ending longest <<<"$row"
  run "$name" "$ending" "$longest" &
done
wait
rmdir fuzz/found 2>/dev/null || true

findings=$(find "$build" -maxdepth 1 -name '*.finding' | wc -l)
[ "$findings" -eq 0 ] && echo "No finding." || { echo "$findings target(s) with a finding."; exit 1; }
