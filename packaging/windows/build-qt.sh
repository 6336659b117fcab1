#!/usr/bin/env bash
# Builds Qt for Windows from Debian's source package of it, as much of it as the program uses; about 45 minutes on two
# cores, once: what is there already is not built again. JOBS is the number of compilers at a time.
# build-qt.sh --configure stops before the long part.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
[ ! -e "$qt/complete" ] || exit 0

./dev/install.sh
./dev/install.sh packaging/windows/packages.txt
mkdir -p "$work"/{sources.d,lists/partial,source}

# The host's tools write code for the libraries of their own version only.
version=$(dpkg-query -W -f='${Version}' qt6-base-dev-tools)
source=$work/source/qt6-base-${version%-*}
if [ ! -e "$source" ]; then
  say "source of qt6-base $version"
  # A list of source packages of our own: what apt is told to do on this machine stays as it is.
  if [ -e /etc/apt/sources.list.d/debian.sources ]; then
    sed 's/^Types:.*/Types: deb-src/' /etc/apt/sources.list.d/debian.sources >"$work/sources.d/source.sources"
  else
    sed -n 's/^deb /deb-src /p' /etc/apt/sources.list >"$work/sources.d/source.list"
  fi
  apt=(apt-get -q -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$work/sources.d"
    -o "Dir::State::lists=$work/lists")
  "${apt[@]}" update >"$work/source.log" 2>&1
  (cd "$work/source" && "${apt[@]}" source "qt6-base=$version" >>"$work/source.log" 2>&1)
fi

say "configure"
off=(
  # Modules that nothing here links.
  concurrent dbus sql testlib xml
  # Screens are painted by the processor; fonts, characters and locales are the system's own.
  vulkan direct2d1_1 freetype icu glib
  # Of the network only the sockets between programs of one machine are used.
  ssl schannel dtls http topleveldomain gssapi sspi networklistmanager dnslookup
  zstd brotli gif tabletevent tuiotouch pkg_config
  # What else Qt would take from the host in place of its own copy.
  system_zlib system_pcre2 system_png system_jpeg system_harfbuzz system_doubleconversion
)
switches=("${off[@]/#/-DFEATURE_}")
switches=("${switches[@]/%/=OFF}")
cmake -G Ninja -S "$source" -B "$work/qt-build" -DCMAKE_TOOLCHAIN_FILE="$windows/toolchain.cmake" -DWINDOWS_QT="$qt" \
  -DCMAKE_INSTALL_PREFIX="$qt" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON -DQT_QMAKE_TARGET_MKSPEC=win32-g++ \
  -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TOOLS_WHEN_CROSSCOMPILING=OFF -DINPUT_opengl=no \
  -DINPUT_openssl=no "${switches[@]}" >"$work/configure.log" 2>&1 || { tail -20 "$work/configure.log" >&2; exit 1; }
[ "${1:-}" != --configure ] || exit 0

say "build, in silence: $work/build.log"
nice -n 19 ninja -C "$work/qt-build" -j "${JOBS:-$jobs}" >"$work/build.log" 2>&1 || { tail -20 "$work/build.log" >&2; exit 1; }
cmake --install "$work/qt-build" --strip >"$work/install.log"
touch "$qt/complete"
say "Qt stands in $qt ($(du -sh "$qt" | cut -f1))"
