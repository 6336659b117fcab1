#!/usr/bin/env bash
# Installs what is missing, builds, and does the main job once against the simulated instrument: connect, blank, three
# samples of a dye series, a .bas file on disk. Leaves the file in measured/.
set -euo pipefail
source "$(dirname "$0")/common.sh"

./dev/install.sh
echo "Building ..."
build release spectrane-cli spectrane-simulator >/dev/null
bin=build/release/bin

scratch=$(mktemp -d)
simulator=
finish() {
  [ -z "$simulator" ] || kill "$simulator" 2>/dev/null || true
  rm -rf "$scratch"
}
trap finish EXIT

"$bin/spectrane-simulator" --link "$scratch/instrument" --control "$scratch/control" --speed 4 \
  >"$scratch/simulator.out" 2>&1 </dev/null &
simulator=$!
for _ in $(seq 100); do
  [ -e "$scratch/instrument" ] && break
  kill -0 "$simulator" 2>/dev/null || { cat "$scratch/simulator.out" >&2; exit 1; }
  sleep 0.05
done
echo "Simulated instrument on $scratch/instrument"
