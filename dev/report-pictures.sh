#!/usr/bin/env bash
# Takes docs/pictures/reports.png anew: the first pages of three reports of the example files. report-pictures.sh [PRESET]
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

preset=${1:-dev}
build "$preset" spectrane-cli >/dev/null
# The folder can be read on the papers.
folder=/tmp/spectrane-reports
rm -rf "$folder"
mkdir -p "$folder/settings"
trap 'rm -rf "$folder"' EXIT
printf '[Option]\nOpearator=Dr. M\xfcller\nDepartment=Water Laboratory\n' >"$folder/settings/config.ini"
for file in photometry.bas dye.qua holmium.wls; do
  cp "examples/$file" "$folder/"
  # Smoothed, as the windows show and print it.
  SPECTRANE_HOME="$folder/settings" "build/$preset/bin/spectrane-cli" export --smooth-enable "$folder/$file" \
    "$folder/$file.pdf" >/dev/null
  pdftoppm -png -r 60 -f 1 -l 1 -singlefile "$folder/$file.pdf" "$folder/$file"
done
montage "$folder"/photometry.bas.png "$folder"/dye.qua.png "$folder"/holmium.wls.png -tile 3x1 -geometry +0+0 \
  -bordercolor grey -border 1 -colors 64 "PNG8:$folder/reports.png"
mv "$folder/reports.png" docs/pictures/reports.png
du -h docs/pictures/reports.png
