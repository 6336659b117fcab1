#!/usr/bin/env bash
# The whole program against the simulator beside it for long: dev/soak.sh MINUTES [SEED]. A seed repeats what was drawn.
set -euo pipefail
source "$(dirname "$0")/common.sh"

[[ ${1:-} =~ ^[1-9][0-9]*$ ]] || { echo "usage: dev/soak.sh MINUTES [SEED]" >&2; exit 2; }
build release fault_campaign spectrane-cli spectrane-simulator
export QT_QPA_PLATFORM=offscreen
exec build/release/bin/fault_campaign soak "$1" "${2:-$(date +%s)}"
