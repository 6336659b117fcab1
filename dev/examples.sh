#!/usr/bin/env bash
# Makes the files of examples/ anew, by measuring the simulated instrument. Run it after a change to the simulator, to a
# data file's layout or to the program's version, and look at what changed (spectrane-cli dump).
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build dev spectrane_examplefiles >/dev/null
build/dev/dev/examplefiles/spectrane_examplefiles examples
