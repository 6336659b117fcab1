#!/usr/bin/env bash
# Builds the release and makes build/packages/spectrane_VERSION_ARCHITECTURE.deb of it.
# make-deb.sh --try installs it in a fresh Debian below a temporary folder (needs root and a mirror of Debian), runs each
# program there, removes it again and tells what is left behind.
set -euo pipefail
source "$(dirname "$0")/../../dev/common.sh"

./dev/install.sh
./dev/install.sh packaging/linux/packages.txt
cmake --preset release -DSPECTRANE_BENCH=OFF -DSPECTRANE_TESTS=OFF >/dev/null
cmake --build --preset release -j "$jobs" --target spectrane spectrane-cli spectrane-simulator >/dev/null
mkdir -p build/packages
rm -f build/packages/*.deb
(cd build/release && cpack -G DEB -B ../packages >../packages/cpack.log) || { cat build/packages/cpack.log >&2; exit 1; }
rm -rf build/packages/_CPack_Packages
package=$(ls build/packages/*.deb)
echo "$package"
[ "${1:-}" = --try ] || exit 0

root=$(mktemp -d)
trap 'umount "$root/proc" 2>/dev/null || true; rm -rf "$root"' EXIT
. /etc/os-release
debootstrap --variant=minbase "$VERSION_CODENAME" "$root" >"$root.log" 2>&1 || { tail -5 "$root.log" >&2; exit 1; }
cp /etc/apt/sources.list "$root/etc/apt/" 2>/dev/null || true
cp /etc/apt/sources.list.d/* "$root/etc/apt/sources.list.d/" 2>/dev/null || true
cp /etc/apt/apt.conf.d/* "$root/etc/apt/apt.conf.d/" 2>/dev/null || true
mount -t proc proc "$root/proc"
inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root DEBIAN_FRONTEND=noninteractive "$@"; }
files() { (cd "$root" && find etc usr var/lib root -xdev \( -type f -o -type l \) | grep -vE '^var/lib/(dpkg|apt)/|^usr/share/(mime|icons)/.*cache' | sort); }

inside apt-get update -qq
# All that the package needs is there first, so that what is left behind is its own.
needs=$(dpkg-deb -f "$package" Depends | sed 's/([^)]*)//g; s/|[^,]*//g; s/,/ /g')
# shellcheck disable=SC2086
inside apt-get install -qq -y --no-install-recommends $needs shared-mime-info desktop-file-utils fonts-dejavu-core >/dev/null 2>&1
files >"$root.before"
cp "$package" "$root/tmp/spectrane.deb"
inside apt-get install -qq -y --no-install-recommends /tmp/spectrane.deb >/dev/null
echo "installed: $(inside dpkg-query -W -f='${Package} ${Version} ${Status}' spectrane)"
inside spectrane-cli --version
inside spectrane-simulator --version
inside grep -q x-spectrane-wls /usr/share/mime/packages/org.spectrane.Spectrane.xml
inside sh -c 'grep -q application/x-spectrane-wls /usr/share/mime/globs2' && echo "file types known"
# The window comes up and stays until it is told to end.
status=0
inside env QT_QPA_PLATFORM=offscreen SPECTRANE_HOME=/tmp/home timeout --signal=TERM 5 spectrane || status=$?
[ "$status" -eq 124 ] || { echo "the program ended by itself: $status" >&2; exit 1; }
[ -s "$root/tmp/home/config.ini" ] && echo "started, and wrote its settings"
# What the user's own desktop was told belongs to the user.
rm -rf "$root/root/.local" "$root/root/.config" "$root/root/.cache"
inside apt-get purge -qq -y spectrane >/dev/null
files >"$root.after"
diff "$root.before" "$root.after" && echo "removed without a trace"
