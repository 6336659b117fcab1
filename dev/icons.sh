#!/usr/bin/env bash
# Makes the pictures that are drawn from the SVG icons: the PNG sizes below packaging/icons/hicolor/, and a sheet of all,
# build/dev/icons.png, which only is to be looked at. Run it after a change to an icon.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build dev iconsheet >/dev/null
paint=build/dev/dev/iconsheet/iconsheet
export QT_QPA_PLATFORM=offscreen
"$paint" sheet build/dev/icons.png
"$paint" sizes packaging/icons/hicolor apps packaging/icons/hicolor/scalable/apps/spectrane.svg
"$paint" sizes packaging/icons/hicolor mimetypes packaging/icons/mimetypes/*.svg
