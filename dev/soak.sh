#!/usr/bin/env bash
# The whole program against the simulator beside it: dev/soak.sh MINUTES [SEED]. At the same time a day at the instrument
# again and again, with memory and handles looked at, and scripts with faults drawn by seeds from SEED on; then the cable is
# pulled a hundred times. A violation prints its seed and haste: build/release/bin/fault_campaign seeds 1 SEED HASTE repeats it.
set -euo pipefail
source "$(dirname "$0")/common.sh"

[[ ${1:-} =~ ^[1-9][0-9]*$ ]] || { echo "usage: dev/soak.sh MINUTES [SEED]" >&2; exit 2; }
minutes=$1 seed=${2:-$(date +%s)}
build release fault_campaign spectrane-cli spectrane-simulator
export QT_QPA_PLATFORM=offscreen
campaign=build/release/bin/fault_campaign
failed=0
"$campaign" soak "$minutes" "$seed" &
soak=$!
"$campaign" scripts "$minutes" "$seed" || failed=1
wait "$soak" || failed=1
"$campaign" quiet 100 || failed=1
exit "$failed"
