#!/usr/bin/env bash
# Does the main job once in the terminal, against the simulated instrument: connect, blank, three samples of a dye
# series, a .bas file on disk. The file stays in measured/. Needs what dev/run.sh has built.
set -euo pipefail
source "$(dirname "$0")/common.sh"

bin=build/dev/bin
samples=(dye-2 dye-4 dye-6)

scratch=$(mktemp -d)
simulator=
finish() {
  [ -z "$simulator" ] || kill "$simulator" 2>/dev/null || true
  rm -rf "$scratch"
}
trap finish EXIT

# The operator's hands: what is written to descriptor 4 goes to the simulator's prompt.
mkfifo "$scratch/hands"
exec 4<>"$scratch/hands"
"$bin/spectrane-simulator" --headless --link "$scratch/instrument" --prompt --speed 4 <&4 >"$scratch/simulator.out" 2>&1 &
simulator=$!
for _ in $(seq 200); do
  grep -q '^ready ' "$scratch/simulator.out" 2>/dev/null && break
  kill -0 "$simulator" 2>/dev/null || { cat "$scratch/simulator.out" >&2; exit 1; }
  sleep 0.05
done
put_in_beam() {
  echo "beam $1" >&4
  sleep 0.2
  echo "  in the beam: $1"
}

mkdir -p measured
file="measured/$(date +%Y-%m-%d_%H-%M-%S).bas"
echo
echo "Measuring at 546.0 nm with the simulated instrument ..."
coproc RUN {
  SPECTRANE_HOME="$scratch" SPECTRANE_PORTS="$scratch/instrument" "$bin/spectrane-cli" instrument measure \
    --wavelength 546.0 --count ${#samples[@]} --out "$file" 2>&1 >"$scratch/rows.json"
}
run=$RUN_PID
exec 5<&"${RUN[0]}" 6>&"${RUN[1]}"
next=0
while IFS= read -r line <&5; do
  echo "$line"
  case "$line" in
    *"blank sample"*"[Enter]") put_in_beam blank; echo >&6 ;;
    *"test sample"*"[Enter]") put_in_beam "${samples[next]}"; next=$((next + 1)); echo >&6 ;;
  esac
done
wait "$run"

echo
tr '{}' '\n\n' <"$scratch/rows.json" | awk '
  function field(name,   text) {
    if (!match($0, "\"" name "\":[-0-9.e+]+")) return 0
    text = substr($0, RSTART, RLENGTH)
    sub(/^[^:]*:/, "", text)
    return text + 0
  }
  BEGIN { printf "%4s  %14s  %15s  %18s  %8s\n", "No.", "Wavelength(nm)", "Absorbance(Abs)", "Transmittance(%T)", "Energy" }
  /"SampleEnergy"/ {
    printf "%4d  %14.1f  %15.3f  %18.1f  %8d\n", ++n, field("Wavelength"), field("Abs"), field("Trans"), field("SampleEnergy")
  }'
echo
echo "Saved: $file"
echo "Look inside: $bin/spectrane-cli dump $file"
