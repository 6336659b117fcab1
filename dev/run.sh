#!/usr/bin/env bash
# Installs what is missing, builds, and starts the program beside the simulated instrument, which shows what stands in
# its beam in a window of its own. A data file may be named. Without a display: one measurement in the terminal.
set -euo pipefail
source "$(dirname "$0")/common.sh"

file=
[ $# -eq 0 ] || file=$(realpath "$1")
./dev/install.sh
echo "Building ..."
build dev spectrane spectrane-cli spectrane-simulator >/dev/null
bin=build/dev/bin

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  echo "This machine has no display, so the program's windows cannot be shown: measuring in the terminal instead."
  exec ./dev/terminal-run.sh
fi

scratch=$(mktemp -d)
simulator=
finish() {
  [ -z "$simulator" ] || kill "$simulator" 2>/dev/null || true
  rm -rf "$scratch"
}
trap finish EXIT
"$bin/spectrane-simulator" --link "$scratch/instrument" --speed 4 </dev/null >"$scratch/simulator.out" 2>&1 &
simulator=$!
for _ in $(seq 200); do
  grep -q '^ready ' "$scratch/simulator.out" && break
  kill -0 "$simulator" 2>/dev/null || { cat "$scratch/simulator.out" >&2; exit 1; }
  sleep 0.05
done
echo "The simulated instrument is on; the program connects to it by itself two seconds after its start."
# Settings of these runs stay together, apart from those of an installed program.
mkdir -p build/run
SPECTRANE_HOME="$PWD/build/run" SPECTRANE_PORTS="$scratch/instrument" "$bin/spectrane" ${file:+"$file"}
