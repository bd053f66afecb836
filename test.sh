#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test; the exit code is the tests' result.
set -euo pipefail
source "$(dirname "$0")/scripts/bootstrap.sh"

ensure_packages "${BUILD_PACKAGES[@]}"
build_project
ctest --test-dir "$SUITEDEPLOYER_BUILD" --output-on-failure -j"$(nproc)"
