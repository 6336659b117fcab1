# What the scripts of packaging/windows/ share; sourced, never run.
source "$(dirname "${BASH_SOURCE[0]}")/../../dev/common.sh"
windows=$PWD/packaging/windows
# Qt for Windows and the tree of Wine: outside the sources, and kept, since Qt takes most of an hour.
work=${SPECTRANE_WINDOWS_WORK:-${XDG_CACHE_HOME:-$HOME/.cache}/spectrane-winqt}
qt=$work/qt
triple=x86_64-w64-mingw32

say() { printf '%s  %s\n' "$(date +%T)" "$*"; }
