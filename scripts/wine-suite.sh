# Sourced by wine-road.sh and wine-e2e.sh, which drive the cross-built
# SuiteDeployer.exe under Wine with a GoogleTest program of tests/wine:
# installs what is missing, finds the exe (building it with build-windows.sh
# only when build-windows/ holds none, or taking SUITEDEPLOYER_WINDOWS_PROGRAM
# as it is) and builds the named target in build-wine-road/.
source "$(dirname "${BASH_SOURCE[0]}")/bootstrap.sh"

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

# build_wine_suite TARGET: builds that test program of tests/wine against the exe.
build_wine_suite() {
  cmake -S "$SUITEDEPLOYER_ROOT/tests/wine" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DSUITEDEPLOYER_WINDOWS_PROGRAM="$program" >/dev/null
  cmake --build "$build" -j"$(nproc)" --target "$1"
  echo "Driving $program ($(sha256sum "$program" | cut -c1-16)...)"
}
