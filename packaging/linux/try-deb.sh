#!/usr/bin/env bash
# try-deb.sh PACKAGE [PICTURE.png]: installs the package in a fresh Debian below a temporary folder, reads what it tells the
# desktop, runs its three programs there as a person without rights, removes it and looks for what is left. Needs root and
# a mirror of Debian (SPECTRANE_MIRROR); PICTURE is the screen with the program on it. The folder SPECTRANE_FRESH, where that is
# set, keeps the fresh system for the next time.
set -euo pipefail
package=$(realpath "$1")
picture=${2:+$(realpath -m "$2")}
source "$(dirname "$0")/../../dev/common.sh"
./dev/install.sh packaging/linux/packages.txt
. /etc/os-release
mirror=${SPECTRANE_MIRROR:-http://deb.debian.org/debian}
security=${SPECTRANE_SECURITY_MIRROR:-http://deb.debian.org/debian-security}

root=$(mktemp -d)
started=()
finish() {
  for process in "${started[@]}"; do kill "$process" 2>/dev/null || true; done
  wait 2>/dev/null || true
  for place in tmp/.X11-unix dev/pts proc; do
    mountpoint -q "$root/$place" && umount "$root/$place"
  done
  rm -rf --one-file-system "$root" "$root".*
}
trap finish EXIT
fail() {
  echo "$*" >&2
  exit 1
}
inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C DEBIAN_FRONTEND=noninteractive "$@"; }
# The person: not in the group of the serial ports, with a home of her own.
person=(chroot --userspec=person:person "$root" env -i PATH=/usr/bin:/bin HOME=/home/person LC_ALL=C)
# Everything but the books of the package tools, with its contents.
files() {
  (
    cd "$root"
    find etc opt usr var -xdev -type l -printf '%p -> %l\n'
    find etc opt usr var -xdev -type f -print0 | xargs -0 md5sum
  ) | grep -vE ' var/(lib/(dpkg|apt)|cache|log)/| etc/ld.so.cache$' | sort
}
seconds() { awk -v from="$1" -v to="$(date +%s.%N)" 'BEGIN { printf "%.1f", to - from }'; }

# A small system below $1 with what the package needs and recommends, so that what is left behind is its own.
make_system() {
  debootstrap --variant=minbase "$VERSION_CODENAME" "$1" "$mirror"
  cat >"$1/etc/apt/sources.list" <<END
deb $mirror $VERSION_CODENAME main
deb $mirror $VERSION_CODENAME-updates main
deb $security $VERSION_CODENAME-security main
END
  # Nothing is started in there.
  printf '#!/bin/sh\nexit 101\n' >"$1/usr/sbin/policy-rc.d"
  chmod +x "$1/usr/sbin/policy-rc.d"
  local needs
  needs=$(for field in Depends Recommends; do dpkg-deb -f "$package" $field; done | tr ',' '\n' | sed 's/([^)]*)//g; s/|.*//' | tr -d ' ')
  chroot "$1" apt-get update -qq
  # shellcheck disable=SC2086
  chroot "$1" env DEBIAN_FRONTEND=noninteractive LC_ALL=C apt-get install -qq -y --no-install-recommends $needs man-db
}

echo "-- a fresh $PRETTY_NAME"
if [ -n "${SPECTRANE_FRESH:-}" ]; then
  [ -d "$SPECTRANE_FRESH" ] || make_system "$SPECTRANE_FRESH" >"$root.log" 2>&1 || { tail -5 "$root.log" >&2; exit 1; }
  cp -a "$SPECTRANE_FRESH/." "$root"
else
  make_system "$root" >"$root.log" 2>&1 || { tail -5 "$root.log" >&2; exit 1; }
fi
chmod 755 "$root"
mount -t proc proc "$root/proc"
mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
inside useradd --create-home person
cp "$package" "$root/tmp/spectrane.deb"
files >"$root.before"

echo "-- installed"
from=$(date +%s.%N)
inside apt-get install -qq -y --no-install-recommends /tmp/spectrane.deb >"$root.log" 2>&1 || { cat "$root.log" >&2; exit 1; }
inside dpkg-query -W -f='${Package} ${Version}, ${Installed-Size} kB, ${Status}' spectrane
echo ", in $(seconds "$from") s"
for program in spectrane-cli spectrane-simulator; do "${person[@]}" "$program" --version; done
for manual in spectrane spectrane-cli spectrane-simulator; do
  "${person[@]}" env MANWIDTH=80 man --warnings "$manual" 2>"$root.log" | grep -q "^NAME" || fail "no manual of $manual"
  [ ! -s "$root.log" ] || fail "the manual of $manual: $(cat "$root.log")"
done
inside grep -q '^application/x-spectrane-wls:\|:\*\.wls$' /usr/share/mime/globs2 || fail "the file types are not known"
inside grep -q x-spectrane-bas /usr/share/applications/mimeinfo.cache || fail "no program opens the file types"
desktop-file-validate "$root/usr/share/applications/org.spectrane.Spectrane.desktop"
appstreamcli validate --pedantic --no-net "$root/usr/share/metainfo/org.spectrane.Spectrane.metainfo.xml"

echo "-- one measurement with the batch command"
mkfifo "$root/tmp/hands"
exec 4<>"$root/tmp/hands"
"${person[@]}" spectrane-simulator --headless --link /tmp/instrument --prompt --instant --noise 0 <&4 >"$root.simulator" 2>&1 &
started+=($!)
for _ in $(seq 200); do
  grep -q '^ready ' "$root.simulator" && break
  sleep 0.05
done
"${person[@]}" env SPECTRANE_PORTS=/tmp/instrument spectrane-cli instrument probe
echo "beam blank" >&4
mkfifo "$root/tmp/keys"
(sleep 1; echo; sleep 1; echo "beam dye-3" >&4; sleep 0.5; echo; sleep 1) >"$root/tmp/keys" &
"${person[@]}" env SPECTRANE_PORTS=/tmp/instrument spectrane-cli instrument measure --wavelength 546 --count 1 --out /tmp/first.bas \
  <"$root/tmp/keys" 2>/dev/null
"${person[@]}" spectrane-cli info /tmp/first.bas | grep -q '"records": *1' || fail "no record in the file"

echo "-- the program on a screen"
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$root.display" >/dev/null 2>&1 &
started+=($!)
for _ in $(seq 100); do
  [ -s "$root.display" ] && break
  sleep 0.05
done
mkdir -p "$root/tmp/.X11-unix"
mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"
"${person[@]}" env DISPLAY=":$(cat "$root.display")" SPECTRANE_PORTS=/tmp/instrument spectrane &
window=$!
started+=("$window")
sleep 6
[ -z "$picture" ] || DISPLAY=":$(cat "$root.display")" import -window root "$picture"
kill -0 "$window" 2>/dev/null || fail "the program ended by itself"
# Ends as at the end of a session.
kill -TERM "$window"
wait "$window" || fail "the program ended with $?"
settings=$(cd "$root" && find home/person -name config.ini)
[ -n "$settings" ] || fail "no settings"
# The port is stored when the instrument has answered.
grep -q '^Port ID *= *1' "$root/$settings" || fail "it did not connect: $(cat "$root/$settings")"
echo "started, connected, ended; settings in /$settings"

echo "-- removed"
inside apt-get purge -qq -y spectrane >"$root.log" 2>&1 || { cat "$root.log" >&2; exit 1; }
files >"$root.after"
diff "$root.before" "$root.after" || fail "this is left behind"
echo "nothing is left but the person's own:"
(cd "$root" && find home/person -newer usr/sbin/policy-rc.d -type f)
