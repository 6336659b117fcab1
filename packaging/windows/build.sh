#!/usr/bin/env bash
# Builds the program for 64-bit Windows and makes build/packages/spectrane-VERSION-windows-x64.zip and …-setup.exe of it.
# Qt for Windows is built first where there is none yet (build-qt.sh).
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
"$windows/build-qt.sh"
tree=$PWD/build/windows
stage=$tree/stage
version=$(sed -n 's/^project(spectrane VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
package=build/packages/spectrane-$version-windows-x64

# Pictures and tables that tools of this machine make.
make_data() {
  local data=$tree/data
  local drawings=(packaging/icons/hicolor/scalable/apps/spectrane.svg packaging/icons/mimetypes/*.svg)
  build dev iconsheet windowsdata >/dev/null
  mkdir -p "$data"
  export QT_QPA_PLATFORM=offscreen
  build/dev/dev/iconsheet/iconsheet stored "$data/drawings"
  build/dev/dev/iconsheet/iconsheet icons "$data" "${drawings[@]}"
  build/dev/packaging/windows/windowsdata "$data"
}

# The headers that the host's packages share with everybody, without the rest of /usr/include.
link_headers() {
  mkdir -p "$tree/headers"
  ln -sfn /usr/include/CLI "$tree/headers/CLI"
  ln -sfn /usr/include/nlohmann "$tree/headers/nlohmann"
}

make_programs() {
  cmake -S . -B "$tree" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$windows/toolchain.cmake" -DWINDOWS_QT="$qt" \
    -DCMAKE_PREFIX_PATH="$qt" -DCMAKE_BUILD_TYPE=Release -DCMAKE_UNITY_BUILD=ON -DSPECTRANE_TESTS=OFF -DSPECTRANE_DRAWINGS="$tree/data/drawings" \
    -DSPECTRANE_WINDOWS_DATA="$tree/data" -DWINDOWS_HEADERS="$tree/headers" -DCLI11_DIR="$windows/headers" \
    -Dnlohmann_json_DIR="$windows/headers" -DCMAKE_INSTALL_BINDIR=. >"$tree/configure.log" 2>&1 ||
    { tail -20 "$tree/configure.log" >&2; return 1; }
  cmake --build "$tree" -j "${JOBS:-$jobs}" --target spectrane spectrane-cli spectrane-simulator icon
}

# libraries_of FOLDER: what the import tables of all programs and libraries in it name.
libraries_of() {
  find "$1" \( -name '*.exe' -o -name '*.dll' \) -exec "$triple-objdump" -p {} + | sed -n 's/^\s*DLL Name: //p' | sort -fu
}

# Puts everything into one folder: the programs, and of Qt and the compiler what they ask for. What none of the places
# has belongs to the system.
make_stage() {
  rm -rf "$stage"
  cmake --install "$tree" --prefix "$stage" >/dev/null
  local plugin name found place
  for plugin in platforms/qwindows styles/qwindowsvistastyle imageformats/qjpeg imageformats/qico; do
    install -D -m 755 "$qt/plugins/$plugin.dll" "$stage/plugins/$plugin.dll"
  done
  printf '[Paths]\nPlugins = plugins\n' >"$stage/qt.conf"
  local places=("$qt/bin" "$(dirname "$("$triple-g++-posix" -print-libgcc-file-name)")" "/usr/$triple/lib")
  found=yes
  while [ "$found" = yes ]; do
    found=no
    while read -r name; do
      [ ! -e "$stage/$name" ] || continue
      for place in "${places[@]}"; do
        [ -e "$place/$name" ] || continue
        install -m 755 "$place/$name" "$stage/"
        found=yes
        break
      done
    done < <(libraries_of "$stage")
  done
  find "$stage" \( -name '*.exe' -o -name '*.dll' \) ! -name icon.dll -exec "$triple-strip" --strip-unneeded {} +
  install -D -m 644 "$work"/source/qt6-base-*/LICENSES/LGPL-3.0-only.txt "$stage/licenses/Qt.txt"
  install -D -m 644 /usr/share/common-licenses/GPL-3 "$stage/licenses/GPL-3.txt"
  install -D -m 644 /usr/share/doc/gcc-mingw-w64-base/copyright "$stage/licenses/GCC.txt"
  install -D -m 644 /usr/share/doc/mingw-w64-common/copyright "$stage/licenses/mingw-w64.txt"
}

make_zip() {
  rm -f "$package.zip" "$tree/spectrane-$version"
  ln -sfn stage "$tree/spectrane-$version"
  (cd "$tree" && zip -q -9 -r "$OLDPWD/$package.zip" "spectrane-$version/")
}

# The installer takes away what it brought, file by file.
make_installer() {
  local list=$tree/files.nsh
  {
    printf '!macro InstallFiles\n'
    (cd "$stage" && find . -type d | sort | while read -r folder; do
      printf '  SetOutPath "$INSTDIR%s"\n' "$(windows_path "${folder#.}")"
      find "$folder" -maxdepth 1 -type f | sort | while read -r file; do printf '  File "%s"\n' "$stage/${file#./}"; done
    done)
    printf '  SetOutPath "$INSTDIR"\n!macroend\n!macro RemoveFiles\n'
    (cd "$stage" && find . -type f | sort | while read -r file; do printf '  Delete "$INSTDIR%s"\n' "$(windows_path "${file#.}")"; done)
    (cd "$stage" && find . -mindepth 1 -type d | sort -r | while read -r folder; do
      printf '  RMDir "$INSTDIR%s"\n' "$(windows_path "${folder#.}")"
    done)
    printf '!macroend\n'
  } >"$list"
  makensis -V2 -WX "-DVERSION=$version" "-DKILOBYTES=$(du -sk "$stage" | cut -f1)" "-DOUT=$PWD/$package-setup.exe" \
    "-DFILES=$list" "-DDATA=$tree/data" "$windows/installer.nsi"
}

windows_path() { printf '%s' "${1//\//\\}"; }

mkdir -p "$tree" build/packages
say "pictures and tables"
make_data
link_headers
say "programs"
make_programs
say "packages"
make_stage
make_zip
make_installer
ls -l "$package.zip" "$package-setup.exe"
