#!/usr/bin/env bash
# Builds the release and makes build/packages/spectrane_VERSION_ARCHITECTURE.deb of it. make-deb.sh --try tries it
# afterwards in a fresh Debian (try-deb.sh; needs root and a mirror of Debian).
set -euo pipefail
source "$(dirname "$0")/../../dev/common.sh"

./dev/install.sh
./dev/install.sh packaging/linux/packages.txt
# A folder of its own: compiled in few units, and without what does not go into the package.
cmake --preset release -B build/package -DCMAKE_UNITY_BUILD=ON -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON \
  -DSPECTRANE_BENCH=OFF -DSPECTRANE_TESTS=OFF >/dev/null
cmake --build build/package -j "$jobs" --target spectrane spectrane-cli spectrane-simulator
mkdir -p build/packages
rm -f build/packages/*.deb
(cd build/package && cpack -G DEB -B ../packages >../packages/cpack.log) || { cat build/packages/cpack.log >&2; exit 1; }
rm -rf build/packages/_CPack_Packages
package=$(ls build/packages/*.deb)
echo "$package: $(du -k "$package" | cut -f1) kB, installed $(dpkg-deb -f "$package" Installed-Size) kB"
[ "${1:-}" != --try ] || ./packaging/linux/try-deb.sh "$package"
