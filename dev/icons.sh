#!/usr/bin/env bash
# Makes the pictures that are drawn from the SVG icons: the contact sheet in docs/pictures/ and the PNG sizes below
# packaging/icons/hicolor/. Run it after a change to an icon and look at the sheet.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build dev iconsheet >/dev/null
paint=build/dev/dev/iconsheet/iconsheet
export QT_QPA_PLATFORM=offscreen
"$paint" sheet docs/pictures/icons.png
"$paint" sizes packaging/icons/hicolor apps packaging/icons/hicolor/scalable/apps/spectrane.svg
"$paint" sizes packaging/icons/hicolor mimetypes packaging/icons/mimetypes/*.svg
