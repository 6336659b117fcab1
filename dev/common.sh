# What the scripts of dev/ share; sourced, never run.
cd "$(dirname "${BASH_SOURCE[0]}")/.."
jobs=$(nproc 2>/dev/null || echo 2)

# build PRESET [TARGET...]: configures when needed and builds, quietly unless it fails.
build() {
  local preset=$1
  shift
  cmake --preset "$preset" >/tmp/spectrane-configure.$$ 2>&1 || { cat /tmp/spectrane-configure.$$ >&2; return 1; }
  rm -f /tmp/spectrane-configure.$$
  cmake --build --preset "$preset" -j "$jobs" ${1:+--target "$@"}
}
