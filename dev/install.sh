#!/usr/bin/env bash
# Installs what is missing of the packages in a list, dev/packages.txt unless another one is given. Needs root or sudo
# only when something is missing.
set -euo pipefail
list=$(realpath "${1:-$(dirname "$0")/packages.txt}")

missing=()
while read -r package; do
  case "$package" in ''|'#'*) continue ;; esac
  status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done < "$list"
[ ${#missing[@]} -gt 0 ] || exit 0

echo "Installing: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "These packages are missing and neither root nor sudo is at hand: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
