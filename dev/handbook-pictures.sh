#!/usr/bin/env bash
# Takes the handbook's pictures anew from the running program. Run it after a change to a window or dialog and look at
# what changed. handbook-pictures.sh [PRESET]
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

preset=${1:-dev}
build "$preset" handbookpictures >/dev/null
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
# No printer, no settings and no palette of the person who runs it.
env -u DISPLAY -u WAYLAND_DISPLAY HOME="$scratch" XDG_CONFIG_HOME="$scratch" XDG_STATE_HOME="$scratch" \
  SPECTRANE_HOME="$scratch" CUPS_SERVER=/nonexistent QT_QPA_PLATFORM=offscreen QT_STYLE_OVERRIDE=fusion \
  "build/$preset/dev/handbookpictures/handbookpictures" examples docs/handbook/pictures
du -sh docs/handbook/pictures
