#!/usr/bin/env bash
# Runs the end-to-end suite of tests/e2e against the cross-built
# SuiteDeployer.exe under Wine: the same tests as the Linux build's, each on a
# throw-away Wine machine (tests/wine/WineTestMachine.h). Installs what is
# missing, builds the exe with scripts/build-windows.sh only when
# build-windows/ holds none, builds the suite in build-wine-road/ and runs it.
# The output ends with GoogleTest's own summary; the exit code is the suite's
# result. GoogleTest's XML report lands in build-wine-road/wine-e2e.xml.
#
#   scripts/wine-e2e.sh [GoogleTest options, e.g. --gtest_filter=InstallE2ETest.*]
#
#   SUITEDEPLOYER_WINDOWS_PROGRAM  drive this exe instead (it is not built then)
#   KEEP_WINE_PREFIX=1             keep each machine's prefix (below ${TMPDIR:-/tmp})
set -euo pipefail
source "$(dirname "$0")/wine-suite.sh"

build_wine_suite WineE2ETest
cd "$build"
exec ./WineE2ETest --gtest_output="xml:$build/wine-e2e.xml" "$@"
