#!/usr/bin/env bash
# Installs what is missing, cross-compiles the Windows platform layer and its
# tests with mingw-w64 into build-win, and runs them under Wine in a Wine prefix
# of their own, made in a temporary folder and removed afterwards. The exit code
# is the tests' result.
set -euo pipefail
source "$(dirname "$0")/bootstrap.sh"

ensure_packages "${WINE_PACKAGES[@]}"

build="$SUITEDEPLOYER_ROOT/build-win"
cmake -S "$SUITEDEPLOYER_ROOT/tests/windows" -B "$build" \
  -DCMAKE_TOOLCHAIN_FILE="$SUITEDEPLOYER_ROOT/cmake/mingw-w64-x86_64.cmake"
cmake --build "$build" -j"$(nproc)"

# Debian's wine64 package installs no wineserver on the search path; the
# package wine adds one.
wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver64)

# The first test, WinePrefix, fills the empty folder; Wine needs it to be ours.
SUITEDEPLOYER_WINEPREFIX=$(mktemp -d "${TMPDIR:-/tmp}/suitedeployer-wine.XXXXXX")
export SUITEDEPLOYER_WINEPREFIX
remove_prefix() {
  WINEPREFIX=$SUITEDEPLOYER_WINEPREFIX "$wineserver" -k 2>/dev/null || true
  WINEPREFIX=$SUITEDEPLOYER_WINEPREFIX "$wineserver" -w 2>/dev/null || true
  rm -rf "$SUITEDEPLOYER_WINEPREFIX"
}
trap remove_prefix EXIT

ctest --test-dir "$build" --output-on-failure -j"$(nproc)"
