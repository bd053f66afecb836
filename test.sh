#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: the plain build's, the
# fuzzers for a short while, the Windows platform layer's tests under Wine, and
# the whole suite again under AddressSanitizer and UndefinedBehaviorSanitizer.
# The exit code is the result of all four.
set -euo pipefail
source "$(dirname "$0")/scripts/bootstrap.sh"

ensure_packages "${BUILD_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}" "${WINE_PACKAGES[@]}"
build_project
ctest --test-dir "$SUITEDEPLOYER_BUILD" --output-on-failure -j"$(nproc)"

"$SUITEDEPLOYER_ROOT/scripts/fuzz.sh" 15
"$SUITEDEPLOYER_ROOT/scripts/wine-tests.sh"

sanitized="$SUITEDEPLOYER_ROOT/build-sanitize"
build_project "$sanitized" -DSUITEDEPLOYER_SANITIZE=ON -DSUITEDEPLOYER_BUILD_BENCH=OFF
ctest --test-dir "$sanitized" --output-on-failure -j"$(nproc)"
