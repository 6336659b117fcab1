#!/usr/bin/env bash
# Tries the packages that build.sh made, under Wine in a display of its own: unpacks the zip and measures with it over a
# port of Wine's, installs and removes with the installer. Pictures and files of the journey stay in build/windows/try/.
# The instrument is this machine's simulator on a pseudo-terminal.
# try.sh --parts needs no packages and no Qt: it tries the port and what keeps files by themselves.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
./dev/install.sh
./dev/install.sh packaging/windows/packages.txt
build dev spectrane-simulator spectrane-cli >/dev/null
package=$(ls -t build/packages/spectrane-*-windows-x64.zip 2>/dev/null | head -1 || true)
[ -n "$package" ] || [ "${1:-}" = --parts ] || { echo "There is no package yet: packaging/windows/build.sh" >&2; exit 1; }
setup=${package%.zip}-setup.exe
place=$PWD/build/windows/try
rm -rf "$place"
mkdir -p "$place"
failures=0

check() { # WHAT COMMAND...: says whether it came out as wanted
  local what=$1
  shift
  if "$@" >/dev/null 2>&1; then say "ok      $what"; else say "FAILED  $what"; failures=$((failures + 1)); fi
}

within() { # SECONDS COMMAND...: until the command succeeds
  local end=$((SECONDS + $1))
  shift
  until "$@" >/dev/null 2>&1; do
    [ "$SECONDS" -lt "$end" ] || return 1
    sleep 0.3
  done
}

# --- The display, Wine, and the line -------------------------------------------------------------------------------

start_display() {
  exec 3> >(cat >"$place/display")
  Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 2>/dev/null &
  display_process=$!
  exec 3>&-
  within 20 test -s "$place/display"
  DISPLAY=:$(tr -d '[:space:]' <"$place/display")
  export DISPLAY
  openbox 2>/dev/null &
  manager_process=$!
}

start_wine() {
  export LC_ALL=C.UTF-8 WINEPREFIX=$place/wine WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
  g++ -shared -fPIC -O2 "$windows/modemlines.cpp" -o "$place/modemlines.so" -ldl
  wineboot -i >/dev/null 2>&1
  wineserver -w
  # The fonts that programs for Windows ask for, as far as this machine has something like them.
  local key='HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes' font
  for font in "MS Shell Dlg" "MS Shell Dlg 2" Tahoma "Segoe UI" Arial "MS Sans Serif"; do
    wine reg add "$key" /v "$font" /d "Liberation Sans" /f >/dev/null 2>&1
  done
  # The whole journey is one session of Wine; what starts first gives its environment to what serves ports.
  wineserver -w
  ln -sfn "$place/instrument" "$WINEPREFIX/dosdevices/com7"
}

start_simulator() {
  rm -f "$place/requests.log"
  build/dev/bin/spectrane-simulator --headless --speed 20 --noise 0 --link "$place/instrument" --log "$place/requests.log" \
    --control "$place/control" >"$place/simulator.out" 2>&1 &
  simulator_process=$!
  within 10 test -e "$place/instrument"
}

tell() { # COMMAND of the simulator's prompt
  python3 - "$place/control" "$1" <<'PY'
import socket, sys
s = socket.socket(socket.AF_UNIX)
s.settimeout(5)
s.connect(sys.argv[1])
s.sendall(sys.argv[2].encode() + b"\n")
sys.exit(0 if b"ok" in s.recv(4096) else 1)
PY
}

stop_all() {
  wineserver -k 2>/dev/null || true
  local process
  for process in ${simulator_process:-} ${manager_process:-} ${display_process:-}; do kill "$process" 2>/dev/null || true; done
}
trap stop_all EXIT

on_windows() { LD_PRELOAD=$place/modemlines.so wine "$@"; }
asked() { grep -c -- "$1" "$place/requests.log"; }
photograph() { import -window root "$place/$1.png"; }
# Behind a dialog of Wine's the program's window is not given the keyboard again.
to_front() { xdotool search --onlyvisible --name '^Spectrane' windowactivate --sync || true; sleep 0.5; }
has_window() { xdotool search --onlyvisible --name "$1"; }
keys() { xdotool key --clearmodifiers "$@"; }
registry() { wine reg query "$1" /ve 2>/dev/null | grep -iF -- "$2"; }

# --- The parts --------------------------------------------------------------------------------------------------------

try_port() {
  local unplug
  "$triple-g++-posix" -std=c++20 -O1 -Isrc "$windows/porttry.cpp" src/link/win32port.cpp -static -o "$place/porttry.exe"
  (within 60 test -e "$place/hangup" && tell unplug) &
  unplug=$!
  check "the port by itself (port.txt)" eval 'on_windows "$place/porttry.exe" COM7 COM9 "Z:$place/hangup" >"$place/port.txt" 2>/dev/null'
  wait "$unplug" || true
  check "the cable is back" tell plug
}

# The floors that keep files, in a folder whose name no code page can write.
try_files() {
  local objects=$place/objects flags=(-std=c++20 -O0 "-I$PWD/src" "-I$PWD/build/dev/src/generated") file sources=()
  flags+=('-DSPECTRANE_VERSION="try"' -DSPECTRANE_BRAND_NUMBER=9)
  mkdir -p "$objects"
  # One floor as one source, of the other what photometry files and journals need.
  for file in "$PWD"/src/base/*.cpp; do printf '#include "%s"\n' "$file"; done >"$objects/base.cpp"
  for file in basicfile datafile file filefault fileheader filenumber platformfile journalfile; do
    sources+=("$PWD/src/files/$file.cpp")
  done
  (cd "$objects" && "$triple-g++-posix" "${flags[@]}" -c base.cpp "${sources[@]}")
  "$triple-g++-posix" "${flags[@]}" "$windows/filetry.cpp" "$objects"/*.o -static -o "$place/filetry.exe"
  check "what keeps files by itself (files.txt)" eval 'on_windows "$place/filetry.exe" "C:\\Mäß π" >"$place/files.txt" 2>/dev/null'
}

unpack() {
  (cd "$place" && unzip -q "$OLDPWD/$package")
  program=$(echo "$place"/spectrane-*/)
}

# The batch command says under Wine what this machine's own says of the same instrument.
try_command() {
  local batch="$program/spectrane-cli.exe"
  export SPECTRANE_HOME="Z:$place/command"
  mkdir -p "$place/command"
  check "command: version" eval 'on_windows "$batch" --version >"$place/version.txt" 2>/dev/null && grep -q "^spectrane-cli [0-9]" "$place/version.txt"'
  on_windows "$batch" instrument probe >"$place/probe-windows.json" 2>"$place/probe-windows.txt" || true
  SPECTRANE_HOME=$place/command SPECTRANE_PORTS=::::::$place/instrument build/dev/bin/spectrane-cli instrument probe >"$place/probe-here.json" || true
  check "command: probe finds the instrument at COM7" grep -q '"port":7,' "$place/probe-windows.json"
  check "command: probe learns the same as here" eval 'diff <(tr -d "\r" <"$place/probe-windows.json") "$place/probe-here.json"'
  tell "beam dye-3"
  on_windows "$batch" instrument measure --wavelength 546 --count 3 --yes --out "Z:$place/windows.bas" >/dev/null 2>"$place/measure-windows.txt" || true
  check "command: measure writes three rows" eval 'build/dev/bin/spectrane-cli info "$place/windows.bas" | grep -q "\"records\":3"'
  check "command: the file reads the same there and here" eval 'diff <(on_windows "$batch" dump "Z:$place/windows.bas" 2>/dev/null | tr -d "\r" | sed "s,Z:$place,," ) <(build/dev/bin/spectrane-cli dump "$place/windows.bas" | sed "s,$place,,")'
  check "command: a report as PDF" eval 'on_windows "$batch" export "Z:$place/windows.bas" "Z:$place/command.pdf" >/dev/null 2>&1 && pdftotext "$place/command.pdf" - | grep -q 546.0'
  tell "beam blank"
  unset SPECTRANE_HOME
}

# Wine's own file dialog wants a path as Windows writes it.
windows_path() {
  local path=Z:$place/$1
  printf %s "${path//\//\\}"
}

# An operator's morning at the keyboard: the guide, photometry, a blank, three samples, a file, a report, the end.
try_windows() {
  on_windows "$program/spectrane.exe" 2>"$place/spectrane.err" &
  local running=$!
  check "windows: the guide comes up" within 60 has_window "New File"
  photograph 1-guide
  keys Return
  check "windows: the options of photometry" within 20 has_window "Photometry Option"
  photograph 2-options
  keys Return
  check "windows: it connects by itself" within 40 asked startwl
  sleep 3
  photograph 3-connected
  local before
  before=$(asked rezero || true)
  keys F8
  check "windows: the blank" within 20 eval '[ "$(asked rezero)" -gt '"$before"' ]'
  sleep 2
  local sample
  for sample in dye-2 dye-4 dye-6; do
    tell "beam $sample"
    sleep 1
    keys F5
    sleep 3
  done
  photograph 4-rows
  keys ctrl+s
  within 20 has_window "Save" || true
  photograph 5-save
  xdotool type --delay 40 "$(windows_path journey.bas)"
  photograph 5-named
  keys Return
  check "windows: saved" within 20 test -s "$place/journey.bas"
  check "windows: three rows in the file" eval 'build/dev/bin/spectrane-cli info "$place/journey.bas" | grep -q "\"records\":3"'
  to_front
  keys ctrl+p
  sleep 3
  photograph 6-print
  keys ctrl+a
  xdotool type --delay 40 "$(windows_path journey.pdf)"
  keys Return
  check "windows: the report as PDF" within 20 test -s "$place/journey.pdf"
  check "windows: what is in the report" eval 'pdftotext -layout "$place/journey.pdf" - | grep -q 546.0'
  to_front
  keys ctrl+w
  sleep 1
  keys ctrl+q
  check "windows: it ends" within 20 eval '! kill -0 '"$running"
  kill "$running" 2>/dev/null || true
  check "windows: the instrument was let go" eval 'tail -5 "$place/requests.log" | grep -q quit'
  build/dev/bin/spectrane-cli dump "$place/journey.bas" >"$place/journey.json" || true
}

all_endings() {
  local ending
  for ending in tis wls qua mul dna bas bsl; do
    registry "HKCU\\Software\\Classes\\.$ending" _File || return 1
  done
}

# What the program leaves on the machine.
try_traces() {
  local key='HKCU\Software\Classes'
  check "traces: settings beside the unpacked program" test -s "$program/config.ini"
  check "traces: keys of config.ini" grep -q '^Windows Width' "$program/config.ini"
  check "traces: ending .bas" registry "$key\\.bas" BAS_File
  check "traces: words for the type" registry "$key\\BAS_File" "Photometry files"
  check "traces: its icon" registry "$key\\BAS_File\\DefaultIcon" 'icon.dll,3'
  check "traces: its program" registry "$key\\BAS_File\\shell\\open\\command" 'spectrane.exe" "%1"'
  check "traces: all seven endings" all_endings
}

# Installed, the settings are the user's; removed, they stay, with what else was put into the folder.
try_installer() {
  local folder="$WINEPREFIX/drive_c/Program Files/Spectrane"
  local settings
  check "installer: installs in silence" on_windows "$setup" /S
  check "installer: the program is there" within 60 test -e "$folder/uninstall.exe"
  check "installer: everything of the zip" eval 'diff <(cd "$program" && find . -type f ! -name config.ini ! -path "./journal/*" ! -name layout.ini | sort) <(cd "$folder" && find . -type f ! -name uninstall.exe | sort)'
  check "installer: types for all users" registry 'HKLM\Software\Classes\BAS_File\shell\open\command' 'Program Files\Spectrane\spectrane.exe'
  check "installer: known to the system" eval "wine reg query 'HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Spectrane' 2>/dev/null | grep -q DisplayVersion"
  on_windows "$folder/spectrane.exe" 2>/dev/null &
  local running=$!
  within 60 has_window "New File" || true
  sleep 1
  photograph 7-installed
  # A running program is not written over.
  check "installer: not while the program runs" eval '! on_windows "$setup" /S'
  keys Escape
  sleep 1
  to_front
  keys ctrl+q
  check "installer: the installed program ends" within 20 eval '! kill -0 '"$running" || true
  kill "$running" 2>/dev/null || true
  settings=$(find "$WINEPREFIX/drive_c/users" -path '*Spectrane/config.ini' | head -1)
  check "installer: settings in the user's own folder" test -s "$settings"
  check "installer: none in the program's folder" test ! -e "$folder/config.ini"
  echo mine >"$folder/mine.txt"
  on_windows "$folder/uninstall.exe" /S >/dev/null 2>&1 || true
  check "uninstaller: the program is gone" within 60 eval '[ ! -e "$folder/spectrane.exe" ] && [ ! -e "$folder/uninstall.exe" ]'
  check "uninstaller: nothing is left but what was not installed" eval '[ "$(ls "$folder")" = mine.txt ]'
  check "uninstaller: the settings stay" test -s "$settings"
  check "uninstaller: no type leads to it" eval '! registry "HKLM\\Software\\Classes\\BAS_File\\shell\\open\\command" Spectrane && ! registry "HKCU\\Software\\Classes\\BAS_File\\shell\\open\\command" "Program Files"'
}

start_display
start_simulator
say "Wine begins"
start_wine
try_port
try_files
if [ "${1:-}" = --parts ]; then
  say "$failures failed; $place"
  exit "$failures"
fi
unpack
try_command
try_windows
try_traces
try_installer
say "$failures failed; pictures and files: $place"
exit "$failures"
