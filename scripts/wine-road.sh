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
source "$(dirname "$0")/wine-suite.sh"

build_wine_suite WineRoadTest
start=$(date +%s%N)
status=0
(cd "$build" && ./WineRoadTest "$@") || status=$?
elapsed=$((($(date +%s%N) - start) / 1000000))
printf 'The Wine road took %d.%03d s\n' $((elapsed / 1000)) $((elapsed % 1000))
exit "$status"
