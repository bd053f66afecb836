#!/usr/bin/env bash
# Runs the wizard's road with the real, cross-built SuiteDeployer.exe under
# Wine (tests/wine): installs what is missing, builds the exe with
# scripts/build-windows.sh only when build-windows/ holds none, builds the
# suite and its two mingw-w64 helpers in build-wine-road/, runs it in a
# throw-away Wine prefix and prints how long the run took. The exit code is
# the suite's result.
#
#   scripts/wine-road.sh [GoogleTest options, e.g. --gtest_filter=WineRoadTest.TheWizardsWholeRoad]
#
#   SUITEDEPLOYER_WINDOWS_PROGRAM  drive this exe instead (it is not built then)
#   UPDATE_SNAPSHOTS=1             rewrite tests/wine/road/ instead of comparing; review the diff
#   KEEP_WINE_PREFIX=1             keep the prefix (its folder is below ${TMPDIR:-/tmp})
#
# A snapshot that differs is written beside the test program as
# build-wine-road/wine-road-<step>.txt, and the failure names the diff to run.
set -euo pipefail
source "$(dirname "$0")/bootstrap.sh"

ensure_packages "${BUILD_PACKAGES[@]}" "${WINE_PACKAGES[@]}"

program=${SUITEDEPLOYER_WINDOWS_PROGRAM:-$SUITEDEPLOYER_ROOT/build-windows/src/installer/utils/SuiteDeployer.exe}
if [ ! -f "$program" ]; then
  if [ -n "${SUITEDEPLOYER_WINDOWS_PROGRAM:-}" ]; then
    echo "There is no program $program" >&2
    exit 1
  fi
  "$SUITEDEPLOYER_ROOT/scripts/build-windows.sh"
fi

build="$SUITEDEPLOYER_ROOT/build-wine-road"
cmake -S "$SUITEDEPLOYER_ROOT/tests/wine" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DSUITEDEPLOYER_WINDOWS_PROGRAM="$program" >/dev/null
cmake --build "$build" -j"$(nproc)" --target WineRoadTest

echo "Driving $program ($(sha256sum "$program" | cut -c1-16)...)"
start=$(date +%s%N)
status=0
(cd "$build" && ./WineRoadTest "$@") || status=$?
elapsed=$((($(date +%s%N) - start) / 1000000))
printf 'The Wine road took %d.%03d s\n' $((elapsed / 1000)) $((elapsed % 1000))
exit "$status"
